#pragma once

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace notestore {

/// A picture file of the store that a note shows.
struct StorePicture {
    QString path;
    const char* mimeSubtype; ///< of "image/", by what the file's first bytes are, never by its name
};

/// The name in the store that an image's `src` stands for, empty for any other reference.
///
/// Of an attachment element's value only what stands behind the last separator counts, as always;
/// in a plain image the value must lead into "userdata\attachment". An address with a scheme other
/// than `file:`, a network path, and what can be no name of the store stand for nothing.
QString StoreNameOfReference(const QString& src, bool isAttachment);

/// The picture file of that name at the store's top level. Nothing if there is none, or if it is no
/// PNG, JPEG, GIF, BMP or WebP: a note from elsewhere must not carry out a file that it only claims
/// to show.
std::optional<StorePicture> FindStorePicture(const QString& name);

/// Replaces the `src` of each image that shows a picture of the store by `addressOf(number)`, and
/// returns the pictures: the one at position i has the number i, and a picture that is shown twice
/// is there once. If there is none, `html` stays byte for byte, otherwise it becomes the inside of
/// the body. Throws std::bad_alloc alone.
std::vector<StorePicture> TakeStorePictures(
    QString& html, const std::function<QString(qsizetype number)>& addressOf);

} // namespace notestore
