#pragma once

#include "support/Log.h"
#include "support/Paths.h"

#include <QFile>
#include <QStringList>

/// The lines that were logged since construction, without their time and thread.
class LogLines {
public:
    LogLines()
    {
        CLog4C::WriteQueued();
        m_start = QFile(path()).size();
    }

    QStringList take()
    {
        CLog4C::WriteQueued();
        QFile file(path());
        QStringList lines;
        if (!file.open(QIODevice::ReadOnly) || !file.seek(m_start))
            return lines;
        for (const QString& line :
            QString::fromUtf8(file.readAll()).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts))
            lines.append(line.section(u' ', 3));
        m_start = file.pos();
        return lines;
    }

private:
    static QString path() { return GetAppDir() + QStringLiteral("NomarEditor.log"); }

    qint64 m_start;
};
