#pragma once

#include "attachstore/DropFileInfo.h"

#include <QImage>

#include <vector>

/// Pictures that come as pixels and not as a file.
namespace attachstore {

/// Writes an image to a temporary JPEG file in GetTempDir, named by a new GUID, and appends its
/// record, with `isTempFile` set; the file is the caller's then. What is transparent becomes white.
/// Returns 1, or 0 for a null image, one that JPEG cannot hold (more than 65,500 pixels wide or
/// high), and a file that cannot be written; the list is as it was then. Nothing is logged.
int SaveImage(const QImage& image, std::vector<DropFileInfo>& list);

/// Deletes the source of every record whose `isTempFile` is set; failures are ignored.
void DelTempFileFromList(const std::vector<DropFileInfo>& list);

} // namespace attachstore
