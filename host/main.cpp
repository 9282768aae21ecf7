#include "Chinese.h"
#include "MainWindow.h"

#include <nomareditor/AppDirs.h>

using namespace Qt::StringLiterals;

/// The notes lie beside the executable, or with the user's data where that cannot be written.
static QString defaultAppDir()
{
    const QString beside = QCoreApplication::applicationDirPath();
    return QFileInfo(beside).isWritable()
        ? beside
        : QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
}

static int fail(const QString& text)
{
    QMessageBox::critical(nullptr, QCoreApplication::applicationName(), text);
    return 1;
}

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(u"nomarhost"_s);
    QCommandLineParser options;
    options.addHelpOption();
    options.addOptions({{u"app-dir"_s, u"Where the notes are kept."_s, u"DIR"_s, defaultAppDir()},
        {u"lang"_s, u"Language of the window, en or zh."_s, u"LANG"_s, QLocale().name()}});
    options.process(app);
    QLocale::setDefault(QLocale(options.value(u"lang"_s)));
    Chinese chinese;
    if (QLocale().language() == QLocale::Chinese)
        QCoreApplication::installTranslator(&chinese);

    const QDir appDir(QDir(options.value(u"app-dir"_s)).absolutePath());
    const QString storeDir = appDir.filePath(u"userdata/attachment"_s);
    if (!appDir.mkpath(storeDir))
        return fail(QObject::tr("The folder %1 cannot be written").arg(storeDir));
    QLockFile lock(appDir.filePath(u"nomarhost.lock"_s));
    lock.setStaleLockTime(0); // only the lock of a dead process is stale, whatever its age
    if (!lock.tryLock())
        return fail(QObject::tr("These notes are open in another window."));
    Shelf shelf;
    if (!shelf.open(appDir.filePath(u"shelf.sqlite"_s)))
        return fail(QObject::tr("The notes cannot be opened: %1").arg(shelf.errorText()));

    SetAppDir(appDir.path());
    // Built, the page lies beside the executable; installed, in the package's data directory.
    const QDir bin(QCoreApplication::applicationDirPath());
    if (!bin.exists(u"nmeditor"_s))
        SetInstallDir(bin.filePath(u"../share/nomareditor"_s));
    QSettings settings(appDir.filePath(u"nomarhost.ini"_s), QSettings::IniFormat);
    MainWindow window(shelf, storeDir, settings);
    if (!window.isUsable())
        return fail(QObject::tr("The editor cannot be started."));
    window.show();
    return QApplication::exec();
}
