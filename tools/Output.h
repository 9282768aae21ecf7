#pragma once

#include "noteattach/NewAttachFile.h"

#include <QString>

/// The two streams, in UTF-8, and values as JSON (RFC 8259).
namespace nmnote {

void print(const QString& text);
/// One line "nmnote: …".
void complain(const QString& text);
/// Brings the standard output to where it goes; false if some of it could not be written.
bool flushOutput();

/// A string as a JSON value. A lone surrogate becomes U+FFFD.
QString jsonString(const QString& text);
/// A record as a JSON object with its fields' names, in their order.
QString jsonRecord(const NewAttachFile& record);

} // namespace nmnote
