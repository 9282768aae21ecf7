#pragma once

#include "clipdrag/ClipFlavours.h"
#include "clipdrag/HtmlClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QUrl>

#include <memory>

/// The clipboard as another program fills and reads it.
namespace board {

inline const QMimeData* held()
{
    return QGuiApplication::clipboard()->mimeData();
}

inline void put(std::unique_ptr<QMimeData> data)
{
    QGuiApplication::clipboard()->setMimeData(data.release());
}

/// What a browser writes: text/html alone.
inline std::unique_ptr<QMimeData> html(const QString& text)
{
    auto data = std::make_unique<QMimeData>();
    data->setData(QStringLiteral("text/html"), text.toUtf8());
    return data;
}
inline void putHtml(const QString& text)
{
    put(html(text));
}

inline std::unique_ptr<QMimeData> files(const QStringList& paths)
{
    QList<QUrl> urls;
    for (const QString& path : paths)
        urls << QUrl::fromLocalFile(path);
    auto data = std::make_unique<QMimeData>();
    data->setUrls(urls);
    return data;
}

inline QImage picture()
{
    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

/// The HTML it holds, markers included; null if there is none.
inline QString fragment()
{
    std::string text;
    return CHtmlClipboard::GetHtmlFragment(text) ? QString::fromStdString(text) : QString();
}

/// The paths it holds.
inline QStringList paths()
{
    QStringList list;
    for (const QString& path : clipdrag::Files(*held()))
        list << path;
    return list;
}

} // namespace board
