#pragma once

#include "html/TagNames.h"

#include <QHash>
#include <QString>

#include <vector>

namespace html {

enum class Namespace : quint8 { Html, Svg, MathMl };

// The insertion modes that an open element can ask for; an element without a wish of its own has
// that of its parent.
enum class Mode : quint8 {
    InBody,
    InTable,
    InCaption,
    InColumnGroup,
    InTableBody,
    InRow,
    InCell,
    InSelect,
    InSelectInTable,
    InTemplate,
};

// A name as a number: the Tag of a known one, then the others in the order in which they were met.
using NameId = qint32;

struct OpenElement {
    NameId name = 0;
    Namespace space = Namespace::Html;
    Mode mode = Mode::InBody;
    bool mathTextPoint = false; // a MathML text integration point
    bool htmlPoint = false; // an HTML integration point
    bool hidden = false; // here or above: no part of the plain text
    bool preformatted = false; // here or above: white space counts
    // Positions on the stack, this one included, -1 for none. They answer every "in scope" question
    // at once.
    qint32 sameName = -1; // the next element below of this name and kind (HTML or not)
    qint32 html = -1; // the topmost HTML element
    qint32 special = -1; // the topmost of the "special" category
    qint32 itemBarrier = -1; // the same without address, div and p
    qint32 scope = -1; // what ends "has an element in scope"
    qint32 listScope = -1;
    qint32 buttonScope = -1;
    qint32 tableScope = -1;
};

// The stack of open elements (HTML standard, 13.2.4.2), names only. Every operation takes constant
// time, whatever the depth: a search for a name goes by the positions that the elements carry. The
// two lowest elements are html and body.
class OpenElements {
public:
    OpenElements();

    // The number of a tag's name. `text` is the name as it stands in the text.
    NameId nameId(Tag tag, QStringView text);
    static Tag tagOf(NameId name);

    void push(OpenElement element);
    void pop();
    // Takes the element at `position` out of the middle: no search finds it any more. It must be
    // the topmost of its name.
    void takeOut(qint32 position);

    const OpenElement& top() const { return m_stack.back(); }
    OpenElement& at(qint32 position) { return m_stack[std::size_t(position)]; }
    qint32 size() const { return qint32(m_stack.size()); }

    // The position of the topmost HTML element of this name, or -1.
    qint32 find(NameId name) const { return topmost(name, false); }
    qint32 find(Tag tag) const { return topmost(NameId(tag), false); }
    // The same among the SVG and MathML elements.
    qint32 findForeign(NameId name) const { return topmost(name, true); }

    bool hasInScope(Tag tag) const { return isAbove(find(tag), top().scope); }
    bool hasInListScope(Tag tag) const { return isAbove(find(tag), top().listScope); }
    bool hasInButtonScope(Tag tag) const { return isAbove(find(tag), top().buttonScope); }
    bool hasInTableScope(Tag tag) const { return isAbove(find(tag), top().tableScope); }
    bool isTop(Tag tag) const
    {
        return top().space == Namespace::Html && top().name == NameId(tag);
    }

private:
    static bool isAbove(qint32 position, qint32 boundary)
    {
        return position >= 0 && position >= boundary;
    }
    static std::size_t slot(NameId name, bool foreign) { return std::size_t(name) * 2 + foreign; }
    qint32 topmost(NameId name, bool foreign) const;

    std::vector<OpenElement> m_stack;
    std::vector<qint32> m_topmost; // by slot()
    QHash<QString, NameId> m_unknownNames;
};

} // namespace html
