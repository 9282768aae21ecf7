#pragma once

// Running script in a page of the engine and waiting for what it does: the tools that both sides of
// a browser benchmark are measured with.

#include <QString>
#include <QVariant>

class QWebEnginePage;

namespace bench {

/// Runs \a script in the page and waits for its value: the bare form of a synchronous page call.
QVariant evaluate(QWebEnginePage& page, const QString& script);

/// Waits until \a condition, a script expression, is true in the page. Throws std::runtime_error
/// after a minute.
void waitFor(QWebEnginePage& page, const QString& condition);

/// Waits until \a condition is true and two frames have been painted since. Throws as waitFor does.
/// The page itself watches, once per frame, so that the time of the call is the time of the paint.
void waitForPaint(QWebEnginePage& page, const QString& condition);

/// Lets the event loop run until the machine has had \a milliseconds to finish what was begun.
void settle(int milliseconds);

/// \a text as a script literal.
QString quoted(const QString& text);

/// The expression of the note's body: both our page and BareView hold the note in a frame.
extern const QString kNoteBody;

} // namespace bench
