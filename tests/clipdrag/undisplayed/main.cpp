// undisplayed: uses the clipboard without an application object, with one that knows no desktop,
// and with one that does. Prints the results of the three operations, and whether there was a
// fragment.

#include "clipdrag/HtmlClipboard.h"

#include <QGuiApplication>

#include <cstdio>

namespace {

void use()
{
    std::string fragment = "as it was";
    const bool text = CHtmlClipboard::SetHtmlText("x");
    const bool read = CHtmlClipboard::GetHtmlFragment(fragment);
    const bool files = CHtmlClipboard::SetFileDropList({QStringLiteral("/a")});
    std::printf("%d %d %d %d\n", text, read, files, fragment != "as it was");
}

} // namespace

int main(int argc, char** argv)
{
    use();
    {
        const QCoreApplication application(argc, argv);
        use();
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    use();
    return 0;
}
