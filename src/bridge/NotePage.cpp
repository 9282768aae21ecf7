#include "bridge/NotePage.h"

#include "platform/IEWebBrowser.h"

NotePage::~NotePage() = default;

long BrowserNotePage::call(const QString& method, const QString& argument, QString& reply)
{
    if (!m_browser)
        return PAGE_CALL_FAILED;
    std::vector<VARIANT> args;
    args.insert(args.begin(), VARIANT::Text(method));
    args.insert(args.begin(), VARIANT::Text(argument));
    VARIANT result;
    const long code = m_browser->ExecJSFun(QStringLiteral("jsProcessor"), args, result);
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
