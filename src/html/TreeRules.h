#pragma once

#include "html/OpenElements.h"
#include "html/Tokenizer.h"

#include <QStringView>

#include <initializer_list>
#include <optional>

namespace html {

// What tree building does with a start tag.
enum class Placed : quint8 {
    Ignored, // no element comes of it
    Html, // an HTML element, an `image` tag as `img`
    Foreign, // an SVG or MathML element
    Frameset, // takes the place of the body, if frames are still allowed
};

// Hears of the elements that are opened and closed, void ones too (closed at once).
class ElementListener {
public:
    virtual ~ElementListener() = default;
    virtual void opened(const OpenElement& element) = 0;
    virtual void closed(const OpenElement& element) = 0;
};

// Tree building without a tree: the rules of the HTML standard, sections 13.2.6.4.7 (in body) to
// .18 (in template) and .5 (foreign content), scripting off, reduced to what they do to the stack
// of open elements. From that follows which tags make an element. What is left out, knowingly: the
// list of active formatting elements (an end tag that is out of order closes what it would close,
// but nothing is opened again), foster parenting, the quirks mode of a table in a p.
class TreeRules {
public:
    explicit TreeRules(QStringView text, ElementListener* listener = nullptr)
        : m_text(text)
        , m_listener(listener)
    {
    }

    Placed startTag(const Token& token, Tag tag);
    // False if nothing was closed.
    bool endTag(const Token& token, Tag tag);
    // A run of text; `blank` if it is white space alone.
    void text(bool blank);

    // The current node is an SVG or MathML element: CDATA sections exist.
    bool inForeign() const { return m_open.top().space != Namespace::Html; }
    // What is inserted now belongs to a template and not to the document.
    bool inTemplate() const { return m_open.find(Tag::Template) >= 0; }
    const OpenElement& current() const { return m_open.top(); }
    // The last start tag has ended svg or math.
    bool endedForeign() const { return m_endedForeign; }

private:
    struct StartTag {
        Token token;
        Tag tag;
        NameId name;
    };
    // One rule's answer: nothing if the token is to be looked at again, after a change of the
    // stack.
    using Answer = std::optional<Placed>;

    bool goesByForeignRules(const StartTag& start) const;
    Placed foreignStart(const StartTag& start);
    void popForeign();
    Placed byMode(const StartTag& start);
    Answer inBody(const StartTag& start);
    Answer inTable(const StartTag& start);
    Answer inCaption(const StartTag& start);
    Answer inColumnGroup(const StartTag& start);
    Answer inTableBody(const StartTag& start);
    Answer inRow(const StartTag& start);
    Answer inCell(const StartTag& start);
    Answer inSelect(const StartTag& start);
    Answer inTemplateMode(const StartTag& start);
    void closeImplied(Tag tag);
    void closeP();
    void closeItem(Tag tag, Tag other);
    void closeRuby(Tag tag);
    bool closeCell();
    bool hasTableBodyInTableScope() const;

    bool popForeignTo(NameId name);
    bool endByMode(Tag tag, NameId name);
    bool leaveTablePart(Tag tag);
    bool endInTablePart(Tag tag, NameId name, std::optional<Tag> own);
    bool endInSelect(Tag tag);
    bool endInBody(Tag tag, NameId name);
    bool endHeading();
    bool endForm();
    bool endFormatting(NameId name);
    bool endOther(NameId name);

    Placed insert(const StartTag& start, Mode mode);
    Placed insert(const StartTag& start) { return insert(start, m_open.top().mode); }
    void insertImplied(Tag tag, Mode mode);
    Placed insertForeign(const StartTag& start, Namespace space);
    void push(OpenElement element);
    void pop();
    void popTo(qint32 position); // that one included
    bool popTo(Tag tag); // the topmost of that name; false if there is none
    void takeOut(qint32 position);
    void clearBackTo(std::initializer_list<Tag> tags);
    QString attribute(const StartTag& start, QLatin1StringView name) const;
    Mode mode() const { return m_open.top().mode; }

    QStringView m_text;
    ElementListener* m_listener;
    OpenElements m_open;
    bool m_endedForeign = false;
    bool m_formOpen = false; // the form element pointer is set
};

} // namespace html
