#pragma once

#include <QtGlobal>

/// Marks what a host may call. Everything else stays hidden in the library.
#define NOMAR_EXPORT Q_DECL_EXPORT
