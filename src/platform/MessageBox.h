#pragma once

#include <QString>

class QWidget;

/// The system's message box: modal, one OK button, the text as given, the default caption. It
/// stands over `parent`, else where `DialogParent.h` says, and returns when it is dismissed:
/// `QMessageBox::Ok`, or 0 if it went with the window that it stood over. Meanwhile anything may
/// happen. `type` and `caption` are accepted and not looked at.
int BCGPMessageBox(const QString& text, unsigned type = 0, QWidget* parent = nullptr,
    const QString* caption = nullptr);
