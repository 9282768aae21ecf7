#pragma once

#include <QString>

class QWidget;

/// Message boxes. Rooms take this interface so that tests can record what a user would see.
class Boxes {
public:
    virtual ~Boxes();
    /// A modal box with one OK button and the default caption; returns when it is dismissed.
    virtual void message(const QString& text) = 0;
};

/// Boxes on the desktop, over the active modal widget, else over the active window.
class DesktopBoxes : public Boxes {
public:
    void message(const QString& text) override;
};

/// The system's message box. The last three arguments are accepted and not looked at.
int BCGPMessageBox(const QString& text, unsigned type = 0, QWidget* parent = nullptr,
    const QString* caption = nullptr);
