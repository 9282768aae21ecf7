#include "bridge/INmEditorNotify.h"

INmEditorNotify::~INmEditorNotify() = default;
