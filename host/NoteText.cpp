#include "NoteText.h"

using namespace Qt::StringLiterals;

QString firstLine(const QString& text)
{
    const QString rest = text.trimmed();
    return rest.left(rest.indexOf(u'\n')).simplified();
}

QString excerpt(const QString& text, const QStringList& terms, qsizetype length)
{
    qsizetype hit = -1;
    for (qsizetype i = 0; i < terms.size() && hit < 0; ++i)
        hit = text.indexOf(terms[i], 0, Qt::CaseInsensitive);
    qsizetype start = qMax(qsizetype(0), hit - length / 4);
    if (start > 0 && text[start].isLowSurrogate())
        --start;
    // Collapsed white space makes room for more, so more is taken than is shown.
    QString shown = text.mid(start, length * 2).simplified();
    if (shown.size() > length)
        shown.truncate(length - (shown[length - 1].isHighSurrogate() ? 1 : 0));
    return start > 0 ? u"…"_s + shown : shown;
}

int countWords(const QString& text)
{
    int words = 0;
    bool inWord = false;
    for (const char32_t c : text.toUcs4()) {
        const auto script = QChar::script(c);
        const bool alone = script == QChar::Script_Han || script == QChar::Script_Hiragana
            || script == QChar::Script_Katakana;
        const bool letter = QChar::isLetterOrNumber(c) || QChar::isMark(c);
        if (alone || (letter && !inWord))
            ++words;
        inWord = !alone && (letter || (inWord && (c == U'\'' || c == U'’')));
    }
    return words;
}
