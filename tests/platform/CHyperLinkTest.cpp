#include "platform/CHyperLink.h"
#include "kit/Print.h"

#include <QDesktopServices>
#include <QObject>
#include <QStringList>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

/// Stands in for the user's browser.
class Desktop : public QObject {
    Q_OBJECT
public:
    QStringList opened;

    Desktop()
    {
        for (const QString& scheme : schemes())
            QDesktopServices::setUrlHandler(scheme, this, "open");
    }
    ~Desktop() override
    {
        for (const QString& scheme : schemes())
            QDesktopServices::unsetUrlHandler(scheme);
    }
    Q_INVOKABLE void open(const QUrl& url) { opened.append(url.toString()); }

private:
    static QStringList schemes()
    {
        return {QStringLiteral("http"), QStringLiteral("https"), QStringLiteral("mailto"),
            QStringLiteral("file"), QStringLiteral("javascript"), QStringLiteral("data"),
            QStringLiteral("ftp"), QString()};
    }
};

} // namespace

TEST(CHyperLink, WebAndMailAddressesLeave)
{
    Desktop desktop;
    for (const char* url : {"http://example.org/a", "https://example.org/?q=1",
             "HTTPS://Example.org", "mailto:a@example.org"})
        EXPECT_TRUE(CHyperLink::OpenLink(QString::fromLatin1(url))) << url;
    EXPECT_EQ(desktop.opened.size(), 4);
}

TEST(CHyperLink, NothingElseLeaves)
{
    Desktop desktop;
    for (const char* url : {"file:///etc/passwd", "javascript:alert(1)", "data:text/html,x",
             "ftp://example.org", "../a.html", "", "   ", "//example.org", "java\nscript:x"})
        EXPECT_FALSE(CHyperLink::OpenLink(QString::fromLatin1(url))) << url;
    EXPECT_TRUE(desktop.opened.isEmpty());
}

#include "CHyperLinkTest.moc"
