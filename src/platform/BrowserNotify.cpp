#include "platform/BrowserNotify.h"

IJSCallFunNotify::~IJSCallFunNotify() = default;
DropTarget::~DropTarget() = default;
IIEDragNotify::~IIEDragNotify() = default;
IIEUINotify::~IIEUINotify() = default;
