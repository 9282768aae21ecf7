// The attachment list of a note, whole, against the engine's own parser.

#include "Figure.h"
#include "SampleNote.h"
#include "editor_page.h"
#include "editor_sides.h"

#include <stdexcept>

namespace {

using namespace bench;

Figure parseFigure(BareView& bare, const std::string& size, qsizetype bytes)
{
    const QString html = sampleNoteText(bytes);
    const qsizetype images = html.count(QStringLiteral("<img "));
    bare.call(QStringLiteral("window.note = %1; ''").arg(quoted(html)));
    const Side ours = timed([&] {
        std::vector<NewAttachFile> list;
        if (!NmWebNoteHandler::ParseAttList(QStringLiteral("note"), html, list, nullptr)
            || qsizetype(list.size()) != 2 * images)
            throw std::runtime_error("the list is not that of the note");
    });
    // Timed by the page's own clock: the way there and back is not the parser's.
    const Side engine = [&] {
        const QStringList reply =
            bare.call(QStringLiteral("(() => { const start = performance.now();"
                                     " const images = new DOMParser().parseFromString(note, "
                                     "'text/html').getElementsByTagName('img').length;"
                                     " return `${images} ${performance.now() - start}`; })()"))
                .split(u' ');
        if (reply.value(0).toLongLong() != images)
            throw std::runtime_error("the engine found other pictures");
        return reply.value(1).toDouble() / 1000;
    };
    return timesFaster(
        "ParseAttList, " + size + ", against the engine's DOMParser", 3, ours, engine, 9);
}

const Registration parse{"ParseAttList over DOMParser", [] {
                             Editor::instance();
                             BareView bare;
                             return std::vector<Figure>{parseFigure(bare, "1 MB", 1 << 20),
                                 parseFigure(bare, "10 MB", 10 << 20)};
                         }};

} // namespace
