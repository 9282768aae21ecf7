#pragma once

#include "platform/Variant.h"

#include <QString>

/// A script value as text. Empty and null give the empty text; integers print as 32 bits, so the
/// high half of a 64-bit value is lost; reals print with 4 (`VT_R4`) or 8 (`VT_R8`) decimals, a
/// decimal with 4; a date prints as "%Y-%m-%d %H:%M:%S", one that is no date as "Invalid DateTime";
/// truth values as "TRUE" and "FALSE"; every other type, references included, as "UN_KNOW".
QString Format(const VARIANT& variant);
