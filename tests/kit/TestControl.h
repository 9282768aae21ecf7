#pragma once

#include "editor/CNomarEditorImpl.h"
#include "kit/Wait.h"
#include "noteattach/ExData.h"

#include <QWebEnginePage>
#include <QWebEngineView>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

/// A host that keeps what it is handed.
class RecordingHost : public INmEditorNotify {
public:
    struct Save {
        QString guid;
        std::vector<NewAttachFile> files;
        QString text;
    };
    std::vector<Save> saves;
    QStringList opened;
    int result = 1;
    std::function<void()> onSave;

    int OnSaveNote(
        const QString& guid, std::vector<NewAttachFile>& files, const QString& text) override
    {
        saves.push_back({guid, files, text});
        if (onSave)
            onSave();
        return result;
    }
    int OnOpenAttachment(const QString& guid, const QString& file, const QString& orig) override
    {
        opened << guid + u'|' + file + u'|' + orig;
        return 0;
    }
};

/// The host's window: counts how often it was told that the editor is ready.
class HostWindow : public QWidget {
public:
    int readies = 0;

    bool event(QEvent* event) override
    {
        if (int(event->type()) == WM_EDITOR_READY)
            ++readies;
        return QWidget::event(event);
    }
};

/// The control with its protected steps in the open.
class TestControl : public CNomarEditorImpl {
public:
    using CNomarEditorImpl::GenerateThumbPic;
    using CNomarEditorImpl::IEHookWndProc;
    using CNomarEditorImpl::ModifyIEWndProc;
    using CNomarEditorImpl::OnAttachFileModify;
    using CNomarEditorImpl::OnSave;
    using CNomarEditorImpl::SetCallDeadline;
    using CNomarEditorImpl::SetEditorText;

    QString& lastHtml() { return m_lastHtml; }
    NOTE_HTML_VER_NUMBER version() const { return m_htmlVer; }
    WNDPROC oldWndProc() const { return m_oldWndProc; }
    int docComplete() const { return m_docComplete; }
    const AttachFileMonitor& monitor() const { return m_monitor; }
};

/// A control in a window with a host, its page up.
class Bench {
public:
    explicit Bench(bool withHost = true)
    {
        window.resize(900, 600);
        if (withHost)
            control->SetNmEditorNotify(&host);
        control->Create(&window, QRect(0, 0, 900, 600), 1, WS_VISIBLE);
        window.show();
    }

    bool waitReady()
    {
        return waitFor([this] { return window.readies > 0; });
    }
    QWebEnginePage* page() { return control->findChild<QWebEngineView*>()->page(); }
    /// What a script of the page gives, by the engine's own call.
    QVariant js(const QString& script)
    {
        auto reply = std::make_shared<std::optional<QVariant>>();
        page()->runJavaScript(script, [reply](const QVariant& value) { *reply = value; });
        waitFor([&] { return reply->has_value(); });
        return reply->value_or(QVariant());
    }
    /// What a script of the note's frame gives; `doc` is its document.
    QVariant inNote(const QString& expression)
    {
        return js(QStringLiteral("(() => { const doc = document.querySelector("
                                 "'iframe.ke-edit-iframe').contentDocument; return %1; })()")
                      .arg(expression));
    }
    /// The original names of the note's attachments, in order.
    QStringList attachmentNames()
    {
        const QVariantList values =
            inNote(QStringLiteral("[...doc.images].map(i => i.getAttribute('nm_exdata'))"))
                .toList();
        QStringList names;
        for (const QVariant& value : values)
            names << noteattach::GetOrigNameFromJson(value.toString());
        return names;
    }
    QWidget* input() { return control->GetWebBrowseHwnd(); }

    RecordingHost host;
    HostWindow window;
    TestControl* control = new TestControl; // The window's child from `Create` on.
};
