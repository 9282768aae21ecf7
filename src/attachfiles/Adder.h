#pragma once

#include "attachstore/DropFileInfo.h"
#include "attachstore/MafResult.h"
#include "bridge/OpenNote.h"
#include "bridge/SameNote.h"

#include <optional>
#include <vector>

class Boxes;
class ImportProgress;
class PageBridge;

/// Makes files attachments of the open note: the rules on what may enter, names, import, books, and
/// the element in the page.
///
/// While it waits for the page or for the user, the host may open another note. Then it stops, and
/// what it has not begun with is not added to either.
class Adder {
public:
    /// Nothing is owned.
    Adder(OpenNote& note, PageBridge& bridge, Boxes& boxes, ImportProgress& progress);
    Adder(const Adder&) = delete;
    Adder& operator=(const Adder&) = delete;

    /// Adds the files in their order, each at the caret behind the one before. What may not enter
    /// is left out, with one message to the user for each kind: folders, empty files, files that
    /// would bring the note over its limit. A file whose import or page call fails is in the log
    /// and the others go on. Nothing happens in a read-only note.
    ///
    /// The note is pulled and read once, or twice if a message was shown in between.
    void AddDropFileToEditor(const std::vector<DropFileInfo>& files);

    /// Gives names that clash with those in the note as it stands a number: `ClashingNames.h`.
    /// Nothing changes if the page cannot tell its text.
    void DoAttSameName(std::vector<DropFileInfo>& files);

    /// What the note's attachments weigh: `SizeSum.h`. 1, or 0 with `total` not to be used.
    int GetExistAttTotalSize(quint64& total);

    /// Of the note that is open now, for a caller that waits.
    SameNote sameNote() const;

private:
    /// What one pull of the note shows.
    struct Pulled {
        QString html;
        quint64 total = 0;
        std::vector<QString> origNames;
    };
    std::optional<Pulled> pull();
    void reportMissingTotal();
    bool showRefusals(std::vector<DropFileInfo>& files, quint64 total, const SameNote& same);
    void addAll(const std::vector<DropFileInfo>& files, const SameNote& same);
    void addOne(const DropFileInfo& file, const QString& noteGuid);
    void enterBooks(const DropFileInfo& file, const MAF_RESULT& imported);

    OpenNote& m_note;
    PageBridge& m_bridge;
    Boxes& m_boxes;
    ImportProgress& m_progress;
};
