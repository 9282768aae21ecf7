#include "attachstore/LegalName.h"

#include "support/Paths.h"

#include <QCryptographicHash>

namespace attachstore {
namespace {

constexpr qsizetype kLongest = 255; // bytes of one component, on every file system in use
constexpr qsizetype kDigits = 32; // of the digest: nobody finds two names that share them

// The units of the name and not its UTF-8, in which all lone surrogates are the same.
QString digestOf(const QString& name)
{
    const QByteArrayView units(
        reinterpret_cast<const char*>(name.utf16()), name.size() * qsizetype(sizeof(char16_t)));
    const QByteArray digest = QCryptographicHash::hash(units, QCryptographicHash::Sha256);
    return QString::fromLatin1(digest.toHex().first(kDigits));
}

QString withoutIllegalUnits(const QString& name)
{
    if (name == u'.' || name == QStringLiteral(".."))
        return QString(name.size(), u'_');
    QString legal = name;
    for (qsizetype i = 0; i < legal.size(); ++i) {
        const QChar unit = legal[i];
        if (unit == u'/' || unit == u'\\' || unit == u'\0')
            legal[i] = u'_';
        else if (unit.isHighSurrogate() && i + 1 < legal.size() && legal[i + 1].isLowSurrogate())
            ++i;
        else if (unit.isSurrogate())
            legal[i] = QChar::ReplacementCharacter;
    }
    return legal;
}

qsizetype byteCount(QChar unit)
{
    if (unit.isSurrogate())
        return 2; // half of four
    return unit.unicode() < 0x80 ? 1 : unit.unicode() < 0x800 ? 2 : 3;
}

qsizetype byteCount(const QString& text)
{
    qsizetype bytes = 0;
    for (const QChar unit : text)
        bytes += byteCount(unit);
    return bytes;
}

// As much of the text's beginning as has room in so many bytes.
QString cutTo(qsizetype room, const QString& text)
{
    qsizetype end = 0;
    for (; end < text.size() && byteCount(text[end]) <= room; ++end)
        room -= byteCount(text[end]);
    if (end > 0 && text[end - 1].isHighSurrogate())
        --end;
    return text.first(end);
}

} // namespace

QString LegalName(const QString& name)
{
    if (IsSafeFileName(name) && name.isValidUtf16())
        return name;
    const QString legal = withoutIllegalUnits(name);
    const qsizetype dot = legal.lastIndexOf(u'.');
    const QString digest = u'-' + digestOf(name);
    QString tail = dot < 0 ? digest : digest + legal.sliced(dot);
    if (byteCount(tail) > kLongest)
        tail = digest;
    return cutTo(kLongest - byteCount(tail), dot < 0 ? legal : legal.first(dot)) + tail;
}

} // namespace attachstore
