#include "attachfiles/StampText.h"

#include <QStringList>

QString StampText(const FileStamp& stamp)
{
    return QStringLiteral("%1 %2").arg(stamp.size).arg(stamp.changed);
}

std::optional<FileStamp> StampOfText(const QString& text)
{
    const QStringList parts = text.split(u' ');
    bool isSize = false, isTime = false;
    const FileStamp stamp{parts.value(0).toLongLong(&isSize), parts.value(1).toLongLong(&isTime)};
    return isSize && isTime && parts.size() == 2 ? std::optional(stamp) : std::nullopt;
}
