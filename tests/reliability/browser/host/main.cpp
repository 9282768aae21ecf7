// The sample host without its window: types into notes and saves them until it is killed. `argv[1]`
// is the directory of the store and the shelf. Each save that the host has taken is told by a line:
// the note, the words that are on the shelf, the name of its file, the digest of the text that the
// control holds for saved.

#include "EditorPane.h"
#include "Shelf.h"

#include <nomareditor/AppDirs.h>
#include <nomareditor/CNomarEditorImpl.h>

#include <QApplication>
#include <QCryptographicHash>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int savesOfANote = 15;

class Writer {
public:
    explicit Writer(const QString& directory)
        : m_directory(directory)
    {
        if (!m_shelf.open(directory + u"/shelf.db"_s))
            std::exit(2);
        m_pane.resize(600, 400);
        QObject::connect(&m_pane, &EditorPane::noteSaved, [this] { m_isTold = true; });
        QObject::connect(&m_pane, &EditorPane::ready, [this] {
            // Behind the engine's own task.
            QTimer::singleShot(1, [this] { write(); });
        });
        m_pane.show();
    }

private:
    void write()
    {
        auto* control = m_pane.findChild<CNomarEditorImpl*>();
        control->Handler().SetEditorMaxChars(100'000'000);
        for (int save = 0;; ++save) {
            if (save % savesOfANote == 0)
                m_pane.newNote();
            // Mostly a few bytes; now and then so many that a kill falls within their write.
            if (save % savesOfANote == 5)
                control->Handler().SetEditorHtml(
                    u"<p>"_s + u"many words "_s.repeated(20'000) + u"</p>"_s);
            type(*control, u"w%1 "_s.arg(save));
            if (!m_pane.saveNote() || !std::exchange(m_isTold, false))
                std::exit(3);
            const QString guid = m_pane.noteGuid();
            QString saved;
            control->GetLastHtml(saved);
            const QByteArray digest =
                QCryptographicHash::hash(saved.toUtf8(), QCryptographicHash::Md5).toHex();
            std::printf("%s %d %s %s\n", qPrintable(guid), m_shelf.note(guid)->words,
                qPrintable(m_shelf.htmlFiles(guid).front()), digest.constData());
            std::fflush(stdout);
        }
    }

    /// Until the words stand in the note.
    void type(CNomarEditorImpl& control, const QString& words)
    {
        QString html, text;
        for (int looks = 0; !text.contains(words.trimmed()); ++looks) {
            // A note that is still coming in takes no keys yet, and each new one wants the focus.
            if (looks % 20 == 0) {
                control.clearFocus();
                control.setFocus();
                QTest::keyClicks(QApplication::focusWidget(), words);
            }
            QCoreApplication::processEvents();
            control.Handler().GetEditorContent(html, text);
        }
    }

    const QString m_directory;
    Shelf m_shelf;
    EditorPane m_pane{m_shelf, m_directory + u"/userdata/attachment"_s, nullptr};
    bool m_isTold = false;
};

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    QApplication app(argc, argv);
    if (argc != 2)
        return 1;
    SetAppDir(QString::fromLocal8Bit(argv[1]));
    SetInstallDir(QStringLiteral(NOMAR_TEST_INSTALL_DIR));
    const Writer writer(QString::fromLocal8Bit(argv[1]));
    return QApplication::exec();
}
