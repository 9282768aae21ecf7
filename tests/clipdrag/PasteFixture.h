#pragma once

#include "clipdrag/Paste.h"

#include "clipdrag/Board.h"
#include "kit/AddingFixture.h"

#include "attachstore/EntryRules.h"
#include "noteattach/AttachList.h"
#include "platform/Result.h"

#include <QRegularExpression>

inline const QString totalText = QStringLiteral("获取笔记编辑器附件总大小失败！");
inline const QString limitText = QStringLiteral("最大支持上传10M附件！");
inline const QString startComment = QStringLiteral("<!--StartFragment -->\r\n");

inline QByteArray readAll(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return file.readAll();
}

/// A note with a text attachment "a.txt" and a clipboard to paste from.
struct Pasting : Adding {
    Paste paste{note, *adder, boxes};

    void SetUp() override
    {
        QGuiApplication::clipboard()->clear();
        adder->AddDropFileToEditor({record(file(QStringLiteral("a.txt"), "text"))});
        log.take();
        page.calls.clear();
        page.order.clear();
    }
    /// Lays a file into the note's folder as if its attachment had been deleted from the text, and
    /// gives the element that refers to it.
    QString deleted(const QString& name, const QByteArray& content = "content")
    {
        QFile out(noteFolder().filePath(name));
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(content);
        return element(QStringLiteral("0123.") + name.section(u'.', -1), name);
    }
    /// Runs once, when the page is pulled for the nth time.
    void atPull(int n, std::function<void()> act)
    {
        page.onCall = [this, n, act = std::move(act)] {
            if (page.count(QStringLiteral("GetEditorContent")) == n)
                act();
        };
    }
    std::vector<NewAttachFile> listOf(const QString& html) const
    {
        std::vector<NewAttachFile> list;
        EXPECT_EQ(noteattach::ParseAttList(note.m_curNoteGuid, html, list, nullptr), 1);
        return list;
    }
};
