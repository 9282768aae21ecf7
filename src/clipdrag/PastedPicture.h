#pragma once

#include "attachstore/DropFileInfo.h"

#include <QString>

#include <functional>
#include <optional>
#include <set>

class Adder;

/// Pictures in HTML that the user pastes: in the HTML itself (`data:`, RFC 2397) or in a file that
/// it names (`file:`, RFC 8089). The page takes the HTML apart and asks for them.
namespace clipdrag {

/// The addresses of the pictures in the HTML that the clipboard holds now.
std::set<QString> PicturesOnClipboard();

/// Reads the picture at the address `source` and writes it to a temporary file of a name that no
/// other has, to be deleted by the caller. Bytes of the formats that count as pictures stay as they
/// are; what else can be decoded becomes PNG, with the first of its pictures.
///
/// Of a picture that no note has room for (`attachstore::attachLimit`) no file is made: its record
/// has its size, for the rule on sizes to refuse it by, and an empty path.
///
/// Nothing comes back for what is no picture that can be decoded (vector formats are none, as they
/// can hold script), has too many pixels (`CGdiToolBox.h`) or more than 64 MiB, for broken Base64,
/// and for a `file:` address that is not among `named` or leads to no regular file of this machine.
std::optional<DropFileInfo> ReadPastedPicture(
    const QString& source, const std::set<QString>& named);

/// Carries out what the page asks for when HTML with such pictures is pasted, and answers it.
class PastedPictures {
public:
    /// Whether the page still shows the text of that number.
    using IsShown = std::function<bool(int load)>;
    /// Sends the page a message of the private channel.
    using Post = std::function<void(const QString& kind, const QString& text)>;

    /// Nothing is owned.
    PastedPictures(Adder& adder, IsShown isShown, Post post);

    /// `request`: {"load": number, "paste": number, "sources": [address, …]}. Tells the page the
    /// digest of each picture ("pictures"), adds them as it adds dropped files, with the same rules
    /// and messages, and tells the page that all is done ("picturesDone"). The digest is empty for
    /// what is no picture or fits into no note, and behind the first `kMostFiles` sources, which
    /// alone are read. What is no such request, or is of a text that has gone by now, is ignored.
    /// Waits for the page: not to be called inside a task of the engine.
    void import(const QString& request);

private:
    Adder& m_adder;
    IsShown m_isShown;
    Post m_post;
};

} // namespace clipdrag
