#pragma once

// Running script in a page of the engine and waiting for what it does: the tools that both sides of
// a browser benchmark are measured with.

#include <QEventLoop>
#include <QString>
#include <QVariant>

class QWebEnginePage;

namespace bench {

/// Runs \a script in the page and waits for its value: the bare form of a synchronous page call.
QVariant evaluate(QWebEnginePage& page, const QString& script);

/// Waits until \a condition, a script expression, is true in the page. Throws std::runtime_error
/// after a minute.
void waitFor(QWebEnginePage& page, const QString& condition);

/// Watches for the paint that shows what makes \a condition true: two frames have been painted
/// since. The page itself watches, once per frame, so that the time of the wait is the time of the
/// paint.
class PaintWatch {
public:
    PaintWatch(QWebEnginePage& page, const QString& condition);
    ~PaintWatch();

    /// Throws as waitFor does.
    void wait();

private:
    QString m_condition;
    QString m_token;
    QEventLoop m_loop;
    QMetaObject::Connection m_connection;
    bool m_painted = false;
};

/// A watch that begins now, and its wait.
void waitForPaint(QWebEnginePage& page, const QString& condition);

/// Lets the event loop run until the machine has had \a milliseconds to finish what was begun.
void settle(int milliseconds);

/// \a text as a script literal.
QString quoted(const QString& text);

/// The expression of the note's body: both our page and BareView hold the note in a frame.
extern const QString kNoteBody;

} // namespace bench
