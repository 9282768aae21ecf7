// From LoadEditor to the first screen of the note on the display, against the engine's own view.

#include "Figure.h"
#include "SampleNote.h"
#include "editor_page.h"
#include "editor_sides.h"

namespace {

using namespace bench;

constexpr qsizetype kMegabyte = 1 << 20;
constexpr qsizetype kFirstScreens = 64 << 10;

/// A note whose first paragraph tells it from every other.
QByteArray markedNote(qsizetype bytes, const QByteArray& mark)
{
    return "<p>" + mark + "</p>\n" + sampleNote(bytes);
}

QString showsMark(const QString& mark)
{
    return QStringLiteral("(%1.querySelector('p')?.textContent === '%2')").arg(kNoteBody, mark);
}

class PaintOfNote {
public:
    explicit PaintOfNote(qsizetype bytes)
        : m_bytes(bytes)
    {
    }

    /// LoadEditor to paint; the rest of the note is waited for outside the time.
    double ours()
    {
        Editor& editor = Editor::instance();
        editor.openEmpty();
        const QString mark = nextMark();
        const QString file = editor.store(markedNote(m_bytes, mark.toLatin1()));
        settle(kPause);
        const double seconds = timed([&] {
            editor.control().LoadEditor(mark, {file}, {}, 0);
            waitForPaint(editor.page(), showsMark(mark));
        })();
        editor.waitUntilComplete();
        editor.openEmpty();
        settle(kPause);
        return seconds;
    }

    /// The first \a bytes of the note assigned in a bare view, to paint.
    double bare(qsizetype bytes)
    {
        const QString mark = nextMark();
        const QString html = QString::fromUtf8(markedNote(bytes, mark.toLatin1()));
        settle(kPause);
        const double seconds = timed([&] {
            m_bare.assign(html);
            waitForPaint(m_bare.page(), showsMark(mark));
        })();
        m_bare.assign(QString());
        waitForPaint(m_bare.page(), QStringLiteral("true"));
        settle(kPause);
        return seconds;
    }

    std::vector<Figure> figures(const std::string& size, double overFirst, double fasterThanWhole)
    {
        const Side whole = [this] { return bare(m_bytes); };
        const Side first = [this] { return bare(kFirstScreens); };
        const Side ours = [this] { return this->ours(); };
        return {atMost("LoadEditor to paint, " + size + ", against 64 KB in a bare view", overFirst,
                    ours, first),
            timesFaster("LoadEditor to paint, " + size + ", against all of it in a bare view",
                fasterThanWhole, ours, whole)};
    }

private:
    static constexpr int kPause = 200;

    QString nextMark() { return QStringLiteral("note number %1").arg(++m_count); }

    qsizetype m_bytes;
    BareView m_bare;
    int m_count = 0;
};

const Registration small{
    "first paint, 1 MB", [] { return PaintOfNote(kMegabyte).figures("1 MB", 2.5, 3.0); }};

const Registration large{
    "first paint, 10 MB", [] { return PaintOfNote(10 * kMegabyte).figures("10 MB", 4.0, 3.5); }};

} // namespace
