#pragma once

#include "Shelf.h"

#include <QAbstractListModel>

/// The notes of the list or of the bin, all or those that a search finds, as they were on the shelf
/// at the last show().
class NoteList : public QAbstractListModel {
    Q_OBJECT
public:
    /// Qt::DisplayRole is the title, with a stand-in for a note that has none.
    enum Role { ExcerptRole = Qt::UserRole, DayRole };

    explicit NoteList(Shelf& shelf, QObject* parent = nullptr);

    /// Reads the shelf. A note `open` that is not on it yet is listed first, unless in a search.
    void show(Shelf::Place place, const QString& search, const QString& open);

    int rowOf(const QString& guid) const; // -1: not shown
    QString guidAt(int row) const; // empty: no such row

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    Shelf& m_shelf;
    std::vector<NoteSummary> m_notes;
};
