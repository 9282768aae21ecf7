#pragma once

// The two sides of a browser benchmark: the control in a host's window, and the engine's view as it
// comes.

#include <nomareditor/CNomarEditorImpl.h>
#include <nomareditor/INmEditorNotify.h>

#include <QTemporaryDir>
#include <QWebEngineView>
#include <QWidget>

#include <functional>

namespace bench {

/// The control, ready, in a window on the screen, with a store of its own. There is one in the
/// process, since there may be only one control; it is made at first use and stays until close().
class Editor : public QWidget, private INmEditorNotify {
public:
    static Editor& instance();
    /// Takes it down, if there is one. To be called before the application object goes.
    static void close();
    ~Editor() override;

    CNomarEditorImpl& control() { return *m_control; }
    NmWebNoteHandler& handler() { return m_control->Handler(); }
    QWebEnginePage& page();

    /// Files \a html in the store as a note and returns the file's name.
    QString store(const QByteArray& html);
    /// Opens the note that store() named, and waits until the page holds all of it.
    void open(const QString& fileName);
    /// Waits until the page holds all of the note that was loaded last.
    void waitUntilComplete();
    /// Opens an empty note, and waits until the page has let go of the one before.
    void openEmpty();
    /// The page's raw answer to the pull of a note.
    QString pullReply();
    /// Gives the note the focus and puts one character into it by the keyboard.
    void type(QChar character);

    /// How often the host was handed a note.
    int saves() const { return m_saves; }

private:
    Editor();
    bool event(QEvent* event) override;
    int OnSaveNote(
        const QString& guid, std::vector<NewAttachFile>& files, const QString& text) override;
    int OnOpenAttachment(
        const QString& guid, const QString& fileName, const QString& origName) override;

    QTemporaryDir m_dir;
    CNomarEditorImpl* m_control;
    bool m_isReady = false;
    int m_saves = 0;
    int m_stored = 0;
};

/// The engine's own view with a page that holds nothing but an editable frame.
class BareView {
public:
    BareView();

    QWebEnginePage& page() { return *m_view.page(); }
    QString call(const QString& script);
    /// Makes \a html the whole content of the frame. Does not wait.
    void assign(const QString& html);

private:
    QTemporaryDir m_dir;
    QWebEngineView m_view;
};

/// Runs the event loop until \a condition holds. Throws std::runtime_error after a minute.
void waitUntil(const std::function<bool()>& condition);

} // namespace bench
