#include "notestore/NoteHtmlRW.h"
#include "support/AppDirs.h"

#include <cstdio>
#include <cstdlib>

// Saves one note after another into the store of the directory argv[1], from number argv[2] on,
// until it is killed. Each finished save is told by its file's name in a line.
int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    SetAppDir(QString::fromLocal8Bit(argv[1]));
    for (int number = std::atoi(argv[2]);; ++number) {
        // From a few bytes to some hundred thousand, so that a kill also falls within a write.
        const int paragraphs = number % 7 == 0 ? 20'000 : number % 50;
        QString html = QStringLiteral("<p>第 %1 号</p>").arg(number)
            + QStringLiteral("<p>笔记 text</p>").repeated(paragraphs) + QStringLiteral("<hr>");
        NewAttachFile record;
        NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_2;
        if (!NoteHtmlRW::SaveHtmlTextToFile(html, record, &version))
            return 1;
        std::puts(record.fileName.toUtf8().constData());
        std::fflush(stdout);
    }
}
