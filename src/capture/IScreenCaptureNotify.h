#pragma once

#include "support/Export.h"

#include <QImage>

/// Receives the picture of a screen capture.
class NOMAR_EXPORT IScreenCaptureNotify {
public:
    virtual ~IScreenCaptureNotify();
    /// The capture is complete. A null `bitmap` stands for an empty selection.
    virtual void OnScreenCaptureComplet(const QImage& bitmap) = 0;
};
