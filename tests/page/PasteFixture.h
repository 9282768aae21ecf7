// HTML of other programs, pasted into a note, with a stand-in for the library that brings its
// pictures in.
#pragma once

#include "Names.h"
#include "PageHarness.h"

#include <QApplication>
#include <QClipboard>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMimeData>

#include <gtest/gtest.h>

class PagePaste : public testing::Test {
protected:
    PageHarness page;

    /// Pastes into an empty line of a note and waits until the page is quiet.
    void paste(const QString& html)
    {
        auto* data = new QMimeData;
        data->setHtml(html);
        QApplication::clipboard()->setMimeData(data);
        page.key(Qt::Key_V, Qt::ControlModifier);
    }
    void start(const QString& note = u"<div><br></div>"_s)
    {
        page.load(note);
        page.focusNote();
    }
    QString pasted(const QString& html)
    {
        start();
        paste(html);
        return page.html();
    }
    /// The sources that the page has asked for, in its last request.
    QStringList asked()
    {
        const QStringList requests = page.posts(u"pictures"_s);
        const auto request =
            QJsonDocument::fromJson(requests.isEmpty() ? "{}" : requests.last().toUtf8()).object();
        return request[u"sources"].toVariant().toStringList();
    }
    void answer(int number, const QStringList& digests)
    {
        const QJsonObject reply{
            {u"paste"_s, number}, {u"digests"_s, QJsonArray::fromStringList(digests)}};
        page.callPrivate(
            u"pictures"_s, QString::fromUtf8(QJsonDocument(reply).toJson(QJsonDocument::Compact)));
    }
    QJsonObject add(const QString& digest)
    {
        const QJsonObject attachment{
            {u"picpath"_s, u"../userdata\\attachment\\%1.png"_s.arg(digest)},
            {u"strData"_s, u"userdata\\attachment\\%1.png"_s.arg(digest)},
            {u"exdata"_s, u"{\"OrigName_B64\":\"YQ==\"}"_s}, {u"type"_s, u"png"_s}};
        return page.call(u"AddPicToEditor"_s,
            QString::fromUtf8(QJsonDocument(attachment).toJson(QJsonDocument::Compact)));
    }
    void finish(int number)
    {
        page.callPrivate(u"picturesDone"_s, u"{\"paste\":%1}"_s.arg(number));
    }
};
