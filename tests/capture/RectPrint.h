#pragma once

#include "capture/CaptureRect.h"

#include <ostream>

/// How a failed expectation shows a rectangle.
inline void PrintTo(const CaptureRect& rect, std::ostream* out)
{
    *out << '(' << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom
         << ')';
}
