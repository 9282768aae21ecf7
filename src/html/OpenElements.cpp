#include "html/OpenElements.h"

namespace html {
namespace {

constexpr NameId kKnownNames = NameId(Tag::Unknown);
constexpr NameId kNoName = -1;

// The elements that end a search "in scope": HTML, MathML and SVG ones.
bool isScopeBoundary(const OpenElement& element)
{
    const Tag tag = OpenElements::tagOf(element.name);
    if (element.space == Namespace::Html)
        return is(tag, Boundary);
    if (element.space == Namespace::MathMl)
        return element.mathTextPoint || tag == Tag::AnnotationXml;
    return element.htmlPoint;
}

} // namespace

OpenElements::OpenElements()
    : m_topmost(std::size_t(kKnownNames) * 2, -1)
{
    for (const Tag tag : {Tag::Html, Tag::Body}) {
        OpenElement element;
        element.name = NameId(tag);
        push(element);
    }
}

Tag OpenElements::tagOf(NameId name)
{
    return name >= 0 && name < kKnownNames ? Tag(name) : Tag::Unknown;
}

NameId OpenElements::nameId(Tag tag, QStringView text)
{
    if (tag != Tag::Unknown)
        return NameId(tag);
    QString lower = text.toString();
    for (QChar& unit : lower)
        unit = QChar(asciiLower(unit.unicode()));
    const auto known = m_unknownNames.constFind(lower);
    if (known != m_unknownNames.constEnd())
        return *known;
    return *m_unknownNames.insert(lower, kKnownNames + NameId(m_unknownNames.size()));
}

qint32 OpenElements::topmost(NameId name, bool foreign) const
{
    const std::size_t index = slot(name, foreign);
    return index < m_topmost.size() ? m_topmost[index] : -1;
}

void OpenElements::push(OpenElement element)
{
    const qint32 position = size();
    const Tag tag = tagOf(element.name);
    const bool foreign = element.space != Namespace::Html;
    const OpenElement below = m_stack.empty() ? OpenElement() : m_stack.back();
    const bool boundary = isScopeBoundary(element);
    const bool special = foreign ? boundary : is(tag, Special);
    const bool barrier =
        special && (foreign || (tag != Tag::Address && tag != Tag::Div && tag != Tag::P));
    const auto markIf = [position](
                            bool marks, qint32 inherited) { return marks ? position : inherited; };
    element.html = markIf(!foreign, below.html);
    element.special = markIf(special, below.special);
    element.itemBarrier = markIf(barrier, below.itemBarrier);
    element.scope = markIf(boundary, below.scope);
    element.listScope =
        markIf(boundary || (!foreign && (tag == Tag::Ol || tag == Tag::Ul)), below.listScope);
    element.buttonScope = markIf(boundary || (!foreign && tag == Tag::Button), below.buttonScope);
    element.tableScope =
        markIf(!foreign && (tag == Tag::Html || tag == Tag::Table || tag == Tag::Template),
            below.tableScope);

    const std::size_t index = slot(element.name, foreign);
    if (index >= m_topmost.size())
        m_topmost.resize(index + 2, -1);
    element.sameName = m_topmost[index];
    m_topmost[index] = position;
    m_stack.push_back(element);
}

void OpenElements::pop()
{
    const OpenElement& element = m_stack.back();
    if (element.name != kNoName)
        m_topmost[slot(element.name, element.space != Namespace::Html)] = element.sameName;
    m_stack.pop_back();
}

void OpenElements::takeOut(qint32 position)
{
    OpenElement& element = at(position);
    m_topmost[slot(element.name, element.space != Namespace::Html)] = element.sameName;
    element.name = kNoName;
}

} // namespace html
