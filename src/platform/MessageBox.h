#pragma once

#include <QString>

class QWidget;

/// The system's message box: modal, one OK button, the text as given, the default caption. It
/// stands over `parent`, else where `DialogParent.h` says, and returns when it is dismissed. `type`
/// and `caption` are accepted and not looked at.
int BCGPMessageBox(const QString& text, unsigned type = 0, QWidget* parent = nullptr,
    const QString* caption = nullptr);
