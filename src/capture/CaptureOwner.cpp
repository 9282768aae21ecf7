#include "capture/CaptureOwner.h"

CaptureOwner::~CaptureOwner() = default;
