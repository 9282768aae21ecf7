#pragma once

#include <QString>

#include <vector>

/// A text that tries to do what no note may.
struct HostileNote {
    QString kind;
    QString html;
    /// The number that it calls `top.hit` with, and that stands behind the address it asks for.
    int number = 0;
};

/// The texts of tests/data/hostile_notes.txt, and those of the JSON list that the environment
/// variable NOMAR_HOSTILE_NOTES names, if there is one: objects with a `payload` each.
/// `address` is where a request would be seen, `picture` the address of a file outside of the
/// store.
std::vector<HostileNote> hostileNotes(const QString& address, const QString& picture);
