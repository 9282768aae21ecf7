// ParseAttList whole (reading, JSON, records, paths) against a full parse of the same text into a
// tree, without anything read from the tree.

#include "Figure.h"
#include "SampleNote.h"

#include "noteattach/AttachList.h"
#include "support/AppDirs.h"

#include <QTemporaryDir>

#include <gumbo.h>

#include <stdexcept>

namespace {

constexpr qsizetype kMegabyte = 1 << 20;

bench::Side parseAttList(qsizetype bytes, int calls)
{
    return bench::timedPerCall(calls, [note = bench::sampleNoteText(bytes)] {
        std::vector<NewAttachFile> list;
        if (!noteattach::ParseAttList(QStringLiteral("guid"), note, list, nullptr) || list.empty())
            throw std::runtime_error("ParseAttList found nothing");
    });
}

bench::Side gumboParse(qsizetype bytes)
{
    return bench::timed([note = bench::sampleNote(bytes)] {
        GumboOutput* tree = gumbo_parse_with_options(
            &kGumboDefaultOptions, note.constData(), static_cast<std::size_t>(note.size()));
        gumbo_destroy_output(&kGumboDefaultOptions, tree);
    });
}

std::vector<bench::Figure> measure()
{
    const QTemporaryDir directory;
    SetAppDir(directory.path());
    const auto one = parseAttList(kMegabyte, 20);
    const auto ten = parseAttList(10 * kMegabyte, 3);
    return {bench::timesFaster("ParseAttList, 1 MB, against gumbo", 15, one, gumboParse(kMegabyte)),
        bench::timesFaster(
            "ParseAttList, 10 MB, against gumbo", 15, ten, gumboParse(10 * kMegabyte)),
        bench::atMost("ParseAttList, 10 MB against 1 MB", 13, ten, one, 9)};
}

const bench::Registration registration{"ParseAttList", measure};

} // namespace
