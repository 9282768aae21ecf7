#pragma once

#include <QObject>
#include <QVariantList>

#include <functional>

class QWebChannel;
class QWebEnginePage;

/// The way from the page's script to native code: `CppProcessor` and the private channel, injected
/// before any script of the page runs. A call that is made before the channel stands is kept and
/// sent when it does.
class PageChannel : public QObject {
    Q_OBJECT
public:
    /// What the page learns at its start.
    struct Settings {
        QString language; ///< A language tag such as "zh-CN".
        bool dark = false;
    };

    explicit PageChannel(QWebEnginePage& page);

    /// Sets what the next load of the page injects.
    void inject(const Settings& settings);

Q_SIGNALS:
    /// The page called `CppProcessor`, with as many arguments as it gave.
    void called(const QVariantList& arguments);
    /// The page sent text on the private channel.
    void privateMessage(const QString& kind, const QString& text);

public:
    /// Entry of the injected script; not for others.
    Q_INVOKABLE void execute(const QVariantList& arguments) { Q_EMIT called(arguments); }
    /// Entry of the injected script; not for others.
    Q_INVOKABLE void post(const QString& kind, const QString& text)
    {
        Q_EMIT privateMessage(kind, text);
    }

private:
    QWebEnginePage& m_page;
};
