#include "platform/PageChannel.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWebChannel>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

namespace {

constexpr auto scriptName = "nomar-bridge";

/// Runs behind the channel's own script. `%1` is the settings object.
/// `nomarCall` gives text back as it is and anything else in an array, so that the reply tells a
/// text from a failure without a second encoding of the text. A function may have a form of itself
/// that gives its text in parts, `inParts`: a long text that is made anew for each call costs the
/// page's heap much, its parts mostly stand there already.
constexpr auto bridgeScript = R"js(
(() => {
    'use strict';
    let native = null;
    const waiting = [];
    const send = (entry, args) => {
        if (native)
            native[entry](...args);
        else
            waiting.push([entry, args]);
    };
    const define = (name, value) => Object.defineProperty(window, name, { value });
    define('CppProcessor', function (...args) { send('execute', [args]); });
    define('nomarPrivate', Object.freeze({
        post: (kind, text) => send('post', [String(kind), String(text)]),
        settings: Object.freeze(%1),
    }));
    define('nomarCall', (name, ...args) => {
        try {
            if (window[name].inParts)
                return ['text', ...Array.from(window[name].inParts(...args), String)];
            const reply = window[name](...args);
            return typeof reply === 'string' ? reply : ['value'];
        } catch (error) {
            return ['error', String(error)];
        }
    });
    new QWebChannel(qt.webChannelTransport, (channel) => {
        native = channel.objects.nomarNative;
        for (const [entry, args] of waiting.splice(0))
            native[entry](...args);
    });
})();
)js";

QString channelScript()
{
    QFile file(QStringLiteral(":/qtwebchannel/qwebchannel.js"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

PageChannel::PageChannel(QWebEnginePage& page)
    : m_page(page)
{
    auto* channel = new QWebChannel(this);
    channel->registerObject(QStringLiteral("nomarNative"), this);
    page.setWebChannel(channel, QWebEngineScript::MainWorld);
}

void PageChannel::inject(const Settings& settings)
{
    QWebEngineScriptCollection& scripts = m_page.scripts();
    const QString name = QString::fromLatin1(scriptName);
    for (const QWebEngineScript& old : scripts.find(name))
        scripts.remove(old);

    const QJsonObject object{
        {QStringLiteral("language"), settings.language}, {QStringLiteral("dark"), settings.dark}};
    QString bridge = QString::fromLatin1(bridgeScript);
    bridge.replace(QLatin1StringView("%1"),
        QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
    QWebEngineScript script;
    script.setName(name);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setRunsOnSubFrames(false);
    script.setSourceCode(channelScript() + bridge);
    scripts.insert(script);
}
