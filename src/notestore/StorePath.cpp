#include "notestore/StorePath.h"

#include "support/AppDirs.h"

#include <QDir>

namespace notestore {

QString StoreBase()
{
    return GetAppDir() + QStringLiteral("userdata") + QDir::separator()
        + QStringLiteral("attachment") + QDir::separator();
}

} // namespace notestore
