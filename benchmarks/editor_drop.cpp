// A drop of many files into a large note, page included, against the least that each of them takes:
// one insertion in a page, one copy, one card.

#include "Figure.h"
#include "SampleNote.h"
#include "editor_page.h"
#include "editor_sides.h"

#include <QDir>
#include <QFile>
#include <QMimeData>
#include <QUrl>

#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

namespace {

using namespace bench;

constexpr int kFiles = 100;
constexpr qsizetype kNoteSize = 1 << 20;

void require(bool condition, const char* what)
{
    if (!condition)
        throw std::runtime_error(what);
}

/// Documents that are new in each round, so that the store never has one already.
class Documents {
public:
    const QMimeData& data() const { return m_data; }
    const QStringList& paths() const { return m_paths; }

    void renew()
    {
        ++m_round;
        m_paths.clear();
        QList<QUrl> urls;
        for (int i = 0; i < kFiles; ++i) {
            const QString name = QStringLiteral("round %1 file %2.txt").arg(m_round).arg(i);
            QFile file(m_dir.filePath(name));
            require(file.open(QIODevice::WriteOnly), "no document");
            file.write(QByteArray(2000, 'x') + name.toUtf8());
            m_paths.append(file.fileName());
            urls.append(QUrl::fromLocalFile(file.fileName()));
        }
        m_data.setUrls(urls);
    }

private:
    QTemporaryDir m_dir;
    QMimeData m_data;
    QStringList m_paths;
    int m_round = 0;
};

QString countOfImages()
{
    return kNoteBody + QStringLiteral(".getElementsByTagName('img').length");
}

/// One drop as the browser's view delivers it, without the event.
void drop(NmWebNoteHandler& handler, const QMimeData& data)
{
    int effect = Qt::CopyAction;
    require(handler.OnDragEnter(&data, 0, {}, &effect) == S_OK, "the drag was refused");
    require(handler.OnDrop(&data, 0, {}, &effect) == S_OK, "the drop was refused");
}

/// The sizes of all that the sample note refers to, as a host keeps them.
std::map<QString, quint64> sizesOf(const QString& html)
{
    std::vector<NewAttachFile> list;
    require(NmWebNoteHandler::ParseAttList(QStringLiteral("note"), html, list, nullptr), "no list");
    std::map<QString, quint64> sizes;
    for (const NewAttachFile& file : list)
        sizes[file.fileName] = 1;
    return sizes;
}

void copyDurably(const QString& from, const QByteArray& folder)
{
    const QByteArray temporary = folder + "/bare.tmp";
    const int source = ::open(QFile::encodeName(from).constData(), O_RDONLY | O_CLOEXEC);
    const int target = ::open(temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    require(source >= 0 && target >= 0, "a bare open failed");
    while (::copy_file_range(source, nullptr, target, nullptr, 1 << 20, 0) > 0)
        continue;
    require(::fsync(target) == 0 && ::close(target) == 0, "a bare flush failed");
    ::close(source);
    const QByteArray name = folder + '/' + QFile::encodeName(QFileInfo(from).fileName());
    require(::rename(temporary.constData(), name.constData()) == 0, "a bare rename failed");
    const int directory = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    require(directory >= 0 && ::fsync(directory) == 0 && ::close(directory) == 0,
        "a bare flush failed");
}

/// The least: for each file an element put into the bare page, a copy, and a card.
class Bare {
public:
    explicit Bare(const QString& html)
        : m_html(html)
    {
    }

    void fill()
    {
        m_view.assign(m_html);
        // Where the drop finds it: at the end.
        m_view.call(QStringLiteral("%1.focus(); %1.ownerDocument.getSelection()"
                                   ".selectAllChildren(%1); %1.ownerDocument.getSelection()"
                                   ".collapseToEnd(); ''")
                        .arg(kNoteBody));
        settle(300);
    }
    void take(const QStringList& paths)
    {
        const QByteArray folder = QFile::encodeName(m_dir.path());
        for (const QString& path : paths) {
            copyDurably(path, folder);
            const QString card = m_dir.filePath(QStringLiteral("card"));
            require(NmWebNoteHandler::GenerateFileThumb(FT_TEXT, QFileInfo(path).fileName(),
                        QStringLiteral("2026/11/14 06:02 1.95KB"), card, nullptr),
                "no card");
            m_view.call(
                QStringLiteral("String(%1.ownerDocument.execCommand('insertHTML', false, %2))")
                    .arg(kNoteBody, quoted(QString::fromUtf8(sampleAttachment(1)))));
        }
    }

private:
    const QString m_html;
    QTemporaryDir m_dir;
    BareView m_view;
};

std::vector<Figure> measure()
{
    Editor& editor = Editor::instance();
    const QString html = sampleNoteText(kNoteSize);
    const qsizetype before = html.count(QStringLiteral("<img "));
    const auto sizes = sizesOf(html);
    const QString note = editor.store(html.toUtf8());
    Documents documents;
    Bare bare(html);

    const Side ours = [&] {
        documents.renew();
        editor.open(note);
        editor.handler().InitAttachFileSize(sizes);
        settle(300);
        const double seconds = timed([&] { drop(editor.handler(), documents.data()); })();
        require(evaluate(editor.page(), countOfImages()).toLongLong() == before + kFiles,
            "the files are not all in the note");
        return seconds;
    };
    const Side floor = [&] {
        documents.renew();
        bare.fill();
        return timed([&] { bare.take(documents.paths()); })();
    };
    return {atMost("a drop of 100 files into a note of 1 MB, against 100 bare insertions, copies "
                   "and cards",
        1.5, ours, floor)};
}

const Registration registration{"drop", measure};

} // namespace
