#include "platform/Boxes.h"

#include "platform/MessageBox.h"

Boxes::~Boxes() = default;

void DesktopBoxes::show(const QString& text)
{
    BCGPMessageBox(text, 0, nullptr, nullptr);
}
