#include "html/Tokenizer.h"

#include "html/Attributes.h"

namespace html {

Token Tokenizer::textUpTo(qsizetype end, TextPlace place)
{
    Token token;
    token.kind = TokenKind::Text;
    token.place = place;
    token.begin = m_pos;
    token.end = m_pos = end;
    return token;
}

Token Tokenizer::next(bool foreign)
{
    if (m_rawText != Tag::Unknown) {
        const Token content = readRawText();
        if (content.end > content.begin)
            return content;
    }
    if (m_pos >= m_text.size())
        return {TokenKind::End, TextPlace::Data, false, m_pos, m_pos, m_pos, m_pos};

    // Data state. A '<' that opens nothing is text and part of the next run.
    const TextPlace place = foreign ? TextPlace::Foreign : TextPlace::Data;
    if (at(m_pos) != u'<') {
        const qsizetype next = m_text.indexOf(u'<', m_pos);
        return textUpTo(next < 0 ? m_text.size() : next, place);
    }
    const char16_t after = at(m_pos + 1);
    if (isAsciiLetter(after))
        return readTag(TokenKind::StartTag, m_pos + 1);
    if (after == u'/' && m_pos + 2 < m_text.size()) {
        if (isAsciiLetter(at(m_pos + 2)))
            return readTag(TokenKind::EndTag, m_pos + 2);
        return readUpTo(u'>', TokenKind::Ignored);
    }
    if (after == u'!')
        return readMarkupDeclaration(foreign);
    if (after == u'?')
        return readUpTo(u'>', TokenKind::Ignored);
    const qsizetype next = m_text.indexOf(u'<', m_pos + 1);
    return textUpTo(next < 0 ? m_text.size() : next, place);
}

Token Tokenizer::readTag(TokenKind kind, qsizetype nameBegin)
{
    Token token;
    token.begin = m_pos;
    token.nameBegin = nameBegin;
    qsizetype i = nameBegin;
    for (; i < m_text.size(); ++i) {
        const char16_t c = m_text.utf16()[i];
        if (isSpace(c) || c == u'/' || c == u'>')
            break;
    }
    token.nameEnd = i;
    if (at(i) == u'>') { // most tags have no attributes
        token.kind = kind;
        token.end = m_pos = i + 1;
        return token;
    }

    AttributeReader reader(m_text, i);
    for (AttributeSpan span; reader.next(span);) { }
    token.kind = reader.end() < 0 ? TokenKind::Unterminated : kind;
    token.selfClosing = reader.selfClosing();
    token.end = m_pos = reader.end() < 0 ? m_text.size() : reader.end();
    return token;
}

Token Tokenizer::readUpTo(QChar last, TokenKind kind)
{
    Token token;
    token.kind = kind;
    token.begin = m_pos;
    const qsizetype found = m_text.indexOf(last, m_pos);
    token.end = m_pos = found < 0 ? m_text.size() : found + 1;
    return token;
}

Token Tokenizer::readMarkupDeclaration(bool foreign)
{
    if (startsWith(m_pos, QLatin1StringView("<!--")))
        return readComment();
    if (isNameAt(m_pos + 2, QLatin1StringView("doctype")))
        return readUpTo(u'>', TokenKind::Doctype);
    if (foreign && startsWith(m_pos, QLatin1StringView("<![CDATA["))) {
        // The token is what stands between the markers: they are no text.
        const qsizetype begin = m_pos + 9;
        const qsizetype close = m_text.indexOf(QLatin1StringView("]]>"), begin);
        m_pos = begin;
        Token token = textUpTo(close < 0 ? m_text.size() : close, TextPlace::Cdata);
        m_pos = close < 0 ? m_text.size() : close + 3;
        return token;
    }
    return readUpTo(u'>', TokenKind::Ignored);
}

// Comment states. It ends at "-->" or "--!>"; "<!-->" and "<!--->" are whole comments.
Token Tokenizer::readComment()
{
    Token token;
    token.kind = TokenKind::Ignored;
    token.begin = m_pos;
    const qsizetype content = m_pos + 4;
    for (qsizetype i = content - 1;;) {
        i = m_text.indexOf(u'>', i + 1);
        if (i < 0) {
            token.end = m_pos = m_text.size();
            return token;
        }
        const bool dashes = at(i - 1) == u'-' && at(i - 2) == u'-';
        const bool dashesBang =
            i - 3 >= content && at(i - 1) == u'!' && at(i - 2) == u'-' && at(i - 3) == u'-';
        if (dashes || dashesBang) {
            token.end = m_pos = i + 1;
            return token;
        }
    }
}

Token Tokenizer::readRawText()
{
    const Tag tag = m_rawText;
    m_rawText = Tag::Unknown;
    const TextPlace place = is(tag, Rcdata) ? TextPlace::Rcdata : TextPlace::Rawtext;
    if (tag == Tag::Plaintext)
        return textUpTo(m_text.size(), place);
    return textUpTo(tag == Tag::Script ? findScriptEnd(m_pos) : findRawTextEnd(m_pos, tag), place);
}

bool Tokenizer::isNameAt(qsizetype position, QLatin1StringView lowerName) const
{
    return equalsLower(m_text.mid(position, lowerName.size()), lowerName);
}

// An "appropriate end tag": "</", the name, and what ends a name.
bool Tokenizer::isEndTagAt(qsizetype position, Tag tag) const
{
    const QLatin1StringView name = tagName(tag);
    const qsizetype end = position + 2 + name.size();
    return at(position + 1) == u'/' && isNameAt(position + 2, name)
        && (isSpace(at(end)) || at(end) == u'/' || at(end) == u'>');
}

qsizetype Tokenizer::findRawTextEnd(qsizetype from, Tag tag) const
{
    for (qsizetype i = m_text.indexOf(u'<', from); i >= 0; i = m_text.indexOf(u'<', i + 1)) {
        if (isEndTagAt(i, tag))
            return i;
    }
    return m_text.size();
}

// Script data states. Inside "<!--" a "<script" makes the next "</script" end only that one.
qsizetype Tokenizer::findScriptEnd(qsizetype from) const
{
    enum { Plain, Escaped, DoubleEscaped } state = Plain;
    const auto scriptNameAt = [this](qsizetype position) {
        const char16_t end = at(position + 6);
        return isNameAt(position, QLatin1StringView("script"))
            && (isSpace(end) || end == u'/' || end == u'>');
    };
    qsizetype escapeBegin = 0; // behind "<!": the dashes of the opening count for the closing
    for (qsizetype i = from; i < m_text.size(); ++i) {
        const char16_t c = at(i);
        if (c == u'<') {
            if (state != DoubleEscaped && isEndTagAt(i, Tag::Script))
                return i;
            if (state == Plain && startsWith(i, QLatin1StringView("<!--"))) {
                state = Escaped;
                escapeBegin = i + 2;
                i += 3;
            } else if (state == Escaped && scriptNameAt(i + 1)) {
                state = DoubleEscaped;
            } else if (state == DoubleEscaped && at(i + 1) == u'/' && scriptNameAt(i + 2)) {
                state = Escaped;
            }
        } else if (c == u'>' && state != Plain && i - 2 >= escapeBegin && at(i - 1) == u'-'
            && at(i - 2) == u'-') {
            state = Plain;
        }
    }
    return m_text.size();
}

} // namespace html
