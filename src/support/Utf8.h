#pragma once

#include <QStringView>

#include <cstddef>

/// Encoding in pieces, for texts that are written out as they are encoded.

/// Encodes the start of `text` into `buffer` and takes what was encoded off `text`; returns the
/// count of bytes. Stops when fewer than 4 bytes of room are left, so `capacity` must be at least 4
/// for progress. A surrogate without its partner becomes U+FFFD. NUL is a character like any other.
std::size_t EncodeUtf8(QStringView& text, char* buffer, std::size_t capacity);

/// The part of `text` before its first NUL.
QStringView UntilNul(QStringView text);
