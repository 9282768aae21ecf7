// UpdateHtmlAttachAttr for one attachment of a note, with the new body and its plain text, against
// ParseAttList of the same text.

#include "Figure.h"
#include "SampleNote.h"

#include "noteattach/AttachList.h"
#include "noteattach/Rewrite.h"
#include "support/AppDirs.h"

#include <QTemporaryDir>

#include <stdexcept>

namespace {

constexpr qsizetype kMegabyte = 1 << 20;
constexpr int kCalls = 20;

QString middleName(const QString& note)
{
    std::vector<QString> names;
    if (!noteattach::ParseAttOrigFileNameList(note, names) || names.empty())
        throw std::runtime_error("the note has no attachment");
    return names[names.size() / 2];
}

bench::Side updateHtmlAttachAttr(const QString& note)
{
    return bench::timedPerCall(kCalls, [note, name = middleName(note)] {
        const QString value = QStringLiteral("userdata\\attachment\\new.pdf");
        QString html;
        QString text;
        if (!noteattach::UpdateHtmlAttachAttr(note, name, value, value, html, text)
            || html.size() == note.size() || text.isEmpty())
            throw std::runtime_error("UpdateHtmlAttachAttr changed nothing");
    });
}

bench::Side parseAttList(const QString& note)
{
    return bench::timedPerCall(kCalls, [note] {
        std::vector<NewAttachFile> list;
        if (!noteattach::ParseAttList(QStringLiteral("guid"), note, list, nullptr) || list.empty())
            throw std::runtime_error("ParseAttList found nothing");
    });
}

std::vector<bench::Figure> measure()
{
    const QTemporaryDir directory;
    SetAppDir(directory.path());
    const QString note = bench::sampleNoteText(kMegabyte);
    return {bench::atMost("UpdateHtmlAttachAttr, 1 MB, against ParseAttList", 2,
        updateHtmlAttachAttr(note), parseAttList(note), 9)};
}

const bench::Registration registration{"UpdateHtmlAttachAttr", measure};

} // namespace
