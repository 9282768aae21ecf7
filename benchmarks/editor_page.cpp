#include "editor_page.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTimer>
#include <QWebEnginePage>

#include <chrono>
#include <memory>
#include <stdexcept>

namespace bench {

namespace {

constexpr std::chrono::milliseconds kPatience{60000};

[[noreturn]] void giveUp(const QString& condition)
{
    throw std::runtime_error("never came true: " + condition.toStdString());
}

} // namespace

const QString kNoteBody = QStringLiteral("document.querySelector('iframe').contentDocument.body");

QVariant evaluate(QWebEnginePage& page, const QString& script)
{
    struct Reply {
        QVariant value;
        bool arrived = false;
    };
    const auto reply = std::make_shared<Reply>();
    QEventLoop loop;
    page.runJavaScript(script, [reply, &loop](const QVariant& value) {
        reply->value = value;
        reply->arrived = true;
        loop.quit();
    });
    // A loop entered after idleness can miss its first wake-up; an event of its own prevents that.
    QCoreApplication::postEvent(&loop, new QEvent(QEvent::None));
    if (!reply->arrived)
        loop.exec();
    return reply->value;
}

void waitFor(QWebEnginePage& page, const QString& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (!evaluate(page, QStringLiteral("Boolean(%1)").arg(condition)).toBool()) {
        if (std::chrono::steady_clock::now() > deadline)
            giveUp(condition);
        settle(20);
    }
}

void waitForPaint(QWebEnginePage& page, const QString& condition)
{
    static int count = 0;
    const QString token = QStringLiteral("painted %1").arg(++count);
    bool painted = false;
    QEventLoop loop;
    const auto watch =
        QObject::connect(&page, &QWebEnginePage::titleChanged, &loop, [&](const QString& title) {
            painted = title == token;
            if (painted)
                loop.quit();
        });
    QTimer::singleShot(kPatience, &loop, &QEventLoop::quit);
    page.runJavaScript(
        QStringLiteral("(() => {"
                       "  const frame = requestAnimationFrame;"
                       "  const painted = () => { document.title = '%1'; };"
                       "  const look = () => (%2) ? frame(() => frame(painted)) : frame(look);"
                       "  look();"
                       "})()")
            .arg(token, condition));
    QCoreApplication::postEvent(&loop, new QEvent(QEvent::None));
    loop.exec();
    QObject::disconnect(watch);
    if (!painted)
        giveUp(condition);
}

void settle(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

QString quoted(const QString& text)
{
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

} // namespace bench
