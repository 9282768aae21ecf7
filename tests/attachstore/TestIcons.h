#pragma once

#include "support/AppDirs.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

/// An installation with no icons but those that a test puts there, for as long as it lives.
class TestIcons {
public:
    TestIcons()
    {
        QDir(m_directory.path()).mkdir(QStringLiteral("res"));
        SetInstallDir(m_directory.path());
    }
    ~TestIcons() { SetInstallDir(QString()); }
    TestIcons(const TestIcons&) = delete;
    TestIcons& operator=(const TestIcons&) = delete;

    QString path(const QString& name) const
    {
        return m_directory.filePath(QStringLiteral("res/") + name);
    }
    bool add(const QString& name, const QImage& icon) const { return icon.save(path(name), "bmp"); }
    bool remove(const QString& name) const { return QFile::remove(path(name)); }

    static QImage ofColour(Qt::GlobalColor colour, int size = 32)
    {
        QImage icon(size, size, QImage::Format_RGB32);
        icon.fill(colour);
        return icon;
    }

private:
    QTemporaryDir m_directory;
};
