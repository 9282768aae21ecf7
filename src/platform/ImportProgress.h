#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QString>

class QProgressBar;
class QProgressDialog;

/// How far an import of several files has come, with the user's say in whether it goes on.
///
/// begin, then `next` ahead of each file, then end. Pairs of begin and end may nest (a drop can
/// arrive while a drop is handled); the inner pair says nothing.
class ImportProgress {
public:
    virtual ~ImportProgress();
    virtual void begin(int count) = 0;
    /// The file of that name is about to come in. False: the user does not want any more of them.
    /// May let events run, as a message box does; the last thing that it does, so that this object
    /// may be deleted in there.
    virtual bool next(const QString& name) = 0;
    virtual void end() = 0;
};

/// A dialog with a bar and a cancel button. It appears when half a second has passed; until then
/// no events run.
class DesktopImportProgress : public ImportProgress {
public:
    DesktopImportProgress() = default;
    ~DesktopImportProgress() override;
    DesktopImportProgress(const DesktopImportProgress&) = delete;
    DesktopImportProgress& operator=(const DesktopImportProgress&) = delete;

    void begin(int count) override;
    bool next(const QString& name) override;
    void end() override;

private:
    void showDialog();

    int m_depth = 0;
    int m_count = 0;
    int m_begun = 0; ///< Files that have been begun.
    QElapsedTimer m_elapsed;
    QPointer<QProgressDialog> m_dialog;
    QProgressBar* m_bar = nullptr; ///< The dialog's.
    bool m_isShown = false;
};
