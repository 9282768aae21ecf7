#pragma once

#include "platform/Result.h"

#include <QString>

class IEWebBrowser;
class QWidget;

/// The page of the open note, as rooms use it. Scripted in tests, where a failure must be forced.
class NotePage {
public:
    virtual ~NotePage();

    /// Calls the page's `jsProcessor(method, argument)` and waits. Results as
    /// `IEWebBrowser::ExecJSFun`; `reply` is the text that came back.
    virtual long call(const QString& method, const QString& argument, QString& reply) = 0;
    /// The same on the private channel to our own page: calls `nomarPagePrivate(kind, text)`.
    virtual long request(const QString& kind, const QString& text, QString& reply) = 0;
    /// Waits for a page that has died. False if it does not come back; true also while there has
    /// been no page yet.
    virtual bool waitUntilBack() = 0;
    /// Posts a private message to the browser's window; does nothing while there is none.
    virtual void post(int message) = 0;
    /// The browser's window, or null.
    virtual QWidget* window() const = 0;
};

/// The page in a browser. Without a browser every call fails.
class BrowserNotePage : public NotePage {
public:
    explicit BrowserNotePage(IEWebBrowser* browser)
        : m_browser(browser)
    {
    }

    long call(const QString& method, const QString& argument, QString& reply) override;
    long request(const QString& kind, const QString& text, QString& reply) override;
    bool waitUntilBack() override;
    void post(int message) override;
    QWidget* window() const override;

private:
    long run(const QString& function, const QString& name, const QString& text, QString& reply);

    IEWebBrowser* m_browser;
};
