#include "html/TreeRules.h"

#include "html/Attributes.h"

#include <algorithm>

namespace html {
namespace {

bool isMathTextPoint(Tag tag)
{
    return tag == Tag::Mi || tag == Tag::Mo || tag == Tag::Mn || tag == Tag::Ms
        || tag == Tag::Mtext;
}

} // namespace

// ---- the stack

void TreeRules::push(OpenElement element)
{
    const Tag tag = OpenElements::tagOf(element.name);
    const bool html = element.space == Namespace::Html;
    element.hidden = m_open.top().hidden || is(tag, Hidden);
    element.preformatted = m_open.top().preformatted || (html && is(tag, Preformatted));
    m_open.push(element);
    if (m_listener)
        m_listener->opened(m_open.top());
}

void TreeRules::pop()
{
    if (m_listener)
        m_listener->closed(m_open.top());
    m_open.pop();
}

void TreeRules::popTo(qint32 position)
{
    while (m_open.size() > position)
        pop();
}

bool TreeRules::popTo(Tag tag)
{
    const qint32 position = m_open.find(tag);
    if (position < 0)
        return false;
    popTo(position);
    return true;
}

void TreeRules::clearBackTo(std::initializer_list<Tag> tags)
{
    const auto reached = [&](Tag tag) { return m_open.isTop(tag); };
    while (std::none_of(tags.begin(), tags.end(), reached))
        pop();
}

Placed TreeRules::insert(const StartTag& start, Mode mode)
{
    OpenElement element;
    element.name = start.name;
    element.mode = mode;
    push(element);
    if (is(start.tag, Void))
        pop();
    return Placed::Html;
}

void TreeRules::insertImplied(Tag tag, Mode mode)
{
    insert({Token(), tag, NameId(tag)}, mode);
}

QString TreeRules::attribute(const StartTag& start, QLatin1StringView name) const
{
    AttributeReader reader(m_text, start.token.nameEnd);
    for (AttributeSpan span; reader.next(span);) {
        if (equalsLower(m_text.sliced(span.nameBegin, span.nameEnd - span.nameBegin), name)) {
            const QString value =
                decodeText(m_text.sliced(span.valueBegin, span.valueEnd - span.valueBegin),
                    TextPlace::Attribute);
            return value.isNull() ? QLatin1StringView("") : value;
        }
    }
    return QString();
}

// ---- start tags

Placed TreeRules::startTag(const Token& token, Tag tag)
{
    const QStringView name = m_text.sliced(token.nameBegin, token.nameEnd - token.nameBegin);
    const StartTag start{token, tag, m_open.nameId(tag, name)};
    m_endedForeign = false;
    return goesByForeignRules(start) ? foreignStart(start) : byMode(start);
}

bool TreeRules::goesByForeignRules(const StartTag& start) const
{
    const OpenElement& current = m_open.top();
    if (current.space == Namespace::Html || current.htmlPoint)
        return false;
    if (current.mathTextPoint)
        return start.tag == Tag::Mglyph || start.tag == Tag::Malignmark;
    const bool annotation = current.space == Namespace::MathMl
        && OpenElements::tagOf(current.name) == Tag::AnnotationXml;
    return !(annotation && start.tag == Tag::Svg);
}

Placed TreeRules::foreignStart(const StartTag& start)
{
    const auto has = [&](const char* name) {
        return !attribute(start, QLatin1StringView(name)).isNull();
    };
    const bool breaksOut = is(start.tag, Breakout)
        || (start.tag == Tag::Font && (has("color") || has("face") || has("size")));
    if (!breaksOut)
        return insertForeign(start, m_open.top().space);
    popForeign();
    return byMode(start);
}

// To the nearest element whose inside goes by the rules of HTML.
void TreeRules::popForeign()
{
    while (inForeign() && !m_open.top().mathTextPoint && !m_open.top().htmlPoint) {
        pop();
        m_endedForeign = true;
    }
}

Placed TreeRules::insertForeign(const StartTag& start, Namespace space)
{
    OpenElement element;
    element.name = start.name;
    element.space = space;
    element.mode = mode();
    if (space == Namespace::MathMl) {
        element.mathTextPoint = isMathTextPoint(start.tag);
        if (start.tag == Tag::AnnotationXml) {
            const QString encoding = attribute(start, QLatin1StringView("encoding")).toLower();
            element.htmlPoint = encoding == QLatin1StringView("text/html")
                || encoding == QLatin1StringView("application/xhtml+xml");
        }
    } else {
        element.htmlPoint =
            start.tag == Tag::ForeignObject || start.tag == Tag::Desc || start.tag == Tag::Title;
    }
    push(element);
    if (start.token.selfClosing)
        pop();
    return Placed::Foreign;
}

Placed TreeRules::byMode(const StartTag& start)
{
    for (;;) {
        Answer answer;
        switch (mode()) {
        case Mode::InBody:
            answer = inBody(start);
            break;
        case Mode::InTable:
            answer = inTable(start);
            break;
        case Mode::InCaption:
            answer = inCaption(start);
            break;
        case Mode::InColumnGroup:
            answer = inColumnGroup(start);
            break;
        case Mode::InTableBody:
            answer = inTableBody(start);
            break;
        case Mode::InRow:
            answer = inRow(start);
            break;
        case Mode::InCell:
            answer = inCell(start);
            break;
        case Mode::InSelect:
        case Mode::InSelectInTable:
            answer = inSelect(start);
            break;
        case Mode::InTemplate:
            answer = inTemplateMode(start);
            break;
        }
        if (answer)
            return *answer;
    }
}

} // namespace html
