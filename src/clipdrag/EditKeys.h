#pragma once

class CopyNotify;
class KeyState;
class NotePage;
class Paste;
class QKeyEvent;
struct OpenNote;

/// What keys ask of others.
class KeyActs {
public:
    virtual ~KeyActs();
    /// Takes the painted search hits away.
    virtual void CancleHighlight() = 0;
    /// Gives the browser its cut command.
    virtual void Cut() = 0;
};

/// The keys that are seen before the browser. The keyboard's state decides and not the message, so
/// with several keys held the first of this order counts: F5; then with Control C, V, D, F, and O,
/// P and N.
///
/// `S_OK` uses a key up, `E_NOTIMPL` leaves it to the browser.
class EditKeys {
public:
    /// Nothing is owned.
    EditKeys(const OpenNote& note, NotePage& page, CopyNotify& copy, Paste& paste, KeyActs& acts);

    long OnTranslateAccelerator(const QKeyEvent& msg, const KeyState& keys);
    /// Has the clipboard looked at behind the browser's copy, which a read-only note has too.
    long DoCtrlC();
    /// Cuts, unless the note is read-only.
    long DoCtrlD();

private:
    const OpenNote& m_note;
    NotePage& m_page;
    CopyNotify& m_copy;
    Paste& m_paste;
    KeyActs& m_acts;
};
