#include "platform/PageCall.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineScript>

#include <algorithm>

namespace {

/// What stands for one character that cannot stand in a script literal as it is.
QString escaped(char16_t c)
{
    switch (c) {
    case u'"':
        return QStringLiteral("\\\"");
    case u'\\':
        return QStringLiteral("\\\\");
    case u'\n':
        return QStringLiteral("\\n");
    case u'\r':
        return QStringLiteral("\\r");
    default:
        return QStringLiteral("\\x%1").arg(int(c), 2, 16, QLatin1Char('0'));
    }
}

/// Appends `text` as a script string literal. A lone surrogate becomes U+FFFD.
void appendLiteral(QString& out, const QString& text)
{
    const QChar* at = text.constData();
    const QChar* const end = at + text.size();
    const QChar* run = at; // Begin of what can be taken over as it is.
    out.append(u'"');
    while (at != end) {
        const char16_t c = at->unicode();
        if (c >= 0x20 && c != u'"' && c != u'\\' && !QChar::isSurrogate(c)) {
            ++at;
            continue;
        }
        if (QChar::isHighSurrogate(c) && at + 1 != end && at[1].isLowSurrogate()) {
            at += 2;
            continue;
        }
        out.append(run, at - run);
        if (QChar::isSurrogate(c))
            out.append(QChar::ReplacementCharacter);
        else
            out.append(escaped(c));
        run = ++at;
    }
    out.append(run, at - run);
    out.append(u'"');
}

} // namespace

QString CallScript(const QString& function, const QStringList& arguments)
{
    qsizetype length = 32 + function.size();
    for (const QString& argument : arguments)
        length += argument.size() + argument.size() / 16 + 8;
    QString script;
    script.reserve(length);
    script.append(QLatin1StringView("nomarCall("));
    appendLiteral(script, function);
    for (const QString& argument : arguments) {
        script.append(u',');
        appendLiteral(script, argument);
    }
    script.append(u')');
    return script;
}

PageCalls::End PageCalls::run(
    QWebEnginePage& page, const QString& script, int deadlineMs, QVariant& value)
{
    const auto pending = std::make_shared<Pending>();
    QEventLoop loop;
    pending->loop = &loop;
    m_pending.push_back(pending);
    QTimer deadline;
    deadline.setSingleShot(true);
    connect(&deadline, &QTimer::timeout, &loop, [pending] { finish(*pending, End::Deadline); });
    deadline.start(deadlineMs);

    page.runJavaScript(script, QWebEngineScript::MainWorld, [pending](const QVariant& reply) {
        if (pending->over)
            return;
        pending->value = reply;
        finish(*pending, End::Reply);
    });
    // With the GLib dispatcher a loop that is entered after idleness can miss its wake-up unless
    // an event of its own is waiting.
    QCoreApplication::postEvent(&loop, new QEvent(QEvent::None));
    const QPointer<PageCalls> self(this);
    if (!pending->over)
        loop.exec(QEventLoop::ExcludeUserInputEvents);

    finish(*pending, End::Quit); // A loop that ended otherwise.
    pending->loop = nullptr;
    if (self)
        m_pending.erase(std::remove(m_pending.begin(), m_pending.end(), pending), m_pending.end());
    value = std::move(pending->value);
    return pending->end;
}

void PageCalls::loseAll()
{
    for (const auto& pending : m_pending)
        finish(*pending, End::Lost);
}

void PageCalls::finish(Pending& pending, End end)
{
    if (pending.over)
        return;
    pending.over = true;
    pending.end = end;
    if (pending.loop)
        pending.loop->quit();
}
