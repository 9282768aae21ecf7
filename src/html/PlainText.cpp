#include "html/PlainText.h"

#include <algorithm>

namespace html {
namespace {

bool isBlankUnit(QChar unit)
{
    return unit.isSpace() || unit == QChar(0x200B)
        || unit == QChar(QChar::ObjectReplacementCharacter);
}

constexpr std::ptrdiff_t kBlock = 8;

// Whether a block, or what stands right behind it, may end a run. One question at a time, so that
// the compiler asks it of many characters at once.
bool mayEndRun(const char16_t* units)
{
    char16_t controls = 0;
    char16_t blanks = 0;
    for (std::ptrdiff_t i = 0; i < kBlock; ++i) {
        controls |= units[i] < u' ';
        blanks |= (units[i] == u' ') & (units[i + 1] <= u' ');
    }
    return (controls | blanks) != 0;
}

// The end of what is written as it stands: all up to white space, but for single blanks between two
// characters.
const char16_t* runEnd(const char16_t* c, const char16_t* end)
{
    while (end - c > kBlock && !mayEndRun(c))
        c += kBlock;
    while (c != end && (!isSpace(*c) || (*c == u' ' && c + 1 != end && !isSpace(c[1]))))
        ++c;
    return c;
}

const char16_t* findLineEnd(const char16_t* c, const char16_t* end)
{
    return std::find_if(c, end, [](char16_t unit) { return unit == u'\n' || unit == u'\r'; });
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
    const char16_t* c = decoded.utf16();
    const char16_t* const end = c + decoded.size();
    while (c != end) {
        const char16_t* const begin = c;
        if (parent.preformatted)
            c = findLineEnd(begin, end);
        else if (!isSpace(*c))
            c = runEnd(begin, end);
        if (c != begin)
            write(QStringView(begin, c - begin));
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
    m_text.truncate(end);
    m_text.remove(0, begin);
    m_text.squeeze(); // it grew by doubling
    return std::move(m_text);
}

} // namespace html
