#include "html/PlainText.h"

#include <algorithm>

namespace html {
namespace {

bool isBlankUnit(QChar unit)
{
    return unit.isSpace() || unit == QChar(0x200B)
        || unit == QChar(QChar::ObjectReplacementCharacter);
}

} // namespace

void PlainTextWriter::lineEnd()
{
    m_text += u'\n';
    m_lineBegin = m_text.size();
    m_separator = QChar();
}

void PlainTextWriter::edge(const OpenElement& element)
{
    if (element.hidden || element.space != Namespace::Html)
        return;
    const Tag tag = OpenElements::tagOf(element.name);
    const bool lineHasText = m_text.size() > m_lineBegin;
    if (is(tag, Block)) {
        m_separator = QChar();
        if (lineHasText)
            lineEnd();
    } else if ((tag == Tag::Td || tag == Tag::Th) && lineHasText) {
        m_separator = u'\t';
    }
}

void PlainTextWriter::opened(const OpenElement& element)
{
    const bool isBr =
        element.space == Namespace::Html && OpenElements::tagOf(element.name) == Tag::Br;
    if (isBr && !element.hidden)
        lineEnd();
    else
        edge(element);
}

void PlainTextWriter::closed(const OpenElement& element)
{
    edge(element);
}

void PlainTextWriter::write(QStringView run)
{
    if (!m_separator.isNull()) {
        m_text += m_separator;
        m_separator = QChar();
    }
    m_text += run;
}

void PlainTextWriter::text(QStringView decoded, const OpenElement& parent)
{
    if (parent.hidden)
        return;
    const char16_t* const end = decoded.utf16() + decoded.size();
    const auto endsRun = [pre = parent.preformatted](
                             char16_t c) { return pre ? c == u'\n' || c == u'\r' : isSpace(c); };
    for (const char16_t* c = decoded.utf16(); c != end;) {
        const char16_t* const runEnd = std::find_if(c, end, endsRun);
        if (runEnd != c)
            write(QStringView(c, runEnd - c));
        c = runEnd;
        if (c == end)
            return;
        if (parent.preformatted)
            lineEnd();
        else if (m_text.size() > m_lineBegin && m_separator.isNull())
            m_separator = u' ';
        ++c;
    }
}

QString PlainTextWriter::take()
{
    if (std::all_of(m_text.cbegin(), m_text.cend(), isBlankUnit))
        return QString();
    qsizetype begin = 0;
    qsizetype end = m_text.size();
    while (m_text[begin] == u'\n')
        ++begin;
    while (m_text[end - 1] == u'\n')
        --end;
    return m_text.mid(begin, end - begin);
}

} // namespace html
