// The rules for start tags, mode by mode, in the order of the standard. What is common to all
// stands in TreeRules.cpp.
#include "html/TreeRules.h"

#include <algorithm>

namespace html {
namespace {

bool isTableMode(Mode mode)
{
    return mode == Mode::InTable || mode == Mode::InCaption || mode == Mode::InTableBody
        || mode == Mode::InRow || mode == Mode::InCell;
}

bool isImpliedEnd(Tag tag)
{
    return tag == Tag::Dd || tag == Tag::Dt || tag == Tag::Li || tag == Tag::Optgroup
        || tag == Tag::Option || tag == Tag::P || tag == Tag::Rb || tag == Tag::Rp || tag == Tag::Rt
        || tag == Tag::Rtc;
}

} // namespace

void TreeRules::closeP()
{
    if (m_open.hasInButtonScope(Tag::P))
        popTo(Tag::P);
}

// A new li closes an open one, a new dd or dt an open one of either, unless a special element
// other than address, div and p stands between.
void TreeRules::closeItem(Tag tag, Tag other)
{
    const qint32 position = std::max(m_open.find(tag), m_open.find(other));
    if (position >= 0 && position >= m_open.top().itemBarrier)
        popTo(position);
}

// What a start tag in the body closes before its element is inserted.
void TreeRules::closeImplied(Tag tag)
{
    if (tag == Tag::Li)
        closeItem(Tag::Li, Tag::Li);
    else if (tag == Tag::Dd || tag == Tag::Dt)
        closeItem(Tag::Dd, Tag::Dt);
    if (is(tag, ClosesP))
        closeP();
    const Tag current = inForeign() ? Tag::Unknown : OpenElements::tagOf(m_open.top().name);
    const bool isOption = tag == Tag::Option || tag == Tag::Optgroup;
    if ((is(tag, Heading) && is(current, Heading)) || (isOption && current == Tag::Option))
        pop();
    else if (tag == Tag::Button && m_open.hasInScope(Tag::Button))
        popTo(Tag::Button);
    else if ((tag == Tag::A || tag == Tag::Nobr) && m_open.hasInScope(tag))
        endFormatting(NameId(tag));
    else if (tag == Tag::Rb || tag == Tag::Rtc || tag == Tag::Rp || tag == Tag::Rt)
        closeRuby(tag);
}

void TreeRules::closeRuby(Tag tag)
{
    if (!m_open.hasInScope(Tag::Ruby))
        return;
    const bool keepsRtc = tag == Tag::Rp || tag == Tag::Rt;
    while (!inForeign() && isImpliedEnd(OpenElements::tagOf(m_open.top().name))
        && !(keepsRtc && m_open.isTop(Tag::Rtc)))
        pop();
}

TreeRules::Answer TreeRules::inBody(const StartTag& start)
{
    const Tag tag = start.tag;
    if (tag == Tag::Frameset)
        return inTemplate() ? Placed::Ignored : Placed::Frameset;
    if (is(tag, TablePart) || tag == Tag::Html || tag == Tag::Head || tag == Tag::Body
        || tag == Tag::Frame)
        return Placed::Ignored;
    if (tag == Tag::Image)
        return insert({start.token, Tag::Img, NameId(Tag::Img)});
    if (tag == Tag::Template)
        return insert(start, Mode::InTemplate);
    if (tag == Tag::Svg)
        return insertForeign(start, Namespace::Svg);
    if (tag == Tag::Math)
        return insertForeign(start, Namespace::MathMl);
    if (tag == Tag::Form) {
        if (m_formOpen && !inTemplate())
            return Placed::Ignored;
        m_formOpen = m_formOpen || !inTemplate();
    }
    closeImplied(tag);
    if (tag == Tag::Table)
        return insert(start, Mode::InTable);
    if (tag == Tag::Select)
        return insert(start, isTableMode(mode()) ? Mode::InSelectInTable : Mode::InSelect);
    return insert(start);
}

TreeRules::Answer TreeRules::inTable(const StartTag& start)
{
    const Tag tag = start.tag;
    if (is(tag, TablePart))
        clearBackTo({Tag::Table, Tag::Template, Tag::Html});
    switch (tag) {
    case Tag::Caption:
        return insert(start, Mode::InCaption);
    case Tag::Colgroup:
        return insert(start, Mode::InColumnGroup);
    case Tag::Col:
        insertImplied(Tag::Colgroup, Mode::InColumnGroup);
        return std::nullopt;
    case Tag::Tbody:
    case Tag::Tfoot:
    case Tag::Thead:
        return insert(start, Mode::InTableBody);
    case Tag::Td:
    case Tag::Th:
    case Tag::Tr:
        insertImplied(Tag::Tbody, Mode::InTableBody);
        return std::nullopt;
    case Tag::Table:
        if (!m_open.hasInTableScope(Tag::Table))
            return Placed::Ignored;
        popTo(Tag::Table);
        return std::nullopt;
    case Tag::Form:
        if (m_formOpen || inTemplate())
            return Placed::Ignored;
        m_formOpen = true;
        insert(start);
        pop();
        return Placed::Html;
    default:
        return inBody(start);
    }
}

TreeRules::Answer TreeRules::inCaption(const StartTag& start)
{
    if (!is(start.tag, TablePart))
        return inBody(start);
    if (!m_open.hasInTableScope(Tag::Caption))
        return Placed::Ignored;
    popTo(Tag::Caption);
    return std::nullopt;
}

TreeRules::Answer TreeRules::inColumnGroup(const StartTag& start)
{
    if (start.tag == Tag::Col)
        return insert(start);
    if (start.tag == Tag::Template)
        return inBody(start);
    if (start.tag == Tag::Html || !m_open.isTop(Tag::Colgroup))
        return Placed::Ignored;
    pop();
    return std::nullopt;
}

TreeRules::Answer TreeRules::inTableBody(const StartTag& start)
{
    const auto clear = [this] {
        clearBackTo({Tag::Tbody, Tag::Tfoot, Tag::Thead, Tag::Template, Tag::Html});
    };
    if (start.tag == Tag::Tr) {
        clear();
        return insert(start, Mode::InRow);
    }
    if (start.tag == Tag::Td || start.tag == Tag::Th) {
        clear();
        insertImplied(Tag::Tr, Mode::InRow);
        return std::nullopt;
    }
    if (!is(start.tag, TablePart))
        return inTable(start);
    if (!hasTableBodyInTableScope())
        return Placed::Ignored;
    clear();
    pop();
    return std::nullopt;
}

TreeRules::Answer TreeRules::inRow(const StartTag& start)
{
    if (!is(start.tag, TablePart))
        return inTable(start);
    if (start.tag == Tag::Td || start.tag == Tag::Th) {
        clearBackTo({Tag::Tr, Tag::Template, Tag::Html});
        return insert(start, Mode::InCell);
    }
    if (!m_open.hasInTableScope(Tag::Tr))
        return Placed::Ignored;
    popTo(Tag::Tr);
    return std::nullopt;
}

TreeRules::Answer TreeRules::inCell(const StartTag& start)
{
    if (!is(start.tag, TablePart))
        return inBody(start);
    return closeCell() ? Answer() : Answer(Placed::Ignored);
}

TreeRules::Answer TreeRules::inSelect(const StartTag& start)
{
    switch (start.tag) {
    case Tag::Optgroup:
        closeImplied(Tag::Option);
        if (m_open.isTop(Tag::Optgroup))
            pop();
        return insert(start);
    case Tag::Option:
        closeImplied(Tag::Option);
        return insert(start);
    case Tag::Select:
        popTo(Tag::Select);
        return Placed::Ignored;
    case Tag::Script:
        return insert(start);
    case Tag::Template:
        return insert(start, Mode::InTemplate);
    case Tag::Input:
    case Tag::Keygen:
    case Tag::Textarea:
        break;
    default:
        const bool row = start.tag == Tag::Table
            || (is(start.tag, TablePart) && start.tag != Tag::Col && start.tag != Tag::Colgroup);
        if (mode() != Mode::InSelectInTable || !row)
            return Placed::Ignored;
    }
    popTo(Tag::Select);
    return std::nullopt;
}

TreeRules::Answer TreeRules::inTemplateMode(const StartTag& start)
{
    const Tag tag = start.tag;
    if (is(tag, HeadContent))
        return inBody(start);
    Mode mode = Mode::InBody;
    if (tag == Tag::Col)
        mode = Mode::InColumnGroup;
    else if (tag == Tag::Tr)
        mode = Mode::InTableBody;
    else if (tag == Tag::Td || tag == Tag::Th)
        mode = Mode::InRow;
    else if (is(tag, TablePart))
        mode = Mode::InTable;
    m_open.at(m_open.size() - 1).mode = mode;
    return std::nullopt;
}

} // namespace html
