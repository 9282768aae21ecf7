#pragma once

#include <QString>

#include <memory>
#include <vector>

class Shelf;
struct NewAttachFile;

/// The sample host's shelf. Apart from it stands that it is built from installed headers, which a
/// file that includes the library's own cannot include too.
class HostShelf {
public:
    HostShelf();
    ~HostShelf();

    bool open(const QString& path);
    bool save(const QString& guid, const std::vector<NewAttachFile>& files, const QString& text);
    /// The path that the host would open, empty for none.
    QString attachment(const QString& store, const QString& guid, const QString& fileName,
        const QString& origName);

    /// The note's files of text, and the number of words it counts.
    std::vector<QString> noteFiles(const QString& guid);
    int words(const QString& guid);
    /// As the shelf counts them.
    static int wordsOf(const QString& text);

private:
    std::unique_ptr<Shelf> m_shelf;
};
