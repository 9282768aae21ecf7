#include "html/HtmlDocument.h"

#include "html/Attributes.h"
#include "html/BodySplicer.h"
#include "html/CharacterReferences.h"
#include "html/DocumentScan.h"
#include "html/TagNames.h"

#include <algorithm>

using namespace html;

namespace {

bool isAttributeName(QLatin1StringView name)
{
    return !name.isEmpty() && std::none_of(name.begin(), name.end(), [](char c) {
        return c == '\0' || isSpace(uchar(c))
            || QLatin1StringView("\"'<>/=").contains(QLatin1Char(c));
    });
}

// Where the attributes of a start tag begin.
qsizetype nameEnd(QStringView tag)
{
    const auto endsName = [](QChar c) { return isSpace(c.unicode()) || c == u'/' || c == u'>'; };
    return std::find_if(tag.begin() + 1, tag.end(), endsName) - tag.begin();
}

// The value as it will be read from the text.
QString asReadBack(const QString& value)
{
    const bool isWhole = std::none_of(
        value.begin(), value.end(), [](QChar c) { return c.isNull() || c.isSurrogate(); });
    return isWhole ? value : decodeText(encodeAttributeValue(value), TextPlace::Attribute);
}

void appendQuoted(QString& text, const QString& value)
{
    text += u'"';
    text += encodeAttributeValue(value);
    text += u'"';
}

QStringView nameOf(QStringView tag, const AttributeSpan& span)
{
    return tag.sliced(span.nameBegin, span.nameEnd - span.nameBegin);
}

} // namespace

HtmlDocument::HtmlDocument(const QString& html, QLatin1StringView tag, Reading reading)
    : m_html(html)
    , m_scan(reading == Reading::Elements ? scanDocument(m_html, tag) : scanPlainText(m_html, tag))
    , m_textIsRead(reading == Reading::ElementsAndText)
{
}

// Asks the memory for the element after next, before it is read. Elements are read in order and
// stand far apart, in a text that has left the near caches by then: without this an element of a
// long note costs a fifth more than one of a short note.
void HtmlDocument::prefetchAfter([[maybe_unused]] qsizetype element) const
{
#ifdef __GNUC__
    constexpr std::size_t kLines = 6;
    constexpr std::size_t kUnitsPerLine = 64 / sizeof(char16_t);
    const std::size_t ahead = std::size_t(element) + 2;
    if (ahead >= m_scan.elements.size())
        return;
    const qsizetype begin = m_scan.elements[ahead].begin;
    if (begin + qsizetype(kLines * kUnitsPerLine) > m_html.size())
        return;
    const QChar* tag = m_html.constData() + begin;
    for (std::size_t line = 0; line < kLines; ++line)
        __builtin_prefetch(tag + line * kUnitsPerLine);
#endif
}

QStringView HtmlDocument::elementText(qsizetype element) const
{
    const Piece& piece = m_scan.elements[std::size_t(element)];
    return QStringView(m_html).sliced(piece.begin, piece.end - piece.begin);
}

const HtmlDocument::Change* HtmlDocument::changeOf(qsizetype element) const
{
    const auto found = m_changes.find(element);
    return found == m_changes.end() ? nullptr : &found->second;
}

std::optional<QString> HtmlDocument::attribute(qsizetype element, QLatin1StringView name) const
{
    if (const Change* change = changeOf(element)) {
        for (const auto& [changedName, value] : change->attributes) {
            if (QLatin1StringView(changedName) == name)
                return value;
        }
    }
    prefetchAfter(element);
    const QStringView tag = elementText(element);
    AttributeReader reader(tag, nameEnd(tag));
    for (AttributeSpan span; reader.next(span);) {
        if (equalsLower(nameOf(tag, span), name))
            return decodeText(
                tag.sliced(span.valueBegin, span.valueEnd - span.valueBegin), TextPlace::Attribute);
    }
    return std::nullopt;
}

bool HtmlDocument::setAttribute(qsizetype element, QLatin1StringView name, const QString& value)
{
    if (!isAttributeName(name))
        return false;
    std::vector<NameValue>& changed = m_changes[element].attributes;
    for (auto& [changedName, changedValue] : changed) {
        if (QLatin1StringView(changedName) == name) {
            changedValue = asReadBack(value);
            return true;
        }
    }
    changed.emplace_back(QByteArray(name.data(), name.size()), asReadBack(value));
    return true;
}

void HtmlDocument::remove(qsizetype element)
{
    m_changes[element].removed = true;
    m_anyRemoved = true;
}

// The start tag with its new values in place, the rest of it as it stands.
QString HtmlDocument::changedTag(qsizetype element, const Change& change) const
{
    const QStringView tag = elementText(element);
    std::vector<NameValue> missing = change.attributes;
    const qsizetype head = nameEnd(tag);
    QString tail;
    tail.reserve(tag.size());
    qsizetype copied = head;
    AttributeReader reader(tag, head);
    for (AttributeSpan span; !missing.empty() && reader.next(span);) {
        const auto set = std::find_if(missing.begin(), missing.end(), [&](const NameValue& entry) {
            return equalsLower(nameOf(tag, span), QLatin1StringView(entry.first));
        });
        if (set == missing.end())
            continue;
        const qsizetype quote = span.quoted ? 1 : 0;
        const qsizetype begin = span.valueBegin - quote;
        tail += tag.sliced(copied, begin - copied);
        if (!span.hasEquals)
            tail += u'=';
        appendQuoted(tail, set->second);
        copied = span.valueEnd + quote;
        missing.erase(set);
    }
    tail += tag.sliced(copied);

    QString result;
    result.reserve(2 * tag.size());
    result += tag.first(head);
    for (const auto& [name, value] : missing) {
        result += u' ';
        result += QLatin1StringView(name);
        result += u'=';
        appendQuoted(result, value);
    }
    result += tail;
    return result;
}

QString HtmlDocument::bodyInnerHtml() const
{
    if (!m_scan.hasBody)
        return QString();
    BodySplicer splicer(m_html, m_scan.bodyBegin);
    auto cut = m_scan.cuts.begin();
    const auto cutUpTo = [&](qsizetype position) {
        for (; cut != m_scan.cuts.end() && cut->begin < position; ++cut)
            splicer.cut(*cut);
    };
    for (const auto& [element, change] : m_changes) {
        const Piece& piece = m_scan.elements[std::size_t(element)];
        cutUpTo(piece.begin);
        if (change.removed)
            splicer.cut(piece);
        else
            splicer.replace(piece, changedTag(element, change));
    }
    cutUpTo(m_html.size());
    return splicer.take();
}

QString HtmlDocument::bodyText() const
{
    if (m_textIsRead && !m_anyRemoved)
        return m_scan.plainText;
    const QString html = m_anyRemoved ? bodyInnerHtml() : m_html;
    return scanPlainText(html, QLatin1StringView("img")).plainText;
}
