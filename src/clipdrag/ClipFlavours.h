#pragma once

#include <QLatin1StringView>
#include <QString>

#include <memory>
#include <string>
#include <vector>

class QMimeData;

/// HTML and lists of files as the desktop's data object carries them, on the clipboard and in a
/// drag. All flavours of one object are made from one source, so that each peer may read the one
/// it knows. docs/clipboard.md lists them.
///
/// std::bad_alloc alone is thrown.
namespace clipdrag {

/// The flavours beside text/html and text/uri-list. Windows names stand in the form that Qt gives
/// registered formats of that system.
inline constexpr QLatin1StringView kHtmlFormat(
    "application/x-qt-windows-mime;value=\"HTML Format\"");
inline constexpr QLatin1StringView kDropEffect(
    "application/x-qt-windows-mime;value=\"Preferred DropEffect\"");
inline constexpr QLatin1StringView kGnomeCopiedFiles("x-special/gnome-copied-files");
inline constexpr QLatin1StringView kKdeCutSelection("application/x-kde-cutselection");

/// `text`, the HTML of a fragment in UTF-8, up to its first zero byte: alone as text/html, and in
/// its frame as the "HTML Format" bytes. Null if it is too large for the latter.
std::unique_ptr<QMimeData> HtmlFlavours(const std::string& text);

/// Files for a file manager to copy; a path that is not absolute counts from the current directory.
/// Null for an empty list, and if one of the paths is empty or holds U+0000: no file has such a
/// path, and all of a list goes or nothing.
std::unique_ptr<QMimeData> FileFlavours(const std::vector<QString>& paths);

/// Whether there is HTML of either flavour, good or not.
bool HasHtml(const QMimeData& data);

/// The HTML in UTF-8: what the "HTML Format" bytes mark as the fragment, start comment included, or
/// else text/html whole. Bytes that mark no fragment are passed over. Nothing looks into the text:
/// it may be any HTML, or none. True if `fragment` was assigned; otherwise it is as it was.
bool HtmlFragment(const QMimeData& data, std::string& fragment);

/// The most addresses of one list. A longer one is no choice that a person made: each file that
/// comes in takes some milliseconds, and the engine's own look at a list grows with its square.
inline constexpr qsizetype kMostFiles = 1000;

/// Whether there is a list of more than `kMostFiles` lines. To be refused whole, and not shown to
/// the engine.
bool HasTooManyFiles(const QMimeData& data);

/// Whether there is at least one local `file:` address.
bool HasFiles(const QMimeData& data);

/// The paths of the local `file:` addresses, in their order (RFC 8089: without a host, or with that
/// of this machine). Whether there are such files is not asked. None of a list that is too long.
std::vector<QString> Files(const QMimeData& data);

} // namespace clipdrag
