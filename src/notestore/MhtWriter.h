#pragma once

#include <QByteArray>
#include <QSaveFile>
#include <QString>

namespace notestore {

/// One MHT file being written: a message of the type multipart/related (RFC 2387, 2557) with a part
/// for the HTML, which is the root and stands first, and one for each picture. docs/mht.md tells
/// the bytes.
///
///     MhtWriter file(path);
///     if (file.open() && file.addHtml(html) && file.addPicture(picture, "png") && file.finish())
///
/// Everything goes to a temporary file beside `path`, which finish() flushes and gives the final
/// name. Without it, or if it fails, the temporary is removed and what stood at `path` stays.
/// A false result is final: whatever was written is of no use then. Memory does not grow with what
/// is added. Nothing throws but std::bad_alloc.
class MhtWriter {
public:
    explicit MhtWriter(const QString& path);

    /// Makes the temporary and writes the message's headers. False if it cannot be made, or if
    /// `path` is something that is no regular file, or one that may not be written.
    bool open();
    /// The root: once, and before any picture.
    bool addHtml(const QString& html);
    /// A picture from disk, of the type "image/" and `mimeSubtype`. Pictures are numbered from 0 in
    /// the order in which they are added. False also if the file cannot be read to its end.
    bool addPicture(const QString& path, const char* mimeSubtype);
    bool finish();

    /// What the HTML writes for the picture of that number: a `cid:` address (RFC 2392). Unlike in
    /// any other file that was ever written, so that mails can quote several of them.
    QString pictureAddress(qsizetype number) const;

private:
    void beginPart(const QByteArray& headers);
    QByteArray pictureId(qsizetype number) const;

    QSaveFile m_file;
    QByteArray m_boundary;
    const QByteArray m_token;
    qsizetype m_pictures = 0;
};

} // namespace notestore
