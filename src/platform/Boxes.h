#pragma once

#include <QString>

/// The message boxes of an operation: on the desktop, or written down by a test.
class Boxes {
public:
    virtual ~Boxes();
    /// Shows the text and returns when it has been dismissed. Meanwhile the page can call, and the
    /// host can open another note.
    virtual void show(const QString& text) = 0;
};

/// The boxes that users see: `BCGPMessageBox`.
class DesktopBoxes : public Boxes {
public:
    void show(const QString& text) override;
};
