#pragma once

namespace bench {

/// The memory of this process and all its descendants in bytes, pages that several processes share
/// counted in parts (PSS), once it has stopped changing: the event loop runs until half a second
/// has moved it by less than one percent, ten seconds at the most. Throws std::runtime_error where
/// the system does not tell it.
double settledMemory();

} // namespace bench
