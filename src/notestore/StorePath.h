#pragma once

#include <QString>

namespace notestore {

/// The store's directory with a separator at its end. Unlike GetAttachmentDir it makes nothing: a
/// store that is not there is a failed open to a save, and an export has no reason to make one.
QString StoreBase();

} // namespace notestore
