#include <nomareditor/AppDirs.h>
#include <nomareditor/AttachFileWatcher.h>
#include <nomareditor/CNomarEditorImpl.h>
#include <nomareditor/CNomarUpDownView.h>
#include <nomareditor/FileType.h>
#include <nomareditor/INmEditorNotify.h>
#include <nomareditor/WindowMessage.h>

#include <QApplication>
#include <QTimer>

#include <typeinfo>

// The least that a host can be: makes a note, puts a text into it, files it, and leaves. Its
// argument is the directory that holds the store.
class Host : public QWidget, public INmEditorNotify {
public:
    int start()
    {
        m_editor->SetNmEditorNotify(this);
        return m_editor->Create(this, rect(), 1, WS_VISIBLE);
    }

    int OnSaveNote(
        const QString& guid, std::vector<NewAttachFile>& files, const QString& text) override
    {
        m_isFiled = guid == m_guid && files.size() == 1 && text.contains(QStringLiteral("笔记"));
        return 1;
    }
    int OnOpenAttachment(const QString&, const QString&, const QString&) override { return 1; }

protected:
    bool event(QEvent* event) override
    {
        if (int(event->type()) != WM_EDITOR_READY)
            return QWidget::event(event);
        m_editor->NewEditor(m_guid, 0);
        m_editor->Handler().SetEditorHtml(QStringLiteral("<p>一篇笔记</p>"));
        m_editor->SaveEditor();
        QCoreApplication::exit(m_isFiled ? 0 : 1);
        return true;
    }

private:
    CNomarEditorImpl* m_editor = new CNomarEditorImpl;
    QString m_guid;
    bool m_isFiled = false;
};

// Something of each class and each function that an installed header exports beside those above:
// what the library keeps hidden fails the link.
bool usesTheRest(QWidget& window)
{
    for (const std::type_info* type : {&typeid(ContainerWnd), &typeid(DropTarget),
             &typeid(IEWebBrowser), &typeid(IFileMonitorNotify), &typeid(IIEDragNotify),
             &typeid(IIEUINotify), &typeid(IJSCallFunNotify), &typeid(INmEditorNotify),
             &typeid(IScreenCaptureNotify), &typeid(NmWebNoteHandler)}) {
        if (!*type->name())
            return false;
    }
    CNomarUpDownView view;
    AttachFileWatcher watcher;
    watcher.SetMsgReceiver(&window);
    AttachFileMonitor monitor;
    const WindowMessage message(WM_EDITOR_COPY);
    PostWindowMessage(&window, WM_EDITOR_COPY);
    return view.Create(&window, window.rect(), 2) && watcher.Start() && monitor.Start()
        && IsPrivateMessage(message) && VARIANT::Text(QStringLiteral("x")).vt == VT_BSTR
        && GetFileTypeByExt(QStringLiteral("PDF")) == FT_PDF && !GetAppDir().isEmpty()
        && !GetInstallDir().isEmpty();
}

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    SetAppDir(app.arguments().value(1));
    SetInstallDir(QStringLiteral(NOMAR_DATA_DIR));
    Host host;
    host.resize(800, 600);
    if (!usesTheRest(host))
        return 4;
    if (!host.start())
        return 2;
    host.show();
    QTimer::singleShot(30000, &app, [] { QCoreApplication::exit(3); });
    return app.exec();
}
