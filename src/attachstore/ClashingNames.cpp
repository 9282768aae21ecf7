#include "attachstore/ClashingNames.h"

#include "attachstore/LegalName.h"
#include "support/Paths.h"

#include <QSet>
#include <QStringView>

#include <algorithm>
#include <limits>
#include <map>

namespace attachstore {
namespace {

constexpr qint64 kHighestRead = std::numeric_limits<qint32>::max();
constexpr qint64 kLowestRead = std::numeric_limits<qint32>::min();

// White space, a sign, digits; ends at the first unit that is none.
qint64 readNumber(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    const bool isNegative = trimmed.startsWith(u'-');
    const qsizetype sign = isNegative || trimmed.startsWith(u'+') ? 1 : 0;
    qint64 number = 0;
    for (const QChar unit : trimmed.sliced(sign)) {
        if (unit < u'0' || unit > u'9' || number > kHighestRead)
            break;
        number = number * 10 + (unit.unicode() - u'0');
    }
    return std::clamp(isNegative ? -number : number, kLowestRead, kHighestRead);
}

struct NameParts {
    QString base;
    qint64 number;
};

NameParts takeApart(const QString& name)
{
    const qsizetype open = name.lastIndexOf(u'(');
    const qsizetype close = name.lastIndexOf(u')');
    const qsizetype dot = name.lastIndexOf(u'.');
    if (open >= 0 && close > open && dot == close + 1)
        return {name.first(open), readNumber(QStringView(name).sliced(open + 1, close - open - 1))};
    return {dot < 0 ? QString() : name.first(dot), 0};
}

class NameIndex {
public:
    explicit NameIndex(const std::vector<QString>& namesInNote)
        : m_names(namesInNote.begin(), namesInNote.end())
    {
        for (const QString& name : namesInNote) {
            if (!name.isEmpty())
                enter(takeApart(name));
        }
    }

    void rename(DropFileInfo& file)
    {
        const QString base = takeApart(file.origName).base;
        const auto entry = m_highest.find(base);
        // Kept: a base that is new to the note is not entered, so a second file of that name in the
        // same list keeps it too.
        if (entry != m_highest.end())
            file.origName = file.fileName =
                nextName(entry->second, base, GetFileExt(file.fileName));
    }

private:
    void enter(const NameParts& parts)
    {
        qint64& highest = m_highest.emplace(parts.base, parts.number).first->second;
        highest = std::max(highest, parts.number);
    }

    // A name that had to be shortened, or whose number is beyond those that are read, does not tell
    // its number when it is met in the note: so it may be there already.
    QString nextName(qint64& highest, const QString& base, const QString& extension) const
    {
        for (;;) {
            ++highest;
            const QString told =
                base + u'(' + QString::number(highest) + QStringLiteral(").") + extension;
            const QString name = LegalName(told);
            const bool tellsItsNumber = highest <= kHighestRead && name == told;
            if (tellsItsNumber || !m_names.contains(name))
                return name;
        }
    }

    QSet<QString> m_names;
    std::map<QString, qint64> m_highest; // by base
};

} // namespace

void NumberClashingNames(const std::vector<QString>& namesInNote, std::vector<DropFileInfo>& files)
{
    NameIndex index(namesInNote);
    for (DropFileInfo& file : files)
        index.rename(file);
}

} // namespace attachstore
