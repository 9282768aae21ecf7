#pragma once

#include "bridge/NotePage.h"
#include "bridge/OpenNote.h"
#include "bridge/SameNote.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

class JsonObject;

/// The calls to the page. A failed or refused call leaves the note's record as it was, writes its
/// line to the log and raises nothing; the caller goes on.
///
/// A call runs the host's timers and queued calls while it waits. They may open another note: what
/// has not gone to the page by then never goes to it, and counts as failed. They may end this
/// object too, after which a call still returns.
class PageBridge {
public:
    /// Neither argument is owned.
    PageBridge(OpenNote& note, NotePage& page);
    PageBridge(const PageBridge&) = delete;
    PageBridge& operator=(const PageBridge&) = delete;

    /// Sets the page's mode, unless the page has it already.
    void SetReadOnly(int readOnly);
    /// Sets the limit of characters of the note's text.
    void SetEditorMaxChars(int size);
    /// Replaces the page's text and begins a new note's books.
    void SetEditorHtml(const QString& html);
    /// Pulls the note's HTML and plain text. Always returns 1; after a failure both stay as given.
    /// A pull that is cut by the death of the page is repeated when the page is back, and gives the
    /// draft if it does not come back or the host has opened another note meanwhile.
    int GetEditorContent(QString& html, QString& text);
    /// Forgets the page's undo history. 1 if the call ran, else 0.
    int HandleClearEditorCacheNotify();
    /// Selects an attachment by a part of its name. 1 if the page found one, else 0.
    int SelectedAttach(const QString& keyword);
    /// Names another file and another picture for the attachments with that original name. The two
    /// values must be valid inside a JSON text. Always returns 1.
    int UpdateHtmlAttachAttr(
        const QString& origName, const QString& classValue, const QString& srcValue);
    /// Inserts an attachment element at the caret. 1 if the page did, else 0.
    int AddPicToEditor(
        const QString& picPath, const QString& strData, const QString& exData, const QString& type);

    /// The note as it stands, for an operation that waits.
    SameNote sameNote() const;

    /// Takes every element of one attachment out of the text, as an edit that the page's undo takes
    /// back: `fileName` is its name in the store, `origName` its original one. 1 if there was one,
    /// else 0, as in a read-only note.
    int RemoveAttach(const QString& fileName, const QString& origName);

    /// What puts a page that has died back into the state of this note: calls of `jsProcessor`, to
    /// be sent before any other.
    std::vector<std::pair<QString, QStringList>> restoringCalls();
    /// Takes the page's draft, a JSON text with `load` and `html`. One that belongs to an earlier
    /// text of the page is dropped.
    void takeDraft(const QString& json);
    /// Whether a message of the page that tells this `load` belongs to the text that the page was
    /// given last, and not to one before it.
    bool isOfThisText(int load) const;

private:
    /// The three log texts of a method; the first takes the page's message for "%s".
    struct Messages {
        QString refused, unparsable, failed;
        bool readsReasonAsWide = false;
    };
    /// The code of `call`, which is made again, `most` times in all, when the page died under it.
    /// `PAGE_CALL_NOT_BACK` if the page did not come back, the call was not wanted any more when it
    /// could go, or this object ended: then no member may be touched.
    long send(int most, const std::function<bool()>& isWanted, const std::function<long()>& call);
    std::function<bool()> whileSameNote() const;
    /// A call that is meant for the note as it stands, unless `isWanted` says otherwise.
    bool perform(const QString& method, const QString& argument, const Messages& messages,
        const std::function<void(const JsonObject&)>& onSuccess = {},
        const std::function<bool()>& isWanted = {});
    static bool evaluate(long code, const QString& reply, const Messages& messages,
        const std::function<void(const JsonObject&)>& onSuccess);

    OpenNote& m_note;
    NotePage& m_page;
    quint64 m_modeCalls = 0;
    quint64 m_limitCalls = 0;
    std::optional<int> m_modeInFlight; ///< What the last call of the mode that waits has asked for.
    /// Texts that the page as it stands has received. Drafts carry the page's own count of them.
    int m_textsSent = 0;
    bool m_sendingText = false;

    /// The last reply of a pull, and what was read from it: an unchanged page answers the same
    /// text.
    QString m_lastReply, m_lastHtml, m_lastText;
    std::shared_ptr<const void> m_life = std::make_shared<char>();
};
