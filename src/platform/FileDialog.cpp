#include "platform/FileDialog.h"

#include "platform/DialogParent.h"

#include <QDir>
#include <QFileDialog>
#include <QPointer>

FileDialog::~FileDialog() = default;

bool RunFileDialog(const std::function<void(QFileDialog&)>& prepare, QStringList& paths)
{
    // Over the active one, which may be topmost: a dialog without a parent would open below it.
    const QPointer<QFileDialog> dialog = new QFileDialog(DialogParent());
    prepare(*dialog);
    const bool accepted = dialog->exec() == QDialog::Accepted;
    // The window that it stands over takes it along when it goes.
    if (!dialog)
        return false;
    paths.clear();
    for (const QString& path : dialog->selectedFiles())
        paths.append(QDir::toNativeSeparators(path));
    delete dialog.data();
    return accepted && !paths.isEmpty();
}

bool DesktopFileDialog::choose(QStringList& paths)
{
    // Qt's dialogs, and those it borrows from the desktop, leave the working directory of the
    // process alone: there is nothing to save and put back.
    return RunFileDialog(
        [](QFileDialog& dialog) {
            dialog.setAcceptMode(QFileDialog::AcceptOpen);
            dialog.setFileMode(QFileDialog::ExistingFiles);
        },
        paths);
}
