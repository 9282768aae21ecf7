#pragma once

#include <QStringList>

#include <functional>

class QFileDialog;

/// Runs a file dialog over the active modal widget, after `prepare` has set it up. `paths` receives
/// what was chosen, with native separators. False if the user did not accept or chose nothing.
/// `paths` stays as it was if the dialog went with the window that it stood over; meanwhile
/// anything may happen, as with a message box.
bool RunFileDialog(const std::function<void(QFileDialog&)>& prepare, QStringList& paths);

/// The dialog in which a user chooses files: the desktop's, or the choice of a test.
class FileDialog {
public:
    virtual ~FileDialog();
    /// Asks for files to open; meanwhile anything may happen, as with a message box. False if the
    /// user did not choose any. `paths` receives those chosen, in the dialog's order, with native
    /// separators; any file may be among them, also one that cannot be opened.
    virtual bool choose(QStringList& paths) = 0;
};

/// The desktop's own dialog: several files, no filter, no name given beforehand.
class DesktopFileDialog : public FileDialog {
public:
    bool choose(QStringList& paths) override;
};
