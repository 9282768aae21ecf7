#include "attachstore/WorkingCopy.h"

#include "support/TestStore.h"

#include <gtest/gtest.h>

using namespace attachstore;

TEST(GetAttachInfoFromPathTest, OnlyAFileDirectlyInANoteFolderCounts)
{
    const TestStore store;
    struct Case {
        QString path, folder, file;
    };
    const QString root = store.store();
    QString windows = root;
    windows.replace(u'/', u'\\');
    const QString none = QStringLiteral("as before");
    const Case cases[] = {
        {root + QStringLiteral("/guid/a.txt"), QStringLiteral("guid"), QStringLiteral("a.txt")},
        {windows + QStringLiteral("\\guid\\a.txt"), QStringLiteral("guid"),
            QStringLiteral("a.txt")},
        {root + QStringLiteral("\\guid/报告.pdf"), QStringLiteral("guid"),
            QStringLiteral("报告.pdf")},
        {root + QStringLiteral("/guid/a.txt/"), QStringLiteral("guid"), QStringLiteral("a.txt")},
        // In the store's root: a picture or a card.
        {root + QStringLiteral("/0123.bmp"), none, none},
        // Deeper.
        {root + QStringLiteral("/guid/sub/a.txt"), none, none},
        {root + QStringLiteral("/guid\\sub\\a.txt"), none, none},
        {root + QStringLiteral("/guid//a.txt"), none, none},
        // Elsewhere.
        {QStringLiteral("/other/userdata/attachment/guid/a.txt"), none, none},
        {root.toUpper() + QStringLiteral("/guid/a.txt"), none, none},
        {root, none, none},
        {root + u'/', none, none},
        {QString(), none, none},
        // The character behind the store is skipped, whatever it is.
        {root + QStringLiteral("xguid/a.txt"), QStringLiteral("guid"), QStringLiteral("a.txt")},
    };
    for (const Case& each : cases) {
        QString folder = none, file = none;
        GetAttachInfoFromPath(each.path, folder, file);
        EXPECT_EQ(folder, each.folder) << each.path.toStdString();
        EXPECT_EQ(file, each.file) << each.path.toStdString();
    }
}

TEST(IsTemporaryPathTest, LooksBehindTheLastDotInWhateverCase)
{
    for (const char* path : {"/s/guid/a.tmp", "/s/guid/a.TMP", "a.b.tMp", "tmp", "TMP"})
        EXPECT_TRUE(IsTemporaryPath(QLatin1String(path))) << path;
    for (const char* path :
        {"/s/guid/report.tmp.docx", "/s/guid/tmp", "/s/guid/a", "/s/guid/a.tmp2", "a.", ""})
        EXPECT_FALSE(IsTemporaryPath(QLatin1String(path))) << path;
}

TEST(IsChangeEventTest, OnlyAModificationAndARenameToThisNameAreChanges)
{
    struct Case {
        quint32 action;
        bool isChange;
    };
    const Case cases[] = {
        {0, false},
        {1, false}, // added
        {2, false}, // removed
        {3, true}, // modified
        {4, false}, // lost this name
        {5, true}, // got this name
        {6, false},
        {0xFFFFFFFF, false},
    };
    for (const Case& each : cases) {
        for (const char* path : {"/s/guid/a.txt", "/s/guid/a.tmp2", "nodot", ""})
            EXPECT_EQ(IsChangeEvent(QLatin1String(path), each.action), each.isChange)
                << path << ' ' << each.action;
        for (const char* path : {"/s/guid/a.tmp", "/s/guid/a.TMP", "tmp"})
            EXPECT_FALSE(IsChangeEvent(QLatin1String(path), each.action))
                << path << ' ' << each.action;
    }
}
