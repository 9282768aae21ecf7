#pragma once

#include "support/FileCopy.h"

#include <QString>

#include <optional>

/// A stamp as text, "size time": bytes, and nanoseconds since 1970. How it travels with a message.
QString StampText(const FileStamp& stamp);
/// Nothing if the text is none of those.
std::optional<FileStamp> StampOfText(const QString& text);
