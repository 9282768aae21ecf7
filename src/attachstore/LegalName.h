#pragma once

#include <QString>

namespace attachstore {

/// The name under which a file of that name enters a note. It can stand in the note's folder of the
/// store, and reads the same there as in the note's `nm_exdata`.
///
/// A name that can do that comes back as it is, the empty one too. Any other (a separator of either
/// kind or NUL in it, "." or "..", over 255 bytes, a surrogate without its partner) becomes
/// `<what it began with>-<digest>.<extension>`: the digest is that of the whole name, so that two
/// names do not become one; what cannot stay becomes "_" or U+FFFD; the rest is cut, between two
/// characters, to 255 bytes of UTF-8. An extension that leaves no room for the digest is left off.
QString LegalName(const QString& name);

} // namespace attachstore
