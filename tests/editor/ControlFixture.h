#pragma once

#include "kit/FakePage.h"
#include "kit/LogLines.h"
#include "kit/Print.h"
#include "kit/TestControl.h"

#include "notestore/NoteHtmlRW.h"
#include "support/Paths.h"
#include "support/Text.h"

#include <QDir>
#include <QTest>

#include <gtest/gtest.h>

/// A page that shows what `html` and `text` hold and takes what it is given.
inline constexpr auto plainPage = R"js(
    let html = '', text = '';
    answer = (method, argument) => {
        if (method === 'SetEditorContent') html = argument;
        return ok(method === 'GetEditorContent' ? {ehtml: html, etext: text} : {});
    };
)js";

/// The control on such a page, with what a test does to it.
struct Control : ::testing::Test {
    std::unique_ptr<FakePage> fake;
    std::unique_ptr<Bench> bench;
    LogLines log;

    void start(const char* script = plainPage, bool withHost = true)
    {
        bench.reset(); // One control at a time.
        fake.reset();
        fake = std::make_unique<FakePage>(QString::fromUtf8(script));
        bench = std::make_unique<Bench>(withHost);
        ASSERT_TRUE(bench->waitReady());
    }
    TestControl& control() { return *bench->control; }
    RecordingHost& host() { return bench->host; }
    void type(const QString& html)
    {
        bench->js(QStringLiteral("html = '%1'; text = 'text of ' + html; 1").arg(html));
    }
    QString newNote(int readOnly = 0)
    {
        QString guid;
        control().NewEditor(guid, readOnly);
        return guid;
    }
    /// Files a text and gives the name of its file.
    static QString stored(QString html, NOTE_HTML_VER_NUMBER version)
    {
        GetAttachmentDir();
        NewAttachFile record;
        if (version >= NOTE_HTML_VER_2) {
            EXPECT_EQ(NoteHtmlRW::SaveHtmlTextToFile(html, record, &version), 1);
            return record.fileName;
        }
        // An old version is never written anew: a file of one is made by hand.
        const QString name = CreateGuidString() + QStringLiteral(".html");
        QFile file(GetAttachmentDir() + u'/' + name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(
            QStringLiteral("<!--{\"ver_number\":%1}-->%2").arg(int(version)).arg(html).toUtf8());
        return name;
    }
    static QStringList noteFiles()
    {
        return QDir(GetAttachmentDir()).entryList({QStringLiteral("*.html")}, QDir::Files);
    }
    QStringList calls(const QString& method)
    {
        QStringList of;
        for (const QVariant& call : bench->js(QStringLiteral("calls")).toList())
            if (call.toString().startsWith(method + u' '))
                of << call.toString().mid(method.size() + 1);
        return of;
    }
    void loseFocus(Qt::FocusReason reason = Qt::OtherFocusReason)
    {
        QFocusEvent out(QEvent::FocusOut, reason);
        QCoreApplication::sendEvent(bench->input(), &out);
    }
    void pressKey(int key)
    {
        QTest::keyPress(bench->input(), Qt::Key(key), Qt::ControlModifier);
        QTest::keyRelease(bench->input(), Qt::Key(key), Qt::ControlModifier);
    }
};
