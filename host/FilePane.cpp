#include "FilePane.h"

#include "Shelf.h"
#include "Store.h"

#include <QtDBus>
#include <QtWidgets>

using namespace Qt::StringLiterals;

FilePane::FilePane(Shelf& shelf, const QString& storeDir, QWidget* parent)
    : QWidget(parent)
    , m_shelf(shelf)
    , m_storeDir(storeDir)
    , m_bar(new QToolBar)
    , m_tree(new QTreeWidget)
    , m_empty(new QLabel(tr("No attachments. Drop files on the note to add some.")))
{
    m_tree->setHeaderLabels({tr("Name"), tr("Kind"), tr("Size"), tr("Time")});
    m_tree->setColumnWidth(0, 320);
    m_tree->setColumnWidth(1, 200);
    m_tree->setRootIsDecorated(false);
    m_tree->setUniformRowHeights(true);
    m_tree->setFrameShape(QFrame::NoFrame);
    m_tree->setStyleSheet(u"QTreeView::item { padding: 3px 2px }"_s);
    m_tree->setSelectionMode(QTreeWidget::ExtendedSelection);
    m_tree->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_tree->setAccessibleName(tr("Attachments"));
    m_empty->setAlignment(Qt::AlignCenter);
    setFocusProxy(m_tree);

    addVerb(tr("Open"), {}, &FilePane::open);
    addVerb(tr("Show in folder"), {}, &FilePane::reveal);
    addVerb(tr("Copy"), QKeySequence::Copy, &FilePane::copy);
    addVerb(tr("Save as"), {}, &FilePane::saveAs);
    m_remove = addVerb(tr("Remove"), QKeySequence::Delete, &FilePane::remove);
    connect(m_tree, &QTreeWidget::itemActivated, this, &FilePane::open); // double click, Enter
    connect(m_tree, &QTreeWidget::itemSelectionChanged, this, &FilePane::updateVerbs);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    for (QWidget* part : {static_cast<QWidget*>(m_bar), static_cast<QWidget*>(m_tree)})
        column->addWidget(part);
    column->addWidget(m_empty, 1);
    m_tree->hide();
    updateVerbs();
}

QAction* FilePane::addVerb(const QString& text, const QKeySequence& keys, void (FilePane::*act)())
{
    QAction* action = m_bar->addAction(text, this, act);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetShortcut);
    m_tree->addAction(action);
    return action;
}

void FilePane::showNote(const QString& guid, bool readOnly)
{
    if (guid != m_guid)
        m_tree->clear();
    m_guid = guid;
    m_readOnly = readOnly;
    m_files = m_shelf.files(guid);
    std::erase_if(m_files, [](const NewAttachFile& file) { return file.fileType != 2; });
    const std::map<QString, quint64> sizes = m_shelf.fileSizes(guid);
    // Rows are kept and written anew: a save must not part the two clicks of a double click.
    while (m_tree->topLevelItemCount() > int(m_files.size()))
        delete m_tree->topLevelItem(m_tree->topLevelItemCount() - 1);
    for (int row = 0; row < int(m_files.size()); ++row) {
        const NewAttachFile& file = m_files[size_t(row)];
        QTreeWidgetItem* item = m_tree->topLevelItem(row);
        if (!item)
            m_tree->addTopLevelItem(item = new QTreeWidgetItem);
        const auto size = sizes.find(file.fileName);
        const auto time = QDateTime::fromString(file.modifyTime, Qt::ISODate);
        item->setIcon(0, QFileIconProvider().icon(QFileInfo(file.origName)));
        item->setText(0, file.origName);
        const auto kind =
            QMimeDatabase().mimeTypeForFile(file.origName, QMimeDatabase::MatchExtension);
        item->setText(1, kind.comment());
        item->setText(
            2, size == sizes.end() ? QString() : locale().formattedDataSize(qint64(size->second)));
        item->setText(3, locale().toString(time, QLocale::ShortFormat));
    }
    m_tree->setVisible(!m_files.empty());
    m_empty->setVisible(m_files.empty());
    updateVerbs();
}

void FilePane::updateVerbs()
{
    for (QAction* verb : m_tree->actions())
        verb->setEnabled(!chosen().empty() && (verb != m_remove || !m_readOnly));
}

FilePane::Files FilePane::chosen() const
{
    Files files;
    for (int row = 0; row < m_tree->topLevelItemCount(); ++row)
        if (m_tree->topLevelItem(row)->isSelected())
            files.push_back(m_files[size_t(row)]);
    return files;
}

QString FilePane::pathOf(const NewAttachFile& file)
{
    QString path = attachmentFile(m_shelf, m_storeDir, m_guid, file.fileName, file.origName);
    if (path.isEmpty())
        Q_EMIT failed(tr("The file %1 cannot be opened.").arg(file.origName));
    return path;
}

void FilePane::open()
{
    for (const NewAttachFile& file : chosen())
        Q_EMIT openRequested(file);
}

void FilePane::reveal()
{
    QStringList addresses;
    for (const NewAttachFile& file : chosen())
        if (const QString path = pathOf(file); !path.isEmpty())
            addresses += QUrl::fromLocalFile(path).toString();
    if (addresses.isEmpty())
        return;
    const QString manager = u"org.freedesktop.FileManager1"_s;
    QDBusMessage call = QDBusMessage::createMethodCall(
        manager, u"/org/freedesktop/FileManager1"_s, manager, u"ShowItems"_s);
    call << addresses << QString();
    auto* shown = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    const auto done = [shown, addresses] {
        // No file manager that selects a file: the folder has to do.
        if (shown->isError())
            QDesktopServices::openUrl(QUrl(addresses[0]).adjusted(QUrl::RemoveFilename));
        shown->deleteLater();
    };
    if (shown->isFinished()) // there is no bus
        return done();
    connect(shown, &QDBusPendingCallWatcher::finished, this, done);
}

void FilePane::saveAs()
{
    for (const NewAttachFile& file : chosen()) {
        const QString path = pathOf(file);
        if (path.isEmpty())
            continue;
        const QString target = QFileDialog::getSaveFileName(
            this, tr("Save as"), QDir::home().filePath(QFileInfo(path).fileName()));
        if (target.isEmpty())
            return;
        if (!saveCopy(path, target))
            Q_EMIT failed(tr("The file %1 cannot be written.").arg(target));
    }
}
