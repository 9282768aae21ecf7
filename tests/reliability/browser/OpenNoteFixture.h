#pragma once

#include "kit/Print.h"
#include "kit/TestControl.h"
#include "reliability/Figures.h"

#include "support/Paths.h"

#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMimeData>
#include <QTest>

#include <gtest/gtest.h>

/// The control with the page that users see and a new note in it, and what a user does to that.
struct OpenNoteFixture : ::testing::Test {
    Bench bench;
    QString guid;

    void SetUp() override
    {
        GetAttachmentDir();
        ASSERT_TRUE(bench.waitReady());
        control().NewEditor(guid, 0);
        settle();
    }

    TestControl& control() { return *bench.control; }
    NmWebNoteHandler& handler() { return control().Handler(); }
    RecordingHost& host() { return bench.host; }
    QWebEngineView* view() { return control().findChild<QWebEngineView*>(); }

    /// Until the posted clearing of the page's cache has been handled.
    void settle()
    {
        bool done = false;
        QTimer::singleShot(0, &control(), [&] { done = true; });
        waitFor([&] { return done; });
    }

    /// Gives the page a text, as `LoadEditor` does with what it has read, and waits until it is
    /// complete.
    void show(const QString& html, int readOnly = 0)
    {
        control().SetEditorText(html, NOTE_HTML_VER_2, readOnly);
        settle();
        ASSERT_TRUE(waitFor([&] {
            return bench
                .js(QStringLiteral("!document.documentElement.classList.contains('loading')"))
                .toBool();
        }));
    }

    QString html()
    {
        QString html, text;
        handler().GetEditorContent(html, text);
        return html;
    }

    QString noteText() { return bench.inNote(QStringLiteral("doc.body.textContent")).toString(); }

    /// Puts the caret to the end of the note.
    void focus()
    {
        control().activateWindow();
        bench.input()->setFocus();
        bench.inNote(QStringLiteral("(doc.defaultView.focus(), doc.body.focus(), "
                                    "doc.getSelection().selectAllChildren(doc.body), "
                                    "doc.getSelection().collapseToEnd(), 1)"));
    }

    void press(int key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier)
    {
        QTest::keyClick(bench.input(), Qt::Key(key), modifiers);
    }

    /// Presses a key and waits until the page has had it and all input before it.
    void pressLast(int key)
    {
        bench.js(QStringLiteral(
            "for (const doc of [document, document.querySelector('iframe').contentDocument]) {"
            " if (doc.documentElement.watched) continue; doc.documentElement.watched = true;"
            " doc.addEventListener('keyup', () => window.keysUp = (window.keysUp ?? 0) + 1, true);"
            " } window.keysUp = 0; 1"));
        press(key, Qt::NoModifier);
        EXPECT_TRUE(
            waitFor([&] { return bench.js(QStringLiteral("window.keysUp > 0")).toBool(); }));
    }

    /// Pastes what is put up here, and waits until the page has had the key.
    void paste(std::unique_ptr<QMimeData> data)
    {
        QGuiApplication::clipboard()->setMimeData(data.release());
        focus();
        press(Qt::Key_V);
        pressLast(Qt::Key_Shift);
    }

    /// Drags `data` over the note and lets it fall there. Whether it was taken.
    bool drop(const QMimeData& data)
    {
        send<QDragEnterEvent>(data);
        // The engine's answer to a drag comes later than the event.
        if (!waitFor([&] { return send<QDragMoveEvent>(data); }, 3000)) {
            QDragLeaveEvent leave;
            QCoreApplication::sendEvent(view(), &leave);
            return false;
        }
        return send<QDropEvent>(data);
    }

    template <typename Event> bool send(const QMimeData& data)
    {
        Event event(QPoint(200, 200), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view(), &event);
        return event.isAccepted() && event.dropAction() == Qt::CopyAction;
    }

    static std::unique_ptr<QMimeData> htmlData(const QString& html)
    {
        auto data = std::make_unique<QMimeData>();
        data->setData(QStringLiteral("text/html"), html.toUtf8());
        return data;
    }

    /// `text` as a script has it.
    static QString quoted(const QString& text)
    {
        const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
        return QString::fromUtf8(array.mid(1, array.size() - 2));
    }
};
