// The upgrade of a note of version 1 against the attachment list of the same note.

#include "Figure.h"
#include "SampleNote.h"

#include "noteattach/AttachList.h"
#include "notestore/HtmlFileUpgrade.h"
#include "support/AppDirs.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <stdexcept>

namespace {

constexpr qsizetype kMegabyte = 1 << 20;
constexpr qsizetype kAttachments = 500;

// The sample note with its attachments as version 1 has them.
QString oldNote()
{
    static const QRegularExpression exData(QStringLiteral(" nm_exdata=\"[^\"]*\""));
    QString note = bench::sampleNoteText(kMegabyte);
    note.remove(exData);
    if (note.count(QStringLiteral("<img ")) < kAttachments)
        throw std::runtime_error("the old note has too few attachments");
    return note;
}

std::vector<bench::Figure> measure()
{
    const QTemporaryDir directory;
    SetAppDir(directory.path());
    const QString note = oldNote();
    const auto upgrade = bench::timedPerCall(20, [note] {
        QString upgraded;
        if (!HtmlFileUpgradeMgr().DoUpgrade(note, 1, 2, upgraded) || upgraded == note)
            throw std::runtime_error("the upgrade changed nothing");
    });
    const auto list = bench::timedPerCall(20, [note] {
        std::vector<NewAttachFile> attachments;
        if (!noteattach::ParseAttList(QStringLiteral("guid"), note, attachments, nullptr))
            throw std::runtime_error("ParseAttList failed");
    });
    return {
        bench::atMost("upgrade, 1 MB, 500 attachments, against ParseAttList", 3, upgrade, list)};
}

const bench::Registration registration{"upgrade", measure};

} // namespace
