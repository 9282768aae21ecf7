#pragma once

#include <QString>

/// A note leaves the system as one MHT file: a MIME message (RFC 2045, 2387, 2557) whose root is
/// the note's HTML. docs/mht.md tells the bytes. "Export to Word" is this file under the name that
/// the host chooses.
///
/// Two forms. The first carries the text alone, and its pictures are references to absolute paths
/// inside the store: it shows them only where those files are. The second carries the pictures too.
///
/// All results are 1 or 0. A file that stands at `mhtPath` is replaced once the new one is whole
/// and on the disk, and stays as it is after a failure. A path that is a directory, a device or a
/// file that may not be written is a failure. Failures are logged. Nothing here needs or makes a
/// store.
namespace notestore {

/// Points the `src` of each image at the store by an absolute path: the store's directory with the
/// text behind the value's last backslash. A text without images comes back as it stands; otherwise
/// `converted` is the inside of the body. An image without `src` is left alone.
/// Kept: a value without a backslash, such as a web address, is appended whole, which breaks it.
/// 0, with `converted` untouched, only for want of memory.
int HtmlConvert(const QString& html, QString& converted);

/// Writes a text, as it stands, into an MHT file that holds nothing else. NUL is written too; a
/// lone surrogate becomes U+FFFD.
int HtmlToMht(const QString& html, const QString& mhtPath);

/// The first form: HtmlConvert, then HtmlToMht.
int NoteHtmlContentToMhtFile(const QString& html, const QString& mhtPath);
/// The same for a note file; 0 if it cannot be read.
int NoteHtmlFileToMhtFile(const QString& htmlPath, const QString& mhtPath);

/// The second form, "single file with pictures": each picture and card that the note shows from the
/// store stands in the file, once, and its images refer to it by `cid:` (RFC 2392). What is missing
/// there, is no picture, or is not a name of the store stays the reference it was
/// (StorePictures.h). Pictures pass through in pieces, so memory does not grow with them. One that
/// cannot be read to its end is a failure.
int NoteHtmlContentToMhtFileWithPictures(const QString& html, const QString& mhtPath);
int NoteHtmlFileToMhtFileWithPictures(const QString& htmlPath, const QString& mhtPath);

} // namespace notestore
