#include "clipdrag/CopyNotify.h"

#include "bridge/OpenNote.h"
#include "clipdrag/DesktopClipboard.h"
#include "clipdrag/HtmlClipboard.h"
#include "noteattach/AttachList.h"
#include "support/Paths.h"
#include "support/Text.h"

#include <QClipboard>

#include <utility>

namespace {

// Not zero: a zero timer can fire inside a task of the engine.
constexpr int soonMs = 1;

} // namespace

CopyNotify::CopyNotify(const OpenNote& note)
    : m_note(note)
{
    m_soon.setSingleShot(true);
    m_limit.setSingleShot(true);
    QObject::connect(&m_soon, &QTimer::timeout, &m_soon, [this] { look(); });
    QObject::connect(&m_limit, &QTimer::timeout, &m_limit, [this] { giveUp(); });
}

CopyNotify::~CopyNotify()
{
    QObject::disconnect(m_change);
}

void CopyNotify::expectCopy()
{
    m_hasArrived = false;
    m_noteGuid = m_note.m_curNoteGuid;
    watch();
}

void CopyNotify::HandleCopyNotify()
{
    m_noteGuid = m_note.m_curNoteGuid;
    watch();
    m_limit.start(waitMs);
    if (m_hasArrived)
        m_soon.start(soonMs);
}

void CopyNotify::pageCopied()
{
    arrived();
}

void CopyNotify::watch()
{
    QClipboard* const board = clipdrag::DesktopClipboard();
    if (board && !m_change)
        m_change =
            QObject::connect(board, &QClipboard::dataChanged, &m_limit, [this] { arrived(); });
}

void CopyNotify::arrived()
{
    m_hasArrived = true;
    if (m_limit.isActive())
        m_soon.start(soonMs);
}

void CopyNotify::look()
{
    clipdrag::CopyAttachmentsAsFiles(m_noteGuid);
}

void CopyNotify::giveUp()
{
    QObject::disconnect(m_change);
    if (!std::exchange(m_hasArrived, false))
        look();
}

void clipdrag::AnalyHtmlDataFromClipboard(
    const QString& noteGuid, std::vector<NewAttachFile>& attList, QString& plainText)
{
    std::string fragment;
    CHtmlClipboard::GetHtmlFragment(fragment);
    noteattach::ParseAttList(noteGuid, Utf8ToWide(fragment), attList, &plainText);
}

void clipdrag::CopyAttachmentsAsFiles(const QString& noteGuid)
{
    std::vector<NewAttachFile> attList;
    QString plainText;
    AnalyHtmlDataFromClipboard(noteGuid, attList, plainText);
    if (attList.empty() || !plainText.isEmpty())
        return;
    std::vector<QString> paths;
    for (const NewAttachFile& attachment : attList) {
        if (attachment.isSrcFile != 0)
            continue;
        if (!IsFileExist(attachment.filePath))
            return;
        paths.push_back(attachment.filePath);
    }
    CHtmlClipboard::SetFileDropList(paths);
}
