#include "platform/RequestFilter.h"

#include "support/AppDirs.h"
#include "support/Paths.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace {

constexpr auto storeName = "userdata/attachment";

/// A folder's path in the engine's form: forward slashes, one at the end.
QString folder(const QString& base, const QString& name)
{
    return QDir::cleanPath(QDir::fromNativeSeparators(base) + u'/' + name) + u'/';
}

/// True if `path` stands below `root` by its name and also where its links lead.
bool isBelow(const QString& path, const QString& root)
{
    if (!path.startsWith(root))
        return false;
    const QString target = QFileInfo(path).canonicalFilePath();
    // A file that is missing is refused by the engine itself.
    return target.isEmpty() || target.startsWith(QFileInfo(root).canonicalFilePath() + u'/');
}

} // namespace

QString RequestFilter::allowedFile(const QString& path)
{
    const QString wanted = QDir::cleanPath(path);
    const QString store = folder(GetAppDir(), QString::fromLatin1(storeName));
    const QString besidePage = folder(GetInstallDir(), QString::fromLatin1(storeName));
    // The page says "../userdata/attachment", which is the store only where both directories agree.
    const QString file =
        wanted.startsWith(besidePage) ? store + wanted.mid(besidePage.size()) : wanted;
    for (const QString& root : {store, folder(GetInstallDir(), QStringLiteral("nmeditor")),
             folder(GetInstallDir(), QStringLiteral("res"))}) {
        if (isBelow(file, root))
            return file;
    }
    return QString();
}

void RequestFilter::interceptRequest(QWebEngineUrlRequestInfo& info)
{
    const QUrl url = info.requestUrl();
    const QString scheme = url.scheme();
    if (scheme == u"data" || scheme == u"blob" || scheme == u"about")
        return;
    if (scheme != u"file" || !url.host().isEmpty()) {
        info.block(true);
        return;
    }
    const QString asked = url.toLocalFile();
    const QString allowed = allowedFile(asked);
    if (allowed.isEmpty())
        info.block(true);
    else if (allowed != QDir::cleanPath(asked))
        info.redirect(QUrl::fromLocalFile(allowed));
}
