#include "support/Paths.h"

#include <QDir>
#include <QTemporaryDir>

QString GetTempDir()
{
    static const QTemporaryDir directory(QDir::tempPath() + QStringLiteral("/nomareditor-XXXXXX"));
    if (!directory.isValid())
        return {};
    return QDir::toNativeSeparators(directory.path()) + QDir::separator();
}
