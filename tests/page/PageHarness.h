// The built page in a real browser view, with a stand-in for what the library injects: every call
// of the page is recorded. Keys, the mouse and compositions are real input events.
#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>
#include <QWebEngineView>

#include <functional>
#include <memory>

/** One call that the page made of CppProcessor: its arguments as it gave them. */
struct NativeCall {
    QString method;
    QString json;
    QString extra;
};

class PageHarness {
public:
    struct Settings {
        QString language = QStringLiteral("en-US");
        bool dark = false;
        QSize size{1000, 600};
        double zoom = 1.0;
    };

    /** Loads the page and waits until it says that it is ready. */
    PageHarness();
    explicit PageHarness(const Settings& settings);
    ~PageHarness();

    /** The value of `script` in the page, where `note` is the document of the frame. */
    QVariant js(const QString& script);
    bool jsBool(const QString& expression) { return js(expression).toBool(); }
    QString jsText(const QString& expression) { return js(expression).toString(); }
    /** Waits until `expression` is true, at most ten seconds; false when it never was. */
    bool waitFor(const QString& expression);

    /** Calls jsProcessor; the reply as an object, and as the text it was. */
    QJsonObject call(const QString& method, const QString& argument = QStringLiteral("{}"));
    QString callRaw(const QString& method, const QString& argument);
    QJsonObject callPrivate(const QString& kind, const QString& text = QStringLiteral("{}"));

    /** Loads a note and waits until it is complete. */
    void load(const QString& html);
    QString html() { return call(QStringLiteral("GetEditorContent"))[u"ehtml"].toString(); }
    QString text() { return call(QStringLiteral("GetEditorContent"))[u"etext"].toString(); }
    /** The note as it stands in the frame. */
    QString shown() { return jsText(QStringLiteral("note.body.innerHTML")); }

    /** Calls of CppProcessor with this method, and texts posted under this kind. */
    QList<NativeCall> calls(const QString& method);
    QStringList posts(const QString& kind);

    /** Puts the caret, or a selection, at offsets of the text of the element `selector` in the
     * note. */
    void caret(const QString& selector, int offset);
    void select(const QString& selector, int start, int end);
    void selectAll();
    QString selectedText() { return jsText(QStringLiteral("String(note.getSelection())")); }

    /** Gives the page the keyboard focus, with a caret in the note. */
    void focusNote();
    void type(const QString& text);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /** Text that an input method is composing, and the end of the composition. */
    void compose(const QString& text);
    void commit(const QString& text);

    /** The mouse on the middle of an element of the note, or of the page around it. */
    void clickNote(const QString& selector, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
        Qt::MouseButton button = Qt::LeftButton);
    void doubleClickNote(const QString& selector);
    void clickPage(const QString& selector);
    /** Presses the toolbar button with this label. */
    void clickTool(const QString& label);
    /** Chooses the entry of the open menu whose label this is. */
    void chooseMenu(const QString& label);

    QWebEngineView& view() { return *m_view; }
    /** The directory that holds nmeditor/ and userdata/. */
    QString root() const { return m_root.path(); }
    QImage grab();

private:
    QWidget* input();
    QPoint centre(const QString& document, const QString& selector);
    /** Runs `input`, and waits until the page has handled the event that comes last of it. */
    void act(const QString& lastEvent, const std::function<void()>& input);

    QTemporaryDir m_root;
    std::unique_ptr<QWebEngineView> m_view;
};

/** `text` as a JavaScript string. */
QString quoted(const QString& text);
