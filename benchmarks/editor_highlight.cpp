// Search hits: from the call to the painted screen against the engine's own search, what painted
// hits cost while the note is edited, and what taking them away costs.

#include "Figure.h"
#include "SampleNote.h"
#include "editor_page.h"
#include "editor_sides.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTest>
#include <QWebEngineFindTextResult>
#include <QWebEnginePage>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace {

using namespace bench;

constexpr qsizetype kNoteBytes = 1 << 20;
constexpr double kFrame = 1 / 60.0;
constexpr int kPause = 200;
constexpr int kRoundsOfPaint = 9;
const QString kNowhere = QStringLiteral("zqzqzq");

// After a load the engine lays out and tidies for a while, on the same processors.
constexpr int kLoadToRest = 2000;

/// A word that the note holds \a hits times, spread evenly.
QByteArray wordFor(int hits)
{
    return "zq" + QByteArray::number(hits);
}

/// The sample note with the words for 100, 1,000 and 10,000 hits in its paragraphs.
QByteArray noteWithHits()
{
    const QList<QByteArray> parts = sampleNote(kNoteBytes).split('\n');
    const qint64 count = parts.size();
    QByteArray note;
    for (qint64 i = 0; i < count; ++i) {
        QByteArray words;
        for (const int hits : {100, 1000, 10000}) {
            for (qint64 n = i * hits / count; n < (i + 1) * hits / count; ++n)
                words += ' ' + wordFor(hits) + ';';
        }
        note +=
            parts[i].isEmpty() ? "<p>" + words + "</p>" : parts[i].chopped(4) + words + "</p>\n";
    }
    return note;
}

double seconds(const std::function<void()>& work)
{
    return timed(work)();
}

void waitForPaintedScreen(QWebEnginePage& page)
{
    waitForPaint(page, QStringLiteral("true"));
}

/// Both sides with the same note: the control, and a bare view for the engine's own search.
class HitsInNote {
public:
    HitsInNote()
    {
        const QByteArray note = noteWithHits();
        m_editor.open(m_editor.store(note));
        m_bare.assign(QString::fromUtf8(note));
        waitForPaint(m_bare.page(), kNoteBody + QStringLiteral(".textContent.length > 100000"));
        settle(kLoadToRest);
    }

    double ours(int hits)
    {
        const QString word = QString::fromLatin1(wordFor(hits) + ';');
        settle(kPause);
        const double time = seconds([&] {
            if (!m_editor.handler().HighlightText(word))
                throw std::runtime_error("the hits were not painted");
            waitForPaintedScreen(m_editor.page());
        });
        m_editor.handler().CancleHighlight();
        waitForPaintedScreen(m_editor.page());
        return time;
    }

    double findText(int hits)
    {
        const QString word = QString::fromLatin1(wordFor(hits) + ';');
        settle(kPause);
        const double time = seconds([&] {
            if (find(word) != hits)
                throw std::runtime_error("the engine did not find the hits");
            waitForPaintedScreen(m_bare.page());
        });
        m_bare.page().findText(QString());
        waitForPaintedScreen(m_bare.page());
        return time;
    }

    /// From a call to the screen that shows what it did; the page watches already when it comes.
    double toPaint(const QString& condition, const std::function<void()>& call)
    {
        PaintWatch watch(m_editor.page(), condition);
        settle(kPause);
        return seconds([&] {
            call();
            watch.wait();
        });
    }

    double hitsToPaint(int hits)
    {
        const QString word = QString::fromLatin1(wordFor(hits) + ';');
        const double time =
            toPaint(QStringLiteral(
                        "document.querySelector('iframe').contentWindow.CSS.highlights.size > 0"),
                [&] { m_editor.handler().HighlightText(word); });
        m_editor.handler().CancleHighlight();
        return time;
    }

    double emptyCallToPaint()
    {
        evaluate(m_editor.page(),
            QStringLiteral("window.benchCalled = false;"
                           "window.benchEmpty = () => { window.benchCalled = true; return ''; };"));
        return toPaint(QStringLiteral("window.benchCalled"), [&] {
            VARIANT reply;
            m_editor.control().ExecJSFun(QStringLiteral("benchEmpty"), {}, reply);
        });
    }

    Figure againstFindText(int hits, double goal)
    {
        return timesFaster(
            "highlight to painted, " + std::to_string(hits) + " hits, against findText to painted",
            goal, [=, this] { return ours(hits); }, [=, this] { return findText(hits); },
            kRoundsOfPaint);
    }

    Figure overEmptyCall(int hits)
    {
        return atMost(
            "highlight to painted, " + std::to_string(hits)
                + " hits, over an empty call, in frames",
            1.0, [=, this] { return std::max(hitsToPaint(hits) - emptyCallToPaint(), 1e-6); },
            [] { return kFrame; }, kRoundsOfPaint);
    }

private:
    int find(const QString& word)
    {
        struct Answer {
            int matches = -1;
            QEventLoop loop;
        } answer;
        m_bare.page().findText(
            word, QWebEnginePage::FindCaseSensitively, [&](const QWebEngineFindTextResult& result) {
                answer.matches = result.numberOfMatches();
                answer.loop.quit();
            });
        if (answer.matches < 0)
            answer.loop.exec();
        return answer.matches;
    }

    Editor& m_editor = Editor::instance();
    BareView m_bare;
};

const Registration painting{"highlight", [] {
                                HitsInNote note;
                                return std::vector<Figure>{note.againstFindText(100, 1.0),
                                    note.againstFindText(1000, 1.3),
                                    note.againstFindText(10000, 2.0), note.overEmptyCall(100),
                                    note.overEmptyCall(1000), note.overEmptyCall(10000)};
                            }};

/// Paints the 10,000 hits, or leaves the note as it is.
void paint(Editor& editor, bool hits)
{
    const QString word = hits ? QString::fromLatin1(wordFor(10000) + ';') : kNowhere;
    if (!editor.handler().HighlightText(word))
        throw std::runtime_error("the page could not be called");
    settle(kPause);
}

/// One key, until its character is painted.
double typeOne(Editor& editor, bool hits)
{
    paint(editor, hits);
    editor.activateWindow();
    QWidget* const input = editor.control().GetWebBrowseHwnd();
    input->setFocus();
    evaluate(editor.page(),
        QStringLiteral("window.benchInputs = 0;"
                       "%1.ownerDocument.addEventListener('input', () => ++window.benchInputs,"
                       " {once: true}); %1.focus()")
            .arg(kNoteBody));
    settle(kPause);
    return seconds([&] {
        QTest::keyClick(input, 'a');
        waitForPaint(editor.page(), QStringLiteral("window.benchInputs > 0"));
    });
}

/// The whole note by another one, until that is painted and complete.
double replaceNote(Editor& editor, const std::array<QString, 2>& files, bool hits)
{
    editor.open(files[0]);
    settle(kLoadToRest);
    paint(editor, hits);
    return seconds([&] {
        editor.open(files[1]);
        waitForPaintedScreen(editor.page());
    });
}

/// All of the text by an edit of the page, until that is painted.
double replaceText(Editor& editor, const QString& file, bool hits)
{
    editor.open(file);
    settle(kLoadToRest);
    paint(editor, hits);
    return seconds([&] {
        evaluate(editor.page(),
            QStringLiteral("{ const body = %1; body.innerHTML = body.innerHTML; }").arg(kNoteBody));
        waitForPaintedScreen(editor.page());
    });
}

const Registration edits{
    "highlight, edits", [] {
        Editor& editor = Editor::instance();
        const QByteArray note = noteWithHits();
        const std::array<QString, 2> files{
            editor.store(note), editor.store(sampleNote(kNoteBytes))};
        editor.open(files[0]);
        settle(kLoadToRest);
        std::vector<Figure> figures{atMost(
            "typing a character while 10000 hits are painted, against none", 1.5,
            [&] { return typeOne(editor, true); }, [&] { return typeOne(editor, false); }, 9)};
        figures.push_back(atMost(
            "opening another note while 10000 hits are painted, against none", 1.5,
            [&] { return replaceNote(editor, files, true); },
            [&] { return replaceNote(editor, files, false); }));
        figures.push_back(atMost(
            "replacing all text of a note while 10000 hits are painted, against none", 1.5,
            [&] { return replaceText(editor, files[0], true); },
            [&] { return replaceText(editor, files[0], false); }));
        editor.openEmpty();
        return figures;
    }};

const Registration clearing{
    "highlight, clearing", [] {
        Editor& editor = Editor::instance();
        editor.open(editor.store(noteWithHits()));
        settle(kLoadToRest);
        const QString word = QString::fromLatin1(wordFor(10000) + ';');
        const auto paintHits = [&] { editor.handler().HighlightText(word); };
        const auto clearHits = [&] { editor.handler().CancleHighlight(); };
        const auto alone = [](const auto& before, const auto& measured, const auto& after) {
            before();
            settle(kPause);
            const double time = seconds(measured);
            after();
            settle(kPause);
            return time;
        };
        const auto nothing = [] {};
        const Figure figure = atMost(
            "clearing 10000 hits, against painting them, calls alone", 0.2,
            [&] { return alone(paintHits, clearHits, nothing); },
            [&] { return alone(nothing, paintHits, clearHits); }, 15);
        editor.openEmpty();
        return std::vector<Figure>{figure};
    }};

} // namespace
