#include "clipdrag/DroppedFiles.h"

#include "attachstore/FileRecord.h"
#include "attachstore/ImageFile.h"
#include "clipdrag/ClipFlavours.h"
#include "clipdrag/DesktopClipboard.h"
#include "platform/CGdiToolBox.h"
#include "platform/PortalFiles.h"

#include <QClipboard>
#include <QDir>
#include <QImage>
#include <QMimeData>

#include <algorithm>

namespace {

// By the names that desktops give them.
constexpr QLatin1StringView imageTypes[] = {
    QLatin1StringView("image/png"),
    QLatin1StringView("image/bmp"),
    QLatin1StringView("image/x-bmp"),
    QLatin1StringView("image/x-MS-bmp"),
    QLatin1StringView("image/tiff"),
    QLatin1StringView("image/webp"),
    QLatin1StringView("image/jpeg"),
    QLatin1StringView("image/gif"),
};

template <typename Paths> void appendRecords(const Paths& paths, std::vector<DropFileInfo>& files)
{
    for (const QString& path : paths) {
        if (auto record = attachstore::RecordOfPath(QDir::toNativeSeparators(path)))
            files.push_back(std::move(*record));
    }
}

QImage imageOf(const QMimeData& data)
{
    for (const QLatin1StringView type : imageTypes) {
        if (!data.hasFormat(type))
            continue;
        const QImage image = CGdiToolBox::LoadImageFromMemory(data.data(type));
        if (!image.isNull())
            return image;
    }
    return CGdiToolBox::LoadBitmap(data);
}

} // namespace

bool clipdrag::HasFileList(const QMimeData& data)
{
    return HasFiles(data) || !portal::TransferKey(data).isEmpty();
}

void clipdrag::GetFileList(const QMimeData& data, std::vector<DropFileInfo>& files)
{
    const std::size_t before = files.size();
    appendRecords(Files(data), files);
    if (files.size() != before)
        return;
    // Last, because asking takes the files away from any other program that the drag goes to.
    if (const QByteArray key = portal::TransferKey(data); !key.isEmpty())
        appendRecords(portal::RetrieveFiles(key), files);
}

bool clipdrag::HasImage(const QMimeData& data)
{
    const auto isOffered = [&data](QLatin1StringView type) { return data.hasFormat(type); };
    return data.hasImage() || std::any_of(std::begin(imageTypes), std::end(imageTypes), isOffered);
}

void clipdrag::GetImage(const QMimeData& data, std::vector<DropFileInfo>& files)
{
    attachstore::SaveImage(imageOf(data), files);
}

void clipdrag::GetFileListFromClipboard(std::vector<DropFileInfo>& files)
{
    QClipboard* const board = DesktopClipboard();
    const QMimeData* const data = board ? board->mimeData() : nullptr;
    if (!data)
        return;
    if (HasFileList(*data))
        GetFileList(*data, files);
    else
        GetImage(*data, files);
}
