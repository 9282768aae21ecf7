#include "html/BodySplicer.h"

#include "html/CharacterReferences.h"
#include "html/TagNames.h"

namespace html {
namespace {

bool isReferenceUnit(QChar c)
{
    return isAsciiLetter(c.unicode()) || (c >= u'0' && c <= u'9') || c == u'#';
}

// The text ends in the beginning of a character reference. Looks back to the last tag at most.
bool endsInReference(QStringView text)
{
    qsizetype i = text.size() - 1;
    while (i >= 0 && isReferenceUnit(text[i]))
        --i;
    return i >= 0 && text[i] == u'&';
}

} // namespace

void BodySplicer::copyUpTo(qsizetype position)
{
    m_result += m_html.sliced(m_copied, position - m_copied);
    m_copied = position;
}

void BodySplicer::cut(const Piece& piece)
{
    if (piece.begin < m_copied)
        return;
    if (piece.endsForeign) {
        // A stray head tag ends svg and math as well, and makes no element.
        replace(piece, QStringLiteral("<head>"));
        return;
    }
    if (piece.begin == m_cut.end && m_cut.end > m_cut.begin) {
        m_cut.end = m_copied = piece.end;
        return;
    }
    finishCut();
    copyUpTo(piece.begin);
    m_cut = piece;
    m_copied = piece.end;
}

void BodySplicer::replace(const Piece& piece, const QString& text)
{
    if (piece.begin < m_copied)
        return;
    finishCut();
    copyUpTo(piece.begin);
    m_result += text;
    m_copied = piece.end;
}

QString BodySplicer::take()
{
    finishCut();
    copyUpTo(m_html.size());
    return std::move(m_result);
}

void BodySplicer::finishCut()
{
    if (m_cut.end > m_cut.begin && cutWouldJoin())
        m_result += QLatin1StringView("<!---->");
    m_cut.begin = m_cut.end;
}

// What stands before the cut and what stands behind it would mean something together that neither
// means alone: a tag, a character reference, one line break of two, a character of two halves, or
// a line feed that the start tag of a pre swallows.
bool BodySplicer::cutWouldJoin() const
{
    if (m_cut.begin == 0 || m_cut.end == m_html.size())
        return false;
    const QChar before = m_html[m_cut.begin - 1];
    const QChar after = m_html[m_cut.end];
    if (before == u'<')
        return isAsciiLetter(after.unicode()) || after == u'/' || after == u'!' || after == u'?';
    if (before == u'\r')
        return after == u'\n';
    if (before.isHighSurrogate())
        return after.isLowSurrogate();
    if (m_cut.behindPre)
        return decodeText(m_html.mid(m_cut.end, 12), TextPlace::Data).startsWith(u'\n');
    return (isReferenceUnit(after) || after == u';') && endsInReference(m_html.first(m_cut.begin));
}

} // namespace html
