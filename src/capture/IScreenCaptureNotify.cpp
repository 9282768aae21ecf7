#include "capture/IScreenCaptureNotify.h"

IScreenCaptureNotify::~IScreenCaptureNotify() = default;
