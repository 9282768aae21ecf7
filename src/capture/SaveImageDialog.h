#pragma once

#include <QStringList>

/// The dialog in which a user says where a picture goes: the desktop's, or the answer of a test.
class SaveImageDialog {
public:
    virtual ~SaveImageDialog();
    /// Asks for the file; meanwhile anything may happen, as with a message box. False if the user
    /// chose none, and `path` is as it was. An existing file has been confirmed.
    virtual bool choose(QString& path) = 0;
};

/// The desktop's own dialog.
class DesktopSaveImageDialog : public SaveImageDialog {
public:
    bool choose(QString& path) override;
};

/// The filters of a save dialog as Qt takes them, out of pairs of a label and its patterns, all
/// parted by bars: "PNG(*.png)|*.png|" gives "PNG(*.png)". The patterns are those behind the
/// label. A round bracket in a pattern has no place in such a filter and is left out.
QStringList NameFiltersOf(const QString& pairs);
