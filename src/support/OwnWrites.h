#pragma once

#include "support/FileCopy.h"

#include <QString>

#include <optional>

/// What the library itself has put into the store lately, for those who watch the store for the
/// changes of others. Callable from any thread.
namespace ownwrites {

/// Somebody watches as long as this lives. Nothing is remembered while nobody does.
class Watching {
public:
    Watching();
    ~Watching();
    Watching(const Watching&) = delete;
    Watching& operator=(const Watching&) = delete;
};

/// Told of each file right before it gets its name: whoever learns of the name finds it here. Of
/// what is never asked for, the newest few thousand are kept.
void remember(const QString& path, const FileStamp& stamp);

/// The stamp with which the library last put a file of its own there; forgotten with the question.
std::optional<FileStamp> take(const QString& path);

} // namespace ownwrites
