#include "attachfiles/FileChooser.h"

#include "attachfiles/Adder.h"
#include "attachstore/FileRecord.h"
#include "bridge/NotePage.h"
#include "platform/Boxes.h"
#include "platform/FileDialog.h"
#include "platform/ImportProgress.h"
#include "support/ExclusiveOpen.h"

#include <QFileInfo>
#include <QWidget>

FileChooser::FileChooser(
    NotePage& page, Adder& adder, Boxes& boxes, FileDialog& dialog, ImportProgress& progress)
    : m_page(page)
    , m_adder(adder)
    , m_boxes(boxes)
    , m_dialog(dialog)
    , m_progress(progress)
{
}

void FileChooser::OnAddAttachment()
{
    const SameNote same = m_adder.sameNote();
    QStringList paths;
    if (!m_dialog.choose(paths) || !same)
        return;
    m_progress.begin(int(paths.size()));
    const bool wereAdded = addAll(paths, same);
    if (!same.isAlive())
        return;
    m_progress.end();
    if (QWidget* window = m_page.window(); window && wereAdded && same)
        window->setFocus();
}

bool FileChooser::addAll(const QStringList& paths, const SameNote& same)
{
    for (const QString& path : paths) {
        const bool goesOn = m_progress.next(QFileInfo(path).fileName());
        if (!goesOn || !same)
            break;
        if (!addOne(path))
            return false;
        if (!same)
            break;
    }
    return true;
}

bool FileChooser::addOne(const QString& path)
{
    const int error = ExclusiveOpen(path);
    const auto record = error ? std::nullopt : attachstore::RecordOfPath(path);
    if (record) {
        m_adder.AddDropFileToEditor({*record});
        return true;
    }
    m_boxes.show(IsInUse(error) ? QStringLiteral("不能添加正在编辑的文件作为附件！")
                                : QStringLiteral("无效文件路径:%1").arg(path));
    return false;
}
