#pragma once

#include <QStringList>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

class TestStore;

/// Something the store does: `prepare` makes what it works on, `run` does it (1 or 0), `isDone`
/// tells whether its product stands, whole.
struct StoreOperation {
    const char* name;
    /// Calls whose failure leaves no line, as the log's readers know it.
    std::vector<std::string> silent;
    std::function<void(const TestStore&)> prepare;
    std::function<int(const TestStore&)> run;
    std::function<bool(const TestStore&)> isDone;
    QStringList lines; ///< What may be logged of a failure, beside the line of a digest.
    /// A failure leaves the very files that were there. Other operations have steps that stay, and
    /// each of those is whole.
    bool isAllOrNothing = false;
};

inline void PrintTo(const StoreOperation& operation, std::ostream* out)
{
    *out << operation.name;
}

const std::vector<StoreOperation>& StoreOperations();
