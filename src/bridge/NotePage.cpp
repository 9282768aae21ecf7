#include "bridge/NotePage.h"

#include "platform/IEWebBrowser.h"

NotePage::~NotePage() = default;

long BrowserNotePage::call(const QString& method, const QString& argument, QString& reply)
{
    return run(QStringLiteral("jsProcessor"), method, argument, reply);
}

long BrowserNotePage::request(const QString& kind, const QString& text, QString& reply)
{
    return run(QStringLiteral("nomarPagePrivate"), kind, text, reply);
}

long BrowserNotePage::run(
    const QString& function, const QString& name, const QString& text, QString& reply)
{
    if (!m_browser)
        return PAGE_CALL_FAILED;
    // The script's arguments in reverse.
    const std::vector<VARIANT> args{VARIANT::Text(text), VARIANT::Text(name)};
    VARIANT result;
    const long code = m_browser->ExecJSFun(function, args, result);
    reply = result.bstrVal;
    return code;
}

bool BrowserNotePage::waitUntilBack()
{
    return !m_browser || m_browser->WaitForPage();
}

void BrowserNotePage::post(int message)
{
    PostWindowMessage(window(), message);
}

QWidget* BrowserNotePage::window() const
{
    return m_browser ? m_browser->GetWebBrowseHwnd() : nullptr;
}
