#include "clipdrag/EditKeys.h"

#include "bridge/NotePage.h"
#include "bridge/OpenNote.h"
#include "clipdrag/CopyNotify.h"
#include "clipdrag/Paste.h"
#include "platform/KeyState.h"
#include "platform/Result.h"
#include "platform/WindowMessage.h"

#include <QKeyEvent>
#include <QWidget>

KeyActs::~KeyActs() = default;

EditKeys::EditKeys(
    const OpenNote& note, NotePage& page, CopyNotify& copy, Paste& paste, KeyActs& acts)
    : m_note(note)
    , m_page(page)
    , m_copy(copy)
    , m_paste(paste)
    , m_acts(acts)
{
}

long EditKeys::OnTranslateAccelerator(const QKeyEvent& msg, const KeyState& keys)
{
    const bool isPress = msg.type() == QEvent::KeyPress;
    if (isPress && keys.isDown(VK_F5))
        return S_OK;
    if (!isPress || !keys.isDown(VK_CONTROL))
        return E_NOTIMPL;
    if (keys.isDown('C'))
        return DoCtrlC();
    if (keys.isDown('V'))
        return m_paste.DoCtrlV();
    if (keys.isDown('D'))
        return DoCtrlD();
    if (keys.isDown('F')) {
        m_acts.CancleHighlight();
        return E_NOTIMPL;
    }
    if (keys.isDown('O') || keys.isDown('P') || keys.isDown('N'))
        return S_OK;
    return E_NOTIMPL;
}

long EditKeys::DoCtrlC()
{
    m_copy.expectCopy();
    m_page.post(WM_EDITOR_COPY);
    return E_NOTIMPL;
}

long EditKeys::DoCtrlD()
{
    if (m_note.m_readOnly)
        return E_NOTIMPL;
    if (QWidget* const window = m_page.window())
        window->setFocus();
    m_acts.Cut();
    return S_OK;
}
