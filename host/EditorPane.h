#pragma once

#include <nomareditor/AttachFileWatcher.h>
#include <nomareditor/CNomarEditorImpl.h>
#include <nomareditor/INmEditorNotify.h>

#include <QWidget>

class Shelf;

/// The control, and a host's side of the contract with it: all that an embedding program needs.
class EditorPane : public QWidget, private INmEditorNotify {
    Q_OBJECT
public:
    /// `storeDir` is the control's store, `shelf` outlives the pane.
    EditorPane(Shelf& shelf, const QString& storeDir, QWidget* parent);
    ~EditorPane() override;

    /// False: the browser's window could not be made, and nothing else works.
    bool isUsable() const { return m_usable; }
    /// True from the signal ready() on. No note can be opened before.
    bool isReady() const { return m_ready; }

    /// Open a note in place of the current one, which is *not* saved. An empty GUID opens none; a
    /// new note's GUID is the control's choice.
    void openNote(const QString& guid, bool readOnly);
    void newNote();
    QString noteGuid() const { return m_guid; }
    void setReadOnly(bool readOnly);

    /// True: all that the page holds is on the shelf. False: saveFailed has told why not, and the
    /// text is still in the page.
    bool saveNote();

    /// Paints the word over the open note; an empty one takes the paint away.
    void highlight(const QString& word);
    /// What the list of files asks for. A removal is an edit of the note, which its undo takes
    /// back, and is saved at once.
    void openAttachment(const NewAttachFile& file);
    void copyAttachments(const std::vector<NewAttachFile>& files);
    void removeAttachments(const std::vector<NewAttachFile>& files);
    /// Writes the open note as one file, with or without its pictures. Empty on success, else why
    /// not.
    QString exportNote(const QString& path, bool withPictures);

Q_SIGNALS:
    void ready();
    void noteSaved();
    void saveFailed(const QString& reason);
    void attachmentMissing(const QString& name);

protected:
    bool event(QEvent* event) override;

private:
    int OnSaveNote(const QString& noteGuid, std::vector<NewAttachFile>& files,
        const QString& plainText) override;
    int OnOpenAttachment(
        const QString& noteGuid, const QString& fileName, const QString& origName) override;

    Shelf& m_shelf;
    const QString m_storeDir;
    CNomarEditorImpl m_control;
    AttachFileWatcher m_watcher; // attachments that are changed in other programs
    bool m_usable = false;
    bool m_ready = false;
    bool m_readOnly = true;
    QString m_guid;
    enum { NotAsked, Taken, Refused } m_answer = NotAsked; // ours, to the last save
};
