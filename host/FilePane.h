#pragma once

#include <nomareditor/NewAttachFile.h>

#include <QWidget>

#include <vector>

class QAction;
class QLabel;
class QToolBar;
class QTreeWidget;
class Shelf;

/// The attachments of the open note, as the last save listed them, and what can be done with them.
/// It opens, copies and removes none itself: that is the control's matter, or its host's.
class FilePane : public QWidget {
    Q_OBJECT
public:
    using Files = std::vector<NewAttachFile>;

    /// `shelf` outlives the pane, `storeDir` is the control's store.
    FilePane(Shelf& shelf, const QString& storeDir, QWidget* parent = nullptr);

    /// Reads the shelf. The row that was current stays so, or the one that takes its place.
    void showNote(const QString& guid, bool readOnly);

Q_SIGNALS:
    void openRequested(const NewAttachFile& file);
    void copyRequested(const Files& files);
    void removeRequested(const Files& files);
    /// What could not be done, for the user.
    void failed(const QString& message);

private:
    QAction* addVerb(const QString& text, const QKeySequence& keys, void (FilePane::*act)());
    Files chosen() const;
    QString pathOf(const NewAttachFile& file);
    void updateVerbs();

    void open();
    void reveal();
    void copy() { Q_EMIT copyRequested(chosen()); }
    void saveAs();
    void remove() { Q_EMIT removeRequested(chosen()); }

    Shelf& m_shelf;
    const QString m_storeDir;
    QString m_guid;
    bool m_readOnly = true;
    Files m_files; // one for each row
    QToolBar* const m_bar;
    QTreeWidget* const m_tree;
    QLabel* const m_empty;
    QAction* m_remove;
};
