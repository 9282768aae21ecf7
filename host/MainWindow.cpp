#include "MainWindow.h"

#include "NoteDelegate.h"
#include "Store.h"

using namespace Qt::StringLiterals;

MainWindow::MainWindow(Shelf& shelf, const QString& storeDir, QSettings& settings)
    : m_shelf(shelf)
    , m_storeDir(storeDir)
    , m_settings(settings)
    , m_notes(new NoteList(shelf, this))
    , m_pane(new EditorPane(shelf, storeDir, this))
    , m_files(new FilePane(shelf, storeDir, this))
{
    setWindowTitle(tr("Notes"));
    makeToolBar();
    makeList();
    makeNoteArea();
    setCentralWidget(m_splitter);
    m_figures->setContentsMargins(6, 0, 6, 0);
    statusBar()->addWidget(m_figures);
    connectPane();
    resize(1100, 740);
    restoreGeometry(m_settings.value(u"geometry"_s).toByteArray());
    m_splitter->setSizes({300, 800});
    m_splitter->restoreState(m_settings.value(u"splitter"_s).toByteArray());
    sweepLeftovers(m_shelf, m_storeDir);
    refresh();
}

void MainWindow::makeToolBar()
{
    QToolBar* bar = addToolBar(tr("Notes"));
    bar->setMovable(false);
    bar->setIconSize({20, 20});
    const auto add = [&](const char* picture, const QString& text, const QString& keys, auto slot) {
        QAction* action = bar->addAction(QIcon(u":/%1.svg"_s.arg(QLatin1String(picture))), text);
        action->setShortcut(QKeySequence(keys));
        action->setToolTip(keys.isEmpty() ? text : u"%1 (%2)"_s.arg(text, keys));
        connect(action, &QAction::triggered, this, slot);
        return action;
    };
    m_search->setPlaceholderText(tr("Search"));
    m_search->setClearButtonEnabled(true);
    m_search->setMaxLength(200);
    m_search->setFixedWidth(250);
    bar->addWidget(m_search);
    connect(m_search, &QLineEdit::textChanged, this, [this] {
        refresh();
        highlight();
    });
    QAction* find = m_search->addAction(QIcon(u":/search.svg"_s), QLineEdit::LeadingPosition);
    find->setShortcut(QKeySequence::Find);
    connect(find, &QAction::triggered, m_search, [this] { m_search->setFocus(); });

    m_newAction = add("new", tr("New note"), u"Ctrl+N"_s, [this] { newNote(); });
    m_newAction->setEnabled(false);
    auto* space = new QWidget;
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(space);
    m_restoreAction = add("restore", tr("Restore"), u"Ctrl+Alt+Z"_s, [this] { setBinned(false); });
    m_readOnlyAction =
        add("lock", tr("Read only"), u"Ctrl+Alt+R"_s, [this](bool on) { setReadOnly(on); });
    m_readOnlyAction->setCheckable(true);
    m_exportAction = add("export", tr("Export"), u"Ctrl+Shift+S"_s, [this] { exportNote(); });
    m_binAction = add("bin", tr("Move to bin"), u"Ctrl+Shift+Del"_s, [this] { setBinned(true); });
    bar->addSeparator();
    m_emptyBinAction = bar->addAction(tr("Empty bin"), this, &MainWindow::emptyBin);
    m_emptyBinAction->setShortcut(QKeySequence(u"Ctrl+Alt+E"_s));
    m_showBinAction = bar->addAction(QString());
    m_showBinAction->setShortcut(QKeySequence(u"Ctrl+Alt+B"_s));
    m_showBinAction->setCheckable(true);
    connect(m_showBinAction, &QAction::toggled, this, [this] {
        refresh();
        if (m_notes->rowOf(m_pane->noteGuid()) < 0)
            openNote(m_notes->guidAt(0));
    });
    new QShortcut(QKeySequence(u"Ctrl+Q"_s), this, [this] { close(); });
}

void MainWindow::makeList()
{
    m_list->setModel(m_notes);
    m_list->setItemDelegate(new NoteDelegate(m_list));
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setMouseTracking(true);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setAccessibleName(tr("Notes"));
    m_list->setMinimumWidth(200);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this,
        [this](const QModelIndex& now) {
            // Later: to open a note is to wait for the page, and the view is still in its event.
            // By then a save may have put the rows into another order.
            const auto later = [this, guid = m_notes->guidAt(now.row()), turn = ++m_turn] {
                if (turn == m_turn)
                    openNote(guid);
            };
            QMetaObject::invokeMethod(this, later, Qt::QueuedConnection);
        });
    connect(m_list, &QListView::activated, m_pane, [this] { m_pane->setFocus(); });
    m_splitter->addWidget(m_list);
}

void MainWindow::makeNoteArea()
{
    m_complaint->setStyleSheet(u"background: #b3372f; color: white; padding: 8px 12px"_s);
    m_complaint->setWordWrap(true);
    m_complaint->hide();
    connect(m_complaint, &QLabel::linkActivated, m_pane, [this] {
        m_complaint->hide();
        m_pane->saveNote();
    });
    auto* empty = new QLabel(tr("No note is open. Ctrl+N makes a new one."));
    empty->setAlignment(Qt::AlignCenter);
    m_noteAndFiles->Create(m_stack, m_stack->rect(), 1);
    m_noteAndFiles->SetBottomHeight(m_settings.value(u"files"_s, 170).toInt());
    m_noteAndFiles->SetSplitterWnd(m_pane, m_files);
    m_stack->addWidget(m_noteAndFiles);
    m_stack->addWidget(empty);
    auto* area = new QWidget;
    auto* column = new QVBoxLayout(area);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_complaint);
    column->addWidget(m_stack, 1);
    m_splitter->addWidget(area);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setHandleWidth(1);
}

void MainWindow::connectPane()
{
    // Queued: the control is in the middle of a save or a page call when it tells of these.
    connect(m_pane, &EditorPane::ready, this, &MainWindow::start, Qt::QueuedConnection);
    connect(m_pane, &EditorPane::saveFailed, this, &MainWindow::complain, Qt::QueuedConnection);
    const auto tell = [this](const QString& text) { statusBar()->showMessage(text, 10'000); };
    connect(m_pane, &EditorPane::attachmentMissing, this,
        [=, this](const QString& name) { tell(tr("The file %1 cannot be opened.").arg(name)); });
    connect(m_files, &FilePane::failed, this, tell);
    connect(m_files, &FilePane::openRequested, m_pane, &EditorPane::openAttachment);
    connect(m_files, &FilePane::copyRequested, m_pane, &EditorPane::copyAttachments);
    connect(m_files, &FilePane::removeRequested, m_pane, &EditorPane::removeAttachments);
    const auto saved = [this] {
        m_complaint->hide();
        refresh();
    };
    connect(m_pane, &EditorPane::noteSaved, this, saved, Qt::QueuedConnection);
    connect(qApp, &QGuiApplication::commitDataRequest, m_pane, [this] { m_pane->saveNote(); });
}

void MainWindow::start()
{
    m_newAction->setEnabled(true);
    const QString last = m_settings.value(u"note"_s).toString();
    openNote(m_notes->rowOf(last) >= 0 ? last : m_notes->guidAt(0));
}

void MainWindow::newNote()
{
    // The control opens a note without saving the one it holds.
    const int turn = ++m_turn;
    if (!m_pane->saveNote() || turn != m_turn)
        return refresh();
    m_pane->newNote();
    m_search->clear();
    m_showBinAction->setChecked(false);
    refresh();
    m_pane->setFocus();
}

void MainWindow::openNote(const QString& guid)
{
    const int turn = ++m_turn;
    if (m_pane->isReady() && guid != m_pane->noteGuid() && m_pane->saveNote() && turn == m_turn) {
        const auto note = m_shelf.note(guid);
        m_pane->openNote(note ? guid : QString(), note && (note->readOnly || note->binned));
        highlight();
    }
    refresh();
}

void MainWindow::highlight()
{
    m_pane->highlight(m_search->text().trimmed().section(u' ', 0, 0));
}

void MainWindow::setReadOnly(bool readOnly)
{
    const QString guid = m_pane->noteGuid();
    if (m_pane->saveNote() && m_shelf.note(guid) && m_shelf.setReadOnly(guid, readOnly)
        && guid == m_pane->noteGuid())
        m_pane->setReadOnly(readOnly);
    refresh();
}

void MainWindow::setBinned(bool binned)
{
    const QString guid = m_pane->noteGuid();
    const int row = m_notes->rowOf(guid);
    if (!m_pane->saveNote())
        return;
    if (!m_shelf.setBinned(guid, binned))
        return complain(m_shelf.errorText());
    const bool isStillOpen = guid == m_pane->noteGuid();
    if (isStillOpen)
        m_pane->openNote({}, true);
    refresh();
    if (isStillOpen)
        openNote(m_notes->guidAt(qMin(row, m_notes->rowCount() - 1)));
    if (m_notes->rowCount() == 0)
        m_showBinAction->setChecked(false);
}

void MainWindow::emptyBin()
{
    const QString question = tr("Delete the notes in the bin for good?");
    if (QMessageBox::question(this, windowTitle(), question) != QMessageBox::Yes)
        return;
    // Another note is open under the bin when it could not be saved: its text is in the page alone.
    const bool isOpenOneBinned = m_shelf.note(m_pane->noteGuid()).value_or(NoteSummary()).binned;
    if (!m_shelf.emptyBin())
        return complain(m_shelf.errorText());
    sweepLeftovers(m_shelf, m_storeDir);
    if (isOpenOneBinned)
        m_pane->openNote({}, true);
    m_showBinAction->setChecked(false);
}

void MainWindow::exportNote()
{
    const QString withPictures = tr("Single file with pictures (*.mht)");
    const QString forWord = tr("Word document (*.doc)");
    const QString title = m_shelf.note(m_pane->noteGuid()).value_or(NoteSummary()).title;
    QString kind = withPictures;
    const QString path = QFileDialog::getSaveFileName(this, tr("Export"),
        QDir::home().filePath(QString(title).replace(u'/', u'-') + u".mht"_s),
        withPictures + u";;"_s + forWord, &kind);
    if (path.isEmpty())
        return;
    const QString reason = m_pane->exportNote(path, kind == withPictures);
    statusBar()->showMessage(reason.isEmpty() ? tr("Exported to %1").arg(path) : reason, 10'000);
}

void MainWindow::complain(const QString& reason)
{
    const QString text = tr("Not saved: %1. Your text is still here.").arg(reason).toHtmlEscaped();
    const QString link = u"%1 <a href='again' style='color: white'>%2</a>"_s;
    m_complaint->setText(link.arg(text, tr("Try again")));
    m_complaint->show();
}

void MainWindow::refresh()
{
    const QSignalBlocker quiet(m_list->selectionModel());
    const bool bin = m_showBinAction->isChecked();
    m_notes->show(
        bin ? Shelf::Place::Bin : Shelf::Place::List, m_search->text(), m_pane->noteGuid());
    m_list->setCurrentIndex(m_notes->index(m_notes->rowOf(m_pane->noteGuid())));
    m_list->viewport()->update();
    showNote();
}

void MainWindow::showNote()
{
    const NoteSummary note = m_shelf.note(m_pane->noteGuid()).value_or(NoteSummary());
    const bool open = !m_pane->noteGuid().isEmpty();
    m_stack->setCurrentIndex(open || !m_pane->isReady() ? 0 : 1);
    const QStringList figures{note.words == 1 ? tr("1 word") : tr("%1 words").arg(note.words),
        note.attachments == 1 ? tr("1 attachment") : tr("%1 attachments").arg(note.attachments),
        locale().formattedDataSize(note.bytes)};
    m_figures->setText(open ? figures.join(u" · "_s) : QString());
    m_files->showNote(m_pane->noteGuid(), note.readOnly || note.binned);
    m_readOnlyAction->setChecked(note.readOnly);
    m_readOnlyAction->setEnabled(open && !note.binned);
    m_binAction->setEnabled(open && !note.binned);
    m_exportAction->setEnabled(open);
    m_restoreAction->setVisible(note.binned);
    const int binned = m_shelf.binCount();
    m_showBinAction->setText(tr("Bin (%1)").arg(binned));
    m_emptyBinAction->setVisible(m_showBinAction->isChecked() && binned > 0);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    const QString question = tr("This note cannot be saved. Close and lose its last changes?");
    if (!m_pane->saveNote()
        && QMessageBox::question(this, windowTitle(), question) != QMessageBox::Yes)
        return event->ignore();
    m_settings.setValue(u"geometry"_s, saveGeometry());
    m_settings.setValue(u"splitter"_s, m_splitter->saveState());
    m_settings.setValue(u"note"_s, m_pane->noteGuid());
    if (m_files->isVisible()) // not folded away
        m_settings.setValue(u"files"_s, m_noteAndFiles->height() - m_pane->height());
}
