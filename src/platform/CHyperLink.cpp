#include "platform/CHyperLink.h"

#include <QDesktopServices>
#include <QStringList>
#include <QUrl>

bool CHyperLink::OpenLink(const QString& url)
{
    static const QStringList allowed{
        QStringLiteral("http"), QStringLiteral("https"), QStringLiteral("mailto")};
    const QUrl address(url.trimmed(), QUrl::TolerantMode);
    if (!address.isValid() || !allowed.contains(address.scheme()))
        return false;
    return QDesktopServices::openUrl(address);
}
