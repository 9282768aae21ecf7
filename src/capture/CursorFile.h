#pragma once

#include <QCursor>

#include <optional>

/// The mouse cursor of that name in the `res` directory, with the hot spot that the file tells:
/// its first picture. Nothing if the file is missing or holds no cursor, or the hot spot lies
/// outside of it.
std::optional<QCursor> LoadCursorFile(const QString& resName);
