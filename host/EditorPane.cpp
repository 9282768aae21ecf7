#include "EditorPane.h"

#include "Shelf.h"
#include "Store.h"

#include <nomareditor/NmWebNoteHandler.h>
#include <nomareditor/WindowMessage.h>

#include <QDesktopServices>
#include <QUrl>
#include <QVBoxLayout>

EditorPane::EditorPane(Shelf& shelf, const QString& storeDir, QWidget* parent)
    : QWidget(parent)
    , m_shelf(shelf)
    , m_storeDir(storeDir)
{
    // Before Create: the page may call from the moment it runs.
    m_control.SetNmEditorNotify(this);
    m_usable = m_control.Create(this, rect(), 1, 0) != 0;
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(&m_control);
    m_control.show();
    setFocusProxy(&m_control);
    m_watcher.SetMsgReceiver(&m_control);
    m_watcher.SetNoteFileSource(
        [this](const QString& guid) { return noteFile(m_shelf, m_storeDir, guid); });
}

EditorPane::~EditorPane()
{
    // The end of the control may be one more loss of focus, and so a save.
    m_control.SetNmEditorNotify(nullptr);
}

bool EditorPane::event(QEvent* event)
{
    if (event->type() != QEvent::Type(WM_EDITOR_READY))
        return QWidget::event(event);
    m_ready = true;
    m_watcher.Start();
    Q_EMIT ready();
    return true;
}

void EditorPane::openNote(const QString& guid, bool readOnly)
{
    m_guid = guid;
    m_readOnly = readOnly || guid.isEmpty(); // what is read-only is never saved
    m_control.LoadEditor(guid, m_shelf.htmlFiles(guid), m_shelf.fileSizes(guid), m_readOnly);
}

void EditorPane::newNote()
{
    m_readOnly = false;
    m_control.NewEditor(m_guid, m_readOnly);
}

void EditorPane::setReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
    m_control.SetReadOnly(readOnly);
}

bool EditorPane::saveNote()
{
    if (!m_ready || m_readOnly)
        return true;
    m_answer = NotAsked;
    m_control.SaveEditor();
    if (m_answer != NotAsked)
        return m_answer == Taken;
    // The control is silent when there was nothing to save, and when it could not write its store.
    QString saved, inPage, plainText;
    m_control.GetLastHtml(saved);
    m_control.Handler().GetEditorContent(inPage, plainText);
    if (saved != inPage)
        Q_EMIT saveFailed(tr("The folder %1 cannot be written").arg(m_storeDir));
    return saved == inPage;
}

void EditorPane::highlight(const QString& word)
{
    if (m_ready)
        m_control.Handler().HighlightText(word);
}

QString EditorPane::exportNote(const QString& path, bool withPictures)
{
    const QString guid = m_guid;
    saveNote(); // what counts as saved is exported
    if (guid != m_guid) // it was opened while the save waited
        return tr("Another note was opened meanwhile.");
    QString html, reason;
    m_control.GetLastHtml(html);
    if (withPictures && !html.isEmpty())
        return NmWebNoteHandler::NoteHtmlContentToMhtFileWithPictures(html, path)
            ? QString()
            : tr("The file %1 cannot be written.").arg(path);
    m_control.ExportWord(path, reason);
    return reason;
}

void EditorPane::openAttachment(const NewAttachFile& file)
{
    const QString guid = m_guid; // the save in there may let another note in
    OnOpenAttachment(guid, file.fileName, file.origName);
}

void EditorPane::copyAttachments(const std::vector<NewAttachFile>& files)
{
    std::vector<AttachFileInfo> named;
    named.reserve(files.size());
    for (const NewAttachFile& file : files)
        named.push_back({file.fileName, file.origName,
            attachmentFile(m_shelf, m_storeDir, m_guid, file.fileName, file.origName)});
    m_control.Handler().AddAttachToClipboard(named);
}

void EditorPane::removeAttachments(const std::vector<NewAttachFile>& files)
{
    const QString guid = m_guid; // each call may let another note in
    for (const NewAttachFile& file : files)
        if (guid == m_guid)
            m_control.Handler().RemoveAttach(file.fileName, file.origName);
    saveNote();
}

int EditorPane::OnSaveNote(
    const QString& noteGuid, std::vector<NewAttachFile>& files, const QString& plainText)
{
    m_answer = m_shelf.saveNote(noteGuid, files, plainText) ? Taken : Refused;
    if (m_answer == Refused) {
        Q_EMIT saveFailed(m_shelf.errorText());
        return 0; // the control will offer the same text again
    }
    if (noteGuid == m_guid)
        m_control.Handler().InitAttachFileSize(m_shelf.fileSizes(noteGuid));
    sweepLeftovers(m_shelf, m_storeDir);
    Q_EMIT noteSaved();
    return 1;
}

int EditorPane::OnOpenAttachment(
    const QString& noteGuid, const QString& fileName, const QString& origName)
{
    saveNote(); // what was attached a moment ago is not on the shelf yet
    const QString file = attachmentFile(m_shelf, m_storeDir, noteGuid, fileName, origName);
    if (file.isEmpty() || !QDesktopServices::openUrl(QUrl::fromLocalFile(file)))
        Q_EMIT attachmentMissing(origName.isEmpty() ? fileName : origName);
    return 1;
}
