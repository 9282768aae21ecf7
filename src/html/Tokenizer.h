#pragma once

#include "html/CharacterReferences.h"
#include "html/TagNames.h"

#include <QStringView>

namespace html {

enum class TokenKind : quint8 {
    Text, // a run of text, or a part of one
    StartTag,
    EndTag,
    Ignored, // comments of every kind, "</>"
    Doctype,
    Unterminated, // a tag that the text ends in: no token of the document
    End,
};

// One token as positions in the text. Nothing is copied or decoded.
struct Token {
    TokenKind kind = TokenKind::End;
    TextPlace place = TextPlace::Data; // of Text
    bool selfClosing = false; // of a tag
    qsizetype begin = 0;
    qsizetype end = 0;
    qsizetype nameBegin = 0; // of a tag; its attributes start at nameEnd
    qsizetype nameEnd = 0;
};

// Cuts a text into tokens with the tokenizer states of the HTML standard, section 13.2.5. Time is
// linear in the text; a token costs no memory. What the standard leaves to tree building is told to
// it: enterRawText() behind the start tag of an element whose inside is not markup, and whether the
// place is foreign (then CDATA sections exist).
class Tokenizer {
public:
    explicit Tokenizer(QStringView text)
        : m_text(text)
    {
    }
    Token next(bool foreign = false);

    // The following text up to the end tag of `tag`, which is one of the Rcdata or Rawtext names,
    // is its content.
    void enterRawText(Tag tag) { m_rawText = tag; }

private:
    Token textUpTo(qsizetype end, TextPlace place);
    Token readTag(TokenKind kind, qsizetype nameBegin);
    Token readMarkupDeclaration(bool foreign);
    Token readComment();
    Token readUpTo(QChar last, TokenKind kind);
    Token readRawText();
    bool isEndTagAt(qsizetype position, Tag tag) const;
    bool isNameAt(qsizetype position, QLatin1StringView lowerName) const;
    qsizetype findRawTextEnd(qsizetype from, Tag tag) const;
    qsizetype findScriptEnd(qsizetype from) const;
    bool startsWith(qsizetype position, QLatin1StringView text) const
    {
        return m_text.mid(position, text.size()) == text;
    }
    char16_t at(qsizetype i) const { return i < m_text.size() ? m_text.utf16()[i] : u'\0'; }

    QStringView m_text;
    qsizetype m_pos = 0;
    Tag m_rawText = Tag::Unknown; // of which element the next text is the content
};

} // namespace html
