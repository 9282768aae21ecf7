#include "platform/ImportProgress.h"

#include "platform/DialogParent.h"
#include "platform/Language.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <QProgressDialog>

namespace {

constexpr int patienceMs = 500;
constexpr int labelWidth = 360;

} // namespace

ImportProgress::~ImportProgress() = default;

DesktopImportProgress::~DesktopImportProgress()
{
    delete m_dialog;
}

void DesktopImportProgress::begin(int count)
{
    if (m_depth++ > 0)
        return;
    m_count = count;
    m_begun = 0;
    m_elapsed.start();
}

bool DesktopImportProgress::next(const QString& name)
{
    if (m_depth != 1)
        return true;
    const int done = m_begun++;
    if (!m_isShown && m_elapsed.elapsed() < patienceMs)
        return true;
    if (!m_isShown)
        showDialog();
    if (!m_dialog)
        return false; // Its window is gone.
    const QString shown =
        m_dialog->fontMetrics().elidedText(name.simplified(), Qt::ElideMiddle, labelWidth);
    m_dialog->setLabelText(InLanguage("Adding attachments…\n", "正在添加附件…\n") + shown);
    m_bar->setValue(done);
    // What runs here may end this object with its note.
    const QPointer<QProgressDialog> dialog = m_dialog;
    QCoreApplication::processEvents();
    return dialog && !dialog->wasCanceled();
}

void DesktopImportProgress::showDialog()
{
    m_isShown = true;
    m_dialog = new QProgressDialog(DialogParent());
    auto* label = new QLabel(m_dialog);
    label->setTextFormat(Qt::PlainText); // Names of files are never markup.
    label->setMinimumWidth(labelWidth);
    m_dialog->setLabel(label);
    // Told directly: the dialog would let events run at each value that it is told.
    m_bar = new QProgressBar(m_dialog);
    m_dialog->setBar(m_bar);
    m_dialog->setRange(0, m_count);
    m_dialog->setCancelButtonText(InLanguage("Cancel", "取消"));
    m_dialog->setWindowModality(Qt::ApplicationModal);
    m_dialog->show();
}

void DesktopImportProgress::end()
{
    if (--m_depth > 0)
        return;
    delete m_dialog;
    m_isShown = false;
}
