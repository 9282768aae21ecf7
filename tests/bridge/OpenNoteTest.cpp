#include "bridge/OpenNote.h"
#include "kit/Print.h"

#include <gtest/gtest.h>

TEST(OpenNote, StoredSizesDoNotReplaceKnownOnes)
{
    OpenNote note;
    note.InitAttachFileSize({{QStringLiteral("a"), 1}});
    note.InitAttachFileSize({{QStringLiteral("a"), 2}, {QStringLiteral("b"), 3}});
    const std::map<QString, quint64> expected{{QStringLiteral("a"), 1}, {QStringLiteral("b"), 3}};
    EXPECT_EQ(note.m_attachSizeCache, expected);
}
