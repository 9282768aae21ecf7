#pragma once

#include "attachstore/DropFileInfo.h"

#include <vector>

class QMimeData;

/// What a drag or the clipboard offers, as records of files on their way in. What cannot be read
/// gives no record; nothing is shown or logged.
namespace clipdrag {

/// Whether there is a file list: at least one address of a local file, or the key of a portal.
bool HasFileList(const QMimeData& data);

/// Appends a record for each file and folder of a file list, in its order: the local addresses, or,
/// if none of these can be opened, what the portal gives for its key.
void GetFileList(const QMimeData& data, std::vector<DropFileInfo>& files);

/// Whether an image is offered, good or not.
bool HasImage(const QMimeData& data);

/// Writes the image that is offered, if any, to a temporary JPEG file and appends its record; the
/// file is the caller's. Bytes of an image format come first, in the order of the formats that lose
/// least, then pixels. An image that has too many pixels (`CGdiToolBox.h`) counts as none.
void GetImage(const QMimeData& data, std::vector<DropFileInfo>& files);

/// The same for the clipboard: its file list if it has one, and else its image.
void GetFileListFromClipboard(std::vector<DropFileInfo>& files);

} // namespace clipdrag
