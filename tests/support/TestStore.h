#pragma once

#include "support/WithoutRoot.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// Real surroundings for tests: a store on disk and the lines that reach the log.

/// An application directory of its own with an empty store, for as long as it lives.
class TestStore {
public:
    TestStore();
    ~TestStore();
    TestStore(const TestStore&) = delete;
    TestStore& operator=(const TestStore&) = delete;

    QString appDir() const; ///< with a separator at its end
    QString store() const; ///< without one
    QString path(const QString& name) const; ///< of something in the store
    QStringList names() const; ///< what lies at the top level of the store, sorted
    QString write(const QString& name, const QByteArray& bytes) const; ///< returns the path

private:
    QTemporaryDir m_directory;
};

QByteArray readFile(const QString& path);
void writeFile(const QString& path, const QByteArray& bytes);

/// The messages logged by the process's logger since this was made, without their stamps.
class LoggedLines {
public:
    LoggedLines();
    /// Lets the next line be queued without an allocation.
    void makeRoom() const;
    QStringList take();

private:
    qint64 m_start;
};
