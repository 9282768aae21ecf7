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

PaintWatch::PaintWatch(QWebEnginePage& page, const QString& condition)
    : m_condition(condition)
{
    static int count = 0;
    m_token = QStringLiteral("painted %1").arg(++count);
    m_connection = QObject::connect(
        &page, &QWebEnginePage::titleChanged, &m_loop, [this](const QString& title) {
            m_painted = m_painted || title == m_token;
            if (m_painted)
                m_loop.quit();
        });
    page.runJavaScript(
        QStringLiteral("(() => {"
                       "  const frame = requestAnimationFrame;"
                       "  const painted = () => { document.title = '%1'; };"
                       "  const look = () => (%2) ? frame(() => frame(painted)) : frame(look);"
                       "  look();"
                       "})()")
            .arg(m_token, condition));
}

PaintWatch::~PaintWatch()
{
    QObject::disconnect(m_connection);
}

void PaintWatch::wait()
{
    QTimer::singleShot(kPatience, &m_loop, &QEventLoop::quit);
    QCoreApplication::postEvent(&m_loop, new QEvent(QEvent::None));
    if (!m_painted)
        m_loop.exec();
    if (!m_painted)
        giveUp(m_condition);
}

void waitForPaint(QWebEnginePage& page, const QString& condition)
{
    PaintWatch(page, condition).wait();
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
