#pragma once

#include <QEventLoop>
#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>
#include <vector>

class QWebEnginePage;

/// Synchronous script calls into a page: `runJavaScript` and a nested event loop without user
/// input.
class PageCalls : public QObject {
    Q_OBJECT
public:
    /// How a call ended.
    enum class End {
        Reply, ///< The script ran; the value is what it returned.
        Lost, ///< `loseAll` was called: the render process died.
        Quit, ///< The application quits. The script may run yet.
        Deadline, ///< No reply in time.
    };

    /// Runs `script` in the page's own world and waits. Calls nest.
    End run(QWebEnginePage& page, const QString& script, int deadlineMs, QVariant& value);
    /// Ends every call in flight as lost.
    void loseAll();

private:
    /// Shared with the engine's callback, which may come after the call has ended.
    struct Pending {
        QEventLoop* loop = nullptr;
        End end = End::Quit;
        bool over = false;
        QVariant value;
    };
    static void finish(Pending& pending, End end);

    std::vector<std::shared_ptr<Pending>> m_pending;
};

/// The script text that calls `function` with text arguments through the injected caller.
QString CallScript(const QString& function, const QStringList& arguments);
