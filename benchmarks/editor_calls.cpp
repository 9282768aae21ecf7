// Page calls: the empty one, the pull of an unchanged note at the loss of the focus, and a whole
// save.

#include "Figure.h"
#include "SampleNote.h"
#include "editor_page.h"
#include "editor_sides.h"

#include <QCoreApplication>
#include <QFocusEvent>

#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

namespace {

using namespace bench;

constexpr qsizetype kNoteBytes = 1 << 20;

// After a load the engine lays out and tidies for a while, on the same processors.
constexpr int kLoadToRest = 2000;

// A function that every page has and that does next to nothing.
void emptyCall(CNomarEditorImpl& control)
{
    VARIANT reply;
    if (control.ExecJSFun(QStringLiteral("String"), {}, reply) != 0)
        throw std::runtime_error("the page call failed");
}

// A bare page that answers a pull with the text that our page answered. It has made that text
// itself, as ours has: the engine keeps a new text differently from a literal of a script.
void prepareReply(BareView& bare, const QString& reply)
{
    bare.call(QStringLiteral(
        "window.reply = JSON.stringify(JSON.parse(%1)); window.pull = () => window.reply; ''")
                  .arg(quoted(reply)));
    if (bare.call(QStringLiteral("pull()")) != reply)
        throw std::runtime_error("the bare page does not hold the reply");
}

// What a save cannot do without: a new file in place, its bytes and its name on the disk.
void writeDurably(const QString& dir, const QByteArray& bytes)
{
    static int count = 0;
    const QByteArray folder = dir.toUtf8();
    const QByteArray tmp = folder + "/new.tmp";
    const QByteArray name = folder + "/" + QByteArray::number(++count) + ".html";
    const int file = open(tmp.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    bool isDone = file >= 0 && write(file, bytes.constData(), size_t(bytes.size())) == bytes.size();
    isDone = fsync(file) == 0 && isDone;
    isDone = close(file) == 0 && isDone && rename(tmp.constData(), name.constData()) == 0;
    const int parent = open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    isDone = fsync(parent) == 0 && isDone;
    close(parent);
    if (!isDone)
        throw std::runtime_error("the floor could not write its file");
}

const Registration emptyCalls{
    "empty page call", [] {
        constexpr int kCalls = 300;
        Editor& editor = Editor::instance();
        editor.openEmpty();
        BareView bare;
        return std::vector<Figure>{atMost("empty page call, against a bare runJavaScript and loop",
            1.2, timedPerCall(kCalls, [&] { emptyCall(editor.control()); }),
            timedPerCall(kCalls, [&] { bare.call(QStringLiteral("String()")); }), 9)};
    }};

const Registration unchangedFocusLoss{
    "focus loss", [] {
        Editor& editor = Editor::instance();
        editor.open(editor.store(sampleNote(kNoteBytes)));
        BareView bare;
        prepareReply(bare, editor.pullReply());
        settle(kLoadToRest);
        const int saves = editor.saves();
        const auto loseFocus = [&] {
            QFocusEvent out(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
            QCoreApplication::sendEvent(editor.control().GetWebBrowseHwnd(), &out);
        };
        const Figure figure = atMost("unchanged focus loss, 1 MB, against a pull of the same reply",
            1.3, timedPerCall(5, loseFocus),
            timedPerCall(5, [&] { bare.call(QStringLiteral("pull()")); }), 9);
        if (editor.saves() != saves)
            throw std::runtime_error("an unchanged note was saved");
        return std::vector<Figure>{figure};
    }};

const Registration save{
    "OnSave", [] {
        Editor& editor = Editor::instance();
        const QByteArray note = sampleNote(kNoteBytes);
        editor.open(editor.store(note));
        editor.type(u'a');
        BareView bare;
        prepareReply(bare, editor.pullReply());
        QTemporaryDir dir;
        const Side ours = [&] {
            editor.type(u'a');
            const int saves = editor.saves();
            const double seconds = timed([&] { editor.control().SaveEditor(); })();
            if (editor.saves() != saves + 1)
                throw std::runtime_error("the edited note was not saved");
            return seconds;
        };
        const Side floor = timed([&] {
            bare.call(QStringLiteral("pull()"));
            writeDurably(dir.path(), note);
        });
        return std::vector<Figure>{atMost(
            "OnSave after an edit, 1 MB, against a pull of the same reply and a durable write", 2.0,
            ours, floor, 9)};
    }};

} // namespace
