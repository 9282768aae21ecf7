#pragma once

#include <QString>

#include <string>

/// The value of `nm_exdata`, the attribute that makes an `img` an attachment: a JSON object whose
/// one key `OrigName_B64` holds the file's original name, Base64 of its narrow form. The text is a
/// fixed function of the name, so it also serves as the element's identity.
/// docs/attachment-element.md tells the whole grammar.
namespace noteattach {

/// The original name in such a value; empty if it is no JSON object, lacks the key or has no text
/// there.
QString GetOrigNameFromJson(const std::string& json);
/// The same, for an attribute value as a document gives it.
QString GetOrigNameFromJson(const QString& json);

/// The value for a name. The empty name gives an empty text under the key.
QString FormatOrigNameToJson(const QString& origName);

/// 1 if the name's extension counts as that of a picture.
/// Kept: that is, if it occurs anywhere in "jpg jpeg gif bmp png", so "jp", "g" and an empty
/// extension ("name.") count too. A name without a dot is no picture.
int IsPicFileType(const QString& name);

} // namespace noteattach
