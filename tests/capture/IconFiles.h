#pragma once

#include "support/AppDirs.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <vector>

/// A `res` directory of the test's own.
class OwnRes {
public:
    OwnRes()
    {
        QDir(m_dir.path()).mkdir(QStringLiteral("res"));
        SetInstallDir(m_dir.path());
    }
    ~OwnRes() { SetInstallDir(m_old); }
    OwnRes(const OwnRes&) = delete;
    OwnRes& operator=(const OwnRes&) = delete;

    void put(const QString& name, const QByteArray& content)
    {
        QFile file(m_dir.filePath(QStringLiteral("res/") + name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

private:
    QString m_old = GetInstallDir();
    QTemporaryDir m_dir;
};

inline QByteArray little(quint32 number, int bytes)
{
    QByteArray made;
    for (int i = 0; i < bytes; ++i)
        made.append(char(number >> (8 * i)));
    return made;
}

inline QByteArray pngOf(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return bytes;
}

/// A bitmap as it stands in such a file: blue-green-red-alpha from the bottom up, an empty mask.
inline QByteArray dibOf(const QImage& image)
{
    QByteArray bytes = little(40, 4) + little(quint32(image.width()), 4)
        + little(quint32(image.height()) * 2, 4) + little(1, 2) + little(32, 2)
        + QByteArray(24, '\0');
    for (int y = image.height() - 1; y >= 0; --y)
        for (int x = 0; x < image.width(); ++x)
            bytes += little(image.pixel(x, y), 4);
    const int maskRow = (image.width() + 31) / 32 * 4;
    return bytes + QByteArray(qsizetype(maskRow) * image.height(), '\0');
}

/// One entry of a file of icons: its picture and, in a cursor, its hot spot.
struct IconEntry {
    QByteArray bytes;
    int edge = 0;
    int x = 1;
    int y = 32;
};

inline QByteArray iconFileOf(int kind, const std::vector<IconEntry>& entries)
{
    QByteArray file = little(0, 2) + little(quint32(kind), 2) + little(quint32(entries.size()), 2);
    QByteArray pictures;
    for (const IconEntry& entry : entries) {
        file += little(quint32(entry.edge), 1) + little(quint32(entry.edge), 1) + little(0, 2)
            + little(quint32(entry.x), 2) + little(quint32(entry.y), 2)
            + little(quint32(entry.bytes.size()), 4)
            + little(quint32(6 + 16 * entries.size() + pictures.size()), 4);
        pictures += entry.bytes;
    }
    return file + pictures;
}

inline QImage coloured(int edge, const QColor& colour)
{
    QImage image(edge, edge, QImage::Format_ARGB32);
    image.fill(colour);
    image.setPixelColor(1, 0, Qt::green);
    return image;
}
