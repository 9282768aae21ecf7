#pragma once

#include "noteattach/NewAttachFile.h"

#include <QMetaObject>
#include <QString>
#include <QTimer>

#include <vector>

struct OpenNote;

/// What follows a copy out of the note: if the selection was attachments and no text, the clipboard
/// gets their files instead of what the browser wrote, so that a file manager can paste them.
///
/// The browser writes to the clipboard in its own time. A look at it is therefore taken when it
/// changes or the page says that it has copied, and after `waitMs` at the latest: a copy of an
/// empty selection changes nothing, and what was there before is looked at.
class CopyNotify {
public:
    static constexpr int waitMs = 300;

    explicit CopyNotify(const OpenNote& note);
    ~CopyNotify();

    /// The browser is about to be given its copy command: what reaches the clipboard from now on
    /// counts for the `HandleCopyNotify` that follows.
    void expectCopy();
    /// The browser has been given its copy command. Returns at once; the look follows. Each change
    /// within `waitMs` is looked at, as a second copy can be ordered before the first has come.
    void HandleCopyNotify();
    /// The page has copied. May be called inside an engine task.
    void pageCopied();

private:
    void watch();
    void arrived();
    void look();
    void giveUp();

    const OpenNote& m_note;
    QString m_noteGuid; ///< Of the note that was open when the copy was ordered.
    QMetaObject::Connection m_change;
    QTimer m_soon; ///< To leave the engine's task before the clipboard is written.
    QTimer m_limit;
    bool m_hasArrived = false;
};

namespace clipdrag {

/// Lists the attachments that the clipboard's HTML refers to, as those of the note, and reads its
/// plain text. Without HTML the list is empty.
void AnalyHtmlDataFromClipboard(
    const QString& noteGuid, std::vector<NewAttachFile>& attList, QString& plainText);

/// Puts the attachments' files on the clipboard if its HTML is nothing but attachments of that note
/// and each of their files exists; otherwise the clipboard stays as it is.
void CopyAttachmentsAsFiles(const QString& noteGuid);

} // namespace clipdrag
