// The rules for end tags and for text. Start tags stand in TreeRulesStart.cpp.
#include "html/TreeRules.h"

#include <algorithm>

namespace html {

bool TreeRules::endTag(const Token& token, Tag tag)
{
    const OpenElement current = m_open.top();
    if (current.space == Namespace::Html
        && is(OpenElements::tagOf(current.name), Rcdata | Rawtext)) {
        pop(); // the text mode: this is the end tag that the tokenizer looked for
        return true;
    }
    const QStringView text = m_text.sliced(token.nameBegin, token.nameEnd - token.nameBegin);
    const NameId name = m_open.nameId(tag, text);
    if (inForeign()) {
        if (tag == Tag::Br || tag == Tag::P)
            popForeign();
        else if (popForeignTo(name))
            return true;
    }
    return endByMode(tag, name);
}

void TreeRules::text(bool blank)
{
    if (!blank && mode() == Mode::InColumnGroup && m_open.isTop(Tag::Colgroup))
        pop();
}

bool TreeRules::popForeignTo(NameId name)
{
    const qint32 position = m_open.findForeign(name);
    if (position <= m_open.top().html)
        return false;
    popTo(position);
    return true;
}

bool TreeRules::hasTableBodyInTableScope() const
{
    return m_open.hasInTableScope(Tag::Tbody) || m_open.hasInTableScope(Tag::Tfoot)
        || m_open.hasInTableScope(Tag::Thead);
}

bool TreeRules::closeCell()
{
    const qint32 position = std::max(m_open.find(Tag::Td), m_open.find(Tag::Th));
    if (position < 0)
        return false;
    popTo(position);
    return true;
}

// Closes what must be closed before an end tag means anything in the enclosing table, if the tag
// asks for that. True: look at the tag again in the new mode.
bool TreeRules::leaveTablePart(Tag tag)
{
    const bool tableBody = tag == Tag::Tbody || tag == Tag::Tfoot || tag == Tag::Thead;
    switch (mode()) {
    case Mode::InCaption:
        return tag == Tag::Table && m_open.hasInTableScope(Tag::Caption) && popTo(Tag::Caption);
    case Mode::InColumnGroup:
        if (tag == Tag::Col || tag == Tag::Colgroup || tag == Tag::Template
            || !m_open.isTop(Tag::Colgroup))
            return false;
        pop();
        return true;
    case Mode::InTableBody:
        if (tag != Tag::Table || !hasTableBodyInTableScope())
            return false;
        clearBackTo({Tag::Tbody, Tag::Tfoot, Tag::Thead, Tag::Template, Tag::Html});
        pop();
        return true;
    case Mode::InRow:
        return (tag == Tag::Table || (tableBody && m_open.hasInTableScope(tag)))
            && m_open.hasInTableScope(Tag::Tr) && popTo(Tag::Tr);
    case Mode::InCell:
        return (tag == Tag::Table || tag == Tag::Tr || tableBody) && m_open.hasInTableScope(tag)
            && closeCell();
    case Mode::InSelectInTable:
        return (tag == Tag::Table || tag == Tag::Caption || tableBody || tag == Tag::Tr
                   || tag == Tag::Td || tag == Tag::Th)
            && m_open.hasInTableScope(tag) && popTo(Tag::Select);
    default:
        return false;
    }
}

bool TreeRules::endByMode(Tag tag, NameId name)
{
    while (leaveTablePart(tag)) { }
    if (tag == Tag::Template)
        return popTo(Tag::Template);
    switch (mode()) {
    case Mode::InBody:
        return endInBody(tag, name);
    case Mode::InCaption:
        return endInTablePart(tag, name, Tag::Caption);
    case Mode::InColumnGroup:
        if (tag != Tag::Colgroup || !m_open.isTop(Tag::Colgroup))
            return false;
        pop();
        return true;
    case Mode::InTable:
        return endInTablePart(tag, name, Tag::Table);
    case Mode::InTableBody:
        if (tag == Tag::Tbody || tag == Tag::Tfoot || tag == Tag::Thead)
            return m_open.hasInTableScope(tag) && popTo(tag);
        return endInTablePart(tag, name, std::nullopt);
    case Mode::InRow:
        return endInTablePart(tag, name, Tag::Tr);
    case Mode::InCell:
        if (tag == Tag::Td || tag == Tag::Th)
            return m_open.hasInTableScope(tag) && popTo(tag);
        return endInTablePart(tag, name, std::nullopt);
    case Mode::InSelect:
    case Mode::InSelectInTable:
        return endInSelect(tag);
    case Mode::InTemplate:
        return false;
    }
    return false;
}

// `own` is what the mode's own element is called, if its end tag is all that is asked for. The
// other parts of a table mean nothing here.
bool TreeRules::endInTablePart(Tag tag, NameId name, std::optional<Tag> own)
{
    if (own == tag)
        return m_open.hasInTableScope(tag) && popTo(tag);
    if (is(tag, TablePart) || tag == Tag::Table || tag == Tag::Body || tag == Tag::Html)
        return false;
    return endInBody(tag, name);
}

bool TreeRules::endInSelect(Tag tag)
{
    if (tag == Tag::Select)
        return popTo(Tag::Select);
    if (tag != Tag::Option && tag != Tag::Optgroup)
        return false;
    if (tag == Tag::Optgroup && m_open.isTop(Tag::Option)
        && m_open.find(Tag::Optgroup) == m_open.size() - 2)
        pop();
    if (!m_open.isTop(tag))
        return false;
    pop();
    return true;
}

bool TreeRules::endInBody(Tag tag, NameId name)
{
    if (tag == Tag::Body || tag == Tag::Html)
        return false;
    if (tag == Tag::Br || (tag == Tag::P && !m_open.hasInButtonScope(Tag::P))) {
        // Both make an element of their own.
        insertImplied(tag, mode());
        if (tag == Tag::P)
            pop();
        return true;
    }
    if (tag == Tag::P)
        return popTo(Tag::P);
    if (tag == Tag::Form && !inTemplate())
        return endForm();
    if (is(tag, ScopedEnd) || tag == Tag::Form)
        return m_open.hasInScope(tag) && popTo(tag);
    if (tag == Tag::Li)
        return m_open.hasInListScope(Tag::Li) && popTo(Tag::Li);
    if (is(tag, Heading))
        return endHeading();
    if (is(tag, Formatting))
        return endFormatting(name);
    return endOther(name);
}

// Any heading's end tag closes the topmost open heading, whatever its level.
bool TreeRules::endHeading()
{
    qint32 position = -1;
    for (const Tag tag : {Tag::H1, Tag::H2, Tag::H3, Tag::H4, Tag::H5, Tag::H6})
        position = std::max(position, m_open.find(tag));
    if (position < 0 || position < m_open.top().scope)
        return false;
    popTo(position);
    return true;
}

bool TreeRules::endForm()
{
    const bool wasOpen = m_formOpen;
    m_formOpen = false;
    if (!wasOpen || !m_open.hasInScope(Tag::Form))
        return false;
    takeOut(m_open.find(Tag::Form));
    return true;
}

// The adoption agency, as far as the stack shows it: the formatting element goes, and so does
// everything above the last special element that stands on it.
bool TreeRules::endFormatting(NameId name)
{
    const qint32 position = m_open.find(name);
    if (position < 0 || position < m_open.top().scope)
        return false;
    const qint32 block = m_open.top().special;
    if (block < position) {
        popTo(position);
        return true;
    }
    popTo(block + 1);
    takeOut(position);
    return true;
}

void TreeRules::takeOut(qint32 position)
{
    if (position == m_open.size() - 1) {
        pop();
        return;
    }
    if (m_listener)
        m_listener->closed(m_open.at(position));
    m_open.takeOut(position);
}

bool TreeRules::endOther(NameId name)
{
    const qint32 position = m_open.find(name);
    if (position < 0 || position < m_open.top().special)
        return false;
    popTo(position);
    return true;
}

} // namespace html
