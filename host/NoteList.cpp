#include "NoteList.h"

#include <QLocale>

using namespace Qt::StringLiterals;

NoteList::NoteList(Shelf& shelf, QObject* parent)
    : QAbstractListModel(parent)
    , m_shelf(shelf)
{
}

void NoteList::show(Shelf::Place place, const QString& search, const QString& open)
{
    beginResetModel();
    m_notes = m_shelf.notes(place, search);
    if (place == Shelf::Place::List && search.isEmpty() && !open.isEmpty() && !m_shelf.note(open))
        m_notes.insert(m_notes.begin(), NoteSummary())->guid = open;
    endResetModel();
}

int NoteList::rowOf(const QString& guid) const
{
    for (size_t row = 0; row < m_notes.size(); ++row)
        if (m_notes[row].guid == guid)
            return int(row);
    return -1;
}

QString NoteList::guidAt(int row) const
{
    return row >= 0 && row < rowCount() ? m_notes[size_t(row)].guid : QString();
}

int NoteList::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_notes.size());
}

QVariant NoteList::data(const QModelIndex& index, int role) const
{
    const NoteSummary& note = m_notes.at(size_t(index.row()));
    const bool today = note.changed.date() == QDate::currentDate();
    switch (role) {
    case Qt::DisplayRole:
        return note.title.isEmpty() ? tr("New note") : note.title;
    case ExcerptRole:
        return note.excerpt;
    case DayRole:
        return today ? QLocale().toString(note.changed.time(), u"HH:mm"_s)
                     : QLocale().toString(note.changed.date(), QLocale::ShortFormat);
    default:
        return {};
    }
}
