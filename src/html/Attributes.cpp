#include "html/Attributes.h"

#include "html/TagNames.h"

namespace html {

void AttributeReader::skipSpace()
{
    while (!atEnd() && isSpace(unit()))
        ++m_pos;
}

bool AttributeReader::next(AttributeSpan& span)
{
    // Before attribute name. A slash counts for something only right before the '>'.
    m_selfClosing = false;
    while (!atEnd() && (isSpace(unit()) || unit() == u'/')) {
        m_selfClosing = unit() == u'/';
        ++m_pos;
    }
    if (atEnd())
        return false;
    if (unit() == u'>') {
        m_end = m_pos + 1;
        return false;
    }

    // Attribute name. An equals sign in front of it belongs to it.
    span.nameBegin = m_pos++;
    while (!atEnd() && !isSpace(unit()) && unit() != u'/' && unit() != u'>' && unit() != u'=')
        ++m_pos;
    span.nameEnd = m_pos;

    // After attribute name.
    skipSpace();
    span.hasEquals = !atEnd() && unit() == u'=';
    span.quoted = false;
    if (span.hasEquals) {
        ++m_pos;
        readValue(span);
    } else {
        span.valueBegin = span.valueEnd = span.nameEnd;
    }
    return true;
}

void AttributeReader::readValue(AttributeSpan& span)
{
    skipSpace();
    if (!atEnd() && (unit() == u'"' || unit() == u'\'')) {
        const QChar quote(unit());
        span.quoted = true;
        span.valueBegin = m_pos + 1;
        const qsizetype close = m_text.indexOf(quote, span.valueBegin);
        span.valueEnd = close < 0 ? m_text.size() : close;
        m_pos = close < 0 ? m_text.size() : close + 1;
        return;
    }
    span.valueBegin = m_pos;
    while (!atEnd() && !isSpace(unit()) && unit() != u'>')
        ++m_pos;
    span.valueEnd = m_pos;
}

} // namespace html
