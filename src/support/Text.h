#pragma once

#include <QString>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Text conversions and small text tools.
///
/// Text is wide (QString, UTF-16) inside the component. The narrow form, which JSON text, note
/// files and the Base64 form of file names are made of, is "the process code page" and is always
/// UTF-8 here, so Ansi and Utf8 name the same encoding; the two names stay because they say what a
/// text is for. Nothing is lost at these borders but two things: a text ends at its first NUL, and
/// a surrogate without its partner becomes U+FFFD, as do bytes that are not UTF-8. A U+FEFF at the
/// start is a character like any other. None of the conversions fails.

QString AnsiToWide(const std::string& text);
/// A null pointer gives the empty string.
QString AnsiToWide(const char* text);
std::string WideToAnsi(const QString& text);
QString Utf8ToWide(const std::string& text);
std::string WideToUtf8(const QString& text);

/// Appends the pieces of `text` between separators to `items`. Two separators side by side, or one
/// at the start, give an empty item; one at the end gives none. An empty separator separates
/// nothing: the whole text is one item.
void SplitString(const QString& text, const QString& separator, std::vector<QString>& items);

/// A new random GUID as 32 lower-case hexadecimal digits, without braces and hyphens.
QString CreateGuidString();

/// RFC 4648 Base64 with the standard alphabet and padding, in one line.
std::string Base64Encode(const char* bytes, std::size_t length);

/// The bytes behind a Base64 text, up to the first zero byte.
///
/// Lenient: between groups of four the bytes 0x01, 0x02, 0x0A and 0x0D are skipped, anything else
/// outside the alphabet counts as 0, and so does what is missing from the last group. "=" in the
/// third place of a group ends its output at one byte, in the fourth at two; more may follow.
std::string Base64Decode(std::string_view text);
