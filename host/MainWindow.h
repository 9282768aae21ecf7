#pragma once

#include "EditorPane.h"
#include "FilePane.h"
#include "NoteList.h"
#include "Shelf.h"

#include <nomareditor/CNomarUpDownView.h>

#include <QtWidgets>

/// The window: notes and search at the left, the open note at the right over its files, its
/// figures below.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    /// All three outlive the window.
    MainWindow(Shelf& shelf, const QString& storeDir, QSettings& settings);
    /// False: the editor cannot be started.
    bool isUsable() const { return m_pane->isUsable(); }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void makeToolBar();
    void makeList();
    void makeNoteArea();
    void connectPane();

    void start();
    void newNote();
    void openNote(const QString& guid);
    void highlight();
    void setReadOnly(bool readOnly);
    void setBinned(bool binned);
    void emptyBin();
    void exportNote();
    void complain(const QString& reason);
    void refresh();
    void showNote();

    /// Counts the notes that were asked for. A save waits for the page, and what is queued
    /// meanwhile runs inside it: who finds the count changed behind a save gives way to the newer.
    int m_turn = 0;
    Shelf& m_shelf;
    const QString m_storeDir;
    QSettings& m_settings;
    NoteList* const m_notes;
    EditorPane* const m_pane;
    FilePane* const m_files;
    CNomarUpDownView* const m_noteAndFiles = new CNomarUpDownView;
    QSplitter* const m_splitter = new QSplitter;
    QListView* const m_list = new QListView;
    QStackedWidget* const m_stack = new QStackedWidget;
    QLineEdit* const m_search = new QLineEdit;
    QLabel* const m_complaint = new QLabel;
    QLabel* const m_figures = new QLabel;
    QAction *m_newAction, *m_readOnlyAction, *m_binAction, *m_restoreAction, *m_exportAction;
    QAction *m_showBinAction, *m_emptyBinAction;
};
