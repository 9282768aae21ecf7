#include "clipdrag/EditKeys.h"

#include "clipdrag/Board.h"
#include "kit/AddingFixture.h"

#include "clipdrag/CopyNotify.h"
#include "clipdrag/Paste.h"
#include "platform/KeyState.h"
#include "platform/Result.h"

#include <QKeyEvent>

namespace {

struct RecordedActs : KeyActs {
    QStringList acts;
    void CancleHighlight() override { acts << QStringLiteral("CancleHighlight"); }
    void Cut() override { acts << QStringLiteral("Cut"); }
};

struct Keys : Adding {
    RecordedActs acts;
    CopyNotify copy{note};
    Paste paste{note, *adder, boxes};
    EditKeys keys{note, page, copy, paste, acts};

    void SetUp() override { QGuiApplication::clipboard()->clear(); }

    /// The result for a press of the last of these keys while all are held.
    long pressed(const std::vector<int>& held, QEvent::Type type = QEvent::KeyPress)
    {
        KeyState state;
        const bool control = std::find(held.begin(), held.end(), Qt::Key_Control) != held.end();
        const auto modifiers = control ? Qt::ControlModifier : Qt::NoModifier;
        for (const int key : held)
            state.press(QKeyEvent(QEvent::KeyPress, key, modifiers));
        return keys.OnTranslateAccelerator(
            QKeyEvent(type, held.empty() ? 0 : held.back(), modifiers), state);
    }
    /// What has been done since the last call.
    QStringList done()
    {
        QStringList all = acts.acts;
        all += page.order;
        acts.acts.clear();
        page.order.clear();
        return all;
    }
    void offerAFile() { board::put(board::files({file(QStringLiteral("b.txt"))})); }
};

const QStringList nothing;
const QStringList copyMessage{QStringLiteral("8004")};
const QStringList cut{QStringLiteral("Cut")};
const QStringList cancel{QStringLiteral("CancleHighlight")};

} // namespace

TEST_F(Keys, EachKeyDoesWhatTheTableSays)
{
    struct Row {
        std::vector<int> held;
        long result;
        QStringList done;
    };
    const Row rows[] = {
        {{Qt::Key_F5}, S_OK, nothing},
        {{Qt::Key_Control, Qt::Key_F5}, S_OK, nothing},
        {{Qt::Key_C}, E_NOTIMPL, nothing},
        {{Qt::Key_D}, E_NOTIMPL, nothing},
        {{Qt::Key_O}, E_NOTIMPL, nothing},
        {{Qt::Key_Control}, E_NOTIMPL, nothing},
        {{Qt::Key_Control, Qt::Key_C}, E_NOTIMPL, copyMessage},
        {{Qt::Key_Control, Qt::Key_V}, E_NOTIMPL, nothing},
        {{Qt::Key_Control, Qt::Key_D}, S_OK, cut},
        {{Qt::Key_Control, Qt::Key_F}, E_NOTIMPL, cancel},
        {{Qt::Key_Control, Qt::Key_O}, S_OK, nothing},
        {{Qt::Key_Control, Qt::Key_P}, S_OK, nothing},
        {{Qt::Key_Control, Qt::Key_N}, S_OK, nothing},
        {{Qt::Key_Control, Qt::Key_X}, E_NOTIMPL, nothing},
        {{Qt::Key_Control, Qt::Key_F4}, E_NOTIMPL, nothing},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(pressed(row.held), row.result) << row.held.back();
        EXPECT_EQ(done(), row.done) << row.held.back();
    }
}

TEST_F(Keys, WithSeveralKeysHeldTheOrderOfTheTableDecides)
{
    offerAFile();
    struct Row {
        std::vector<int> held;
        long result;
        QStringList done;
    };
    const Row rows[] = {
        {{Qt::Key_F5, Qt::Key_Control, Qt::Key_C}, S_OK, nothing},
        {{Qt::Key_Control, Qt::Key_C, Qt::Key_D}, E_NOTIMPL, copyMessage},
        {{Qt::Key_Control, Qt::Key_F, Qt::Key_D}, S_OK, cut},
        {{Qt::Key_Control, Qt::Key_O, Qt::Key_F}, E_NOTIMPL, cancel},
        {{Qt::Key_Control, Qt::Key_P, Qt::Key_X}, S_OK, nothing},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(pressed(row.held), row.result) << row.held.back();
        EXPECT_EQ(done(), row.done) << row.held.back();
    }
}

TEST_F(Keys, ControlCAndVTogetherCopyAndDoNotPaste)
{
    offerAFile();
    EXPECT_EQ(pressed({Qt::Key_Control, Qt::Key_C, Qt::Key_V}), E_NOTIMPL);
    EXPECT_EQ(done(), copyMessage);
    EXPECT_TRUE(added().isEmpty());
}

TEST_F(Keys, ControlVAndDTogetherPasteAndDoNotCut)
{
    offerAFile();
    EXPECT_EQ(pressed({Qt::Key_Control, Qt::Key_D, Qt::Key_V}), S_OK);
    EXPECT_EQ(added(), QStringList{QStringLiteral("b.txt")});
    EXPECT_TRUE(acts.acts.isEmpty());
}

TEST_F(Keys, OnlyPressesCount)
{
    offerAFile();
    for (const int key : {Qt::Key_C, Qt::Key_V, Qt::Key_D, Qt::Key_F, Qt::Key_O, Qt::Key_F5})
        EXPECT_EQ(pressed({Qt::Key_Control, key}, QEvent::KeyRelease), E_NOTIMPL) << key;
    EXPECT_EQ(done(), nothing);
}

TEST_F(Keys, AReadOnlyNoteIsCopiedFromButNotCutOrPastedInto)
{
    note.m_readOnly = 1;
    offerAFile();
    EXPECT_EQ(pressed({Qt::Key_Control, Qt::Key_C}), E_NOTIMPL);
    EXPECT_EQ(done(), copyMessage);
    EXPECT_EQ(pressed({Qt::Key_Control, Qt::Key_D}), E_NOTIMPL);
    EXPECT_EQ(pressed({Qt::Key_Control, Qt::Key_V}), E_NOTIMPL);
    EXPECT_EQ(done(), nothing);
    EXPECT_EQ(pressed({Qt::Key_Control, Qt::Key_F}), E_NOTIMPL);
    EXPECT_EQ(done(), cancel);
}

TEST_F(Keys, DoCtrlCIsTheSameAsTheKey)
{
    EXPECT_EQ(keys.DoCtrlC(), E_NOTIMPL);
    EXPECT_EQ(done(), copyMessage);
}

TEST_F(Keys, DoCtrlDIsTheSameAsTheKey)
{
    EXPECT_EQ(keys.DoCtrlD(), S_OK);
    EXPECT_EQ(done(), cut);
    note.m_readOnly = 1;
    EXPECT_EQ(keys.DoCtrlD(), E_NOTIMPL);
    EXPECT_EQ(done(), nothing);
}
