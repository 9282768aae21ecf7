#pragma once

#include <QStringView>

namespace html {

// One attribute of a tag, as positions in the text. Without a value (`<img hidden>`) all value
// positions are nameEnd.
struct AttributeSpan {
    qsizetype nameBegin = 0;
    qsizetype nameEnd = 0;
    qsizetype valueBegin = 0; // behind the opening quote
    qsizetype valueEnd = 0; // before the closing quote
    bool hasEquals = false;
    bool quoted = false;
};

// Walks the attributes of one tag with the tokenizer states of the HTML standard (13.2.5.32 to
// .40).
//
//     AttributeReader reader(text, nameEnd);
//     AttributeSpan span;
//     while (reader.next(span)) …
//     reader.end()  // behind the '>', or -1 if the text ends before it
class AttributeReader {
public:
    // `position` is where the tag's name ends.
    AttributeReader(QStringView text, qsizetype position)
        : m_text(text)
        , m_pos(position)
    {
    }
    // False when the tag is at its end.
    bool next(AttributeSpan& span);
    qsizetype end() const { return m_end; }
    // The tag ends with "/>". Known when next() has returned false.
    bool selfClosing() const { return m_selfClosing; }

private:
    void readValue(AttributeSpan& span);
    bool atEnd() const { return m_pos >= m_text.size(); }
    char16_t unit() const { return m_text.utf16()[m_pos]; }
    void skipSpace();

    QStringView m_text;
    qsizetype m_pos;
    qsizetype m_end = -1;
    bool m_selfClosing = false;
};

} // namespace html
