#include "attachstore/FileRecord.h"
#include "attachstore/Import.h"
#include "notestore/NoteHtmlRW.h"
#include "support/AppDirs.h"

#include <QFile>
#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>
#include <cstring>

// Works on the store of the directory argv[2], from number argv[3] on, until it is killed: "save"
// files one note after the other, "import" brings in one attachment after the other. Each finished
// piece is told by a line with the name of what it made.

namespace {

// From a few bytes to some hundred thousand, so that a kill also falls within a write.
QString textOf(int number)
{
    const int paragraphs = number % 7 == 0 ? 20'000 : number % 50;
    return QStringLiteral("<p>第 %1 号</p>").arg(number)
        + QStringLiteral("<p>笔记 text</p>").repeated(paragraphs) + QStringLiteral("<hr>");
}

QString save(int number)
{
    QString html = textOf(number);
    NewAttachFile record;
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_2;
    return NoteHtmlRW::SaveHtmlTextToFile(html, record, &version) ? record.fileName : QString();
}

QString import(int number)
{
    const QString path = GetAppDir() + QStringLiteral("%1.txt").arg(number);
    QFile source(path);
    if (!source.open(QIODevice::WriteOnly) || source.write(textOf(number).toUtf8()) < 0)
        return {};
    source.close();
    MAF_RESULT result;
    const bool isIn = attachstore::MoveAttFile(
        QStringLiteral("0123456789abcdef"), *attachstore::RecordOfPath(path), result);
    QFile::remove(path);
    return isIn ? QStringLiteral("0123456789abcdef/%1.txt").arg(number) : QString();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4)
        return 2;
    qputenv("QT_QPA_PLATFORM", "offscreen"); // cards are text drawn by the platform
    const QGuiApplication app(argc, argv);
    const auto work = std::strcmp(argv[1], "save") == 0 ? save : import;
    SetAppDir(QString::fromLocal8Bit(argv[2]));
    for (int number = std::atoi(argv[3]);; ++number) {
        const QString made = work(number);
        if (made.isEmpty())
            return 1;
        std::puts(made.toUtf8().constData());
        std::fflush(stdout);
    }
}
