#include "TestShelf.h"

#include "NoteList.h"

#include <QAbstractItemModelTester>
#include <QLocale>

using namespace Qt::StringLiterals;

class NoteListTest : public TestShelf {
protected:
    void show(Shelf::Place place = Shelf::Place::List, const QString& search = {},
        const QString& open = {})
    {
        list.show(place, search, open);
    }
    QString title(int row) const { return list.index(row).data().toString(); }

    NoteList list{shelf};
};

TEST_F(NoteListTest, ShowsThePlaceAndTheSearch)
{
    ASSERT_TRUE(save(u"a"_s, u"apple"_s) && save(u"b"_s, u"banana"_s) && save(u"c"_s, u"cherry"_s));
    ASSERT_TRUE(shelf.setBinned(u"c"_s, true));
    show();
    EXPECT_EQ(list.rowCount(), 2);
    show(Shelf::Place::Bin);
    ASSERT_EQ(list.rowCount(), 1);
    EXPECT_EQ(title(0), u"cherry"_s);
    show(Shelf::Place::List, u"nan"_s);
    ASSERT_EQ(list.rowCount(), 1);
    EXPECT_EQ(list.guidAt(0), u"b"_s);
}

TEST_F(NoteListTest, RowsAndGuidsLeadToEachOther)
{
    ASSERT_TRUE(save(u"a"_s, u"apple"_s) && save(u"b"_s, u"banana"_s));
    show();
    for (int row = 0; row < list.rowCount(); ++row)
        EXPECT_EQ(list.rowOf(list.guidAt(row)), row);
    EXPECT_EQ(list.rowOf(u"unknown"_s), -1);
    EXPECT_EQ(list.rowOf({}), -1);
    EXPECT_EQ(list.guidAt(-1), QString());
    EXPECT_EQ(list.guidAt(2), QString());
}

TEST_F(NoteListTest, OpenNoteThatWasNeverSavedIsListedFirst)
{
    ASSERT_TRUE(save(u"a"_s, u"apple"_s));
    show(Shelf::Place::List, {}, u"new"_s);
    ASSERT_EQ(list.rowCount(), 2);
    EXPECT_EQ(list.guidAt(0), u"new"_s);
    EXPECT_EQ(title(0), u"New note"_s);
    show(Shelf::Place::List, {}, u"a"_s);
    EXPECT_EQ(list.rowCount(), 1) << "a note that is on the shelf is not listed twice";
    show(Shelf::Place::Bin, {}, u"new"_s);
    EXPECT_EQ(list.rowCount(), 0);
    show(Shelf::Place::List, u"app"_s, u"new"_s);
    EXPECT_EQ(list.rowCount(), 1);
}

TEST_F(NoteListTest, NoteWithoutTextHasAStandIn)
{
    ASSERT_TRUE(shelf.saveNote(u"g"_s, {}, {}));
    show();
    EXPECT_EQ(title(0), u"New note"_s);
}

TEST_F(NoteListTest, ChangeOfTodayIsATimeAndAnOlderOneADate)
{
    ASSERT_TRUE(save(u"g"_s, u"text"_s));
    show();
    const QString today = list.index(0).data(NoteList::DayRole).toString();
    EXPECT_TRUE(QTime::fromString(today, u"HH:mm"_s).isValid()) << qPrintable(today);
    for (const QString& name : QSqlDatabase::connectionNames())
        QSqlQuery(u"UPDATE note SET changed = 86400000"_s, QSqlDatabase::database(name, false));
    show();
    const QDate day = QDateTime::fromMSecsSinceEpoch(86400000).date();
    EXPECT_EQ(list.index(0).data(NoteList::DayRole).toString(),
        QLocale().toString(day, QLocale::ShortFormat));
}

TEST_F(NoteListTest, KeepsTheRulesOfAModel)
{
    QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Fatal);
    ASSERT_TRUE(save(u"a"_s, u"apple"_s) && save(u"b"_s, u"banana"_s));
    show();
    show(Shelf::Place::Bin);
    show(Shelf::Place::List, u"banana"_s, u"new"_s);
    EXPECT_EQ(list.rowCount(), 1);
}
