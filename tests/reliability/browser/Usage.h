#pragma once

#include <QString>

/// What a process holds of the machine, as the system counts it.
namespace usage {

/// Memory of its own, in bytes: neither files that are mapped nor what is shared.
qint64 memoryOf(qint64 process);
/// The most memory that this process has had in use since `resetPeak`, in bytes.
qint64 peak();
void resetPeak();
/// Open descriptors.
int handlesOf(qint64 process);

} // namespace usage
