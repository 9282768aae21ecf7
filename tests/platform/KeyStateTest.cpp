#include "platform/KeyState.h"
#include "kit/Print.h"

#include <QKeyEvent>

#include <gtest/gtest.h>

namespace {

QKeyEvent press(int key, Qt::KeyboardModifiers modifiers = {})
{
    return QKeyEvent(QEvent::KeyPress, key, modifiers);
}

QKeyEvent release(int key, bool repeated = false)
{
    return QKeyEvent(QEvent::KeyRelease, key, Qt::NoModifier, QString(), repeated);
}

// The same key of a keyboard with a Cyrillic layout: C while control is held.
constexpr quint32 scanCodeOfC = 54;
constexpr int cyrillicEs = 0x0421;

QKeyEvent pressOfC(int key, Qt::KeyboardModifiers modifiers, bool repeated = false)
{
    return QKeyEvent(QEvent::KeyPress, key, modifiers, scanCodeOfC, 0, 0, QString(), repeated);
}

QKeyEvent releaseOfC(int key, Qt::KeyboardModifiers modifiers, bool repeated = false)
{
    return QKeyEvent(QEvent::KeyRelease, key, modifiers, scanCodeOfC, 0, 0, QString(), repeated);
}

} // namespace

TEST(VirtualKey, LettersAndFunctionKeysHaveTheirNumbers)
{
    EXPECT_EQ(VirtualKey(Qt::Key_S), 83);
    EXPECT_EQ(VirtualKey(Qt::Key_F4), 115);
    EXPECT_EQ(VirtualKey(Qt::Key_F5), 0x74);
    EXPECT_EQ(VirtualKey(Qt::Key_Control), VK_CONTROL);
    EXPECT_EQ(VirtualKey(Qt::Key_Left), 0);
}

TEST(KeyState, AKeyIsDownFromPressToRelease)
{
    KeyState keys;
    keys.press(press(Qt::Key_C));
    EXPECT_TRUE(keys.isDown('C'));
    keys.release(release(Qt::Key_C, true));
    EXPECT_TRUE(keys.isDown('C')) << "an automatic repeat is no release";
    keys.release(release(Qt::Key_C));
    EXPECT_FALSE(keys.isDown('C'));
}

TEST(KeyState, ControlHeldSinceBeforeTheFocusCameCounts)
{
    KeyState keys;
    keys.press(press(Qt::Key_S, Qt::ControlModifier));
    EXPECT_TRUE(keys.isDown(VK_CONTROL));
}

TEST(KeyState, ControlReleasedElsewhereIsForgottenAtTheNextKey)
{
    KeyState keys;
    keys.press(press(Qt::Key_Control, Qt::ControlModifier));
    keys.press(press(Qt::Key_S));
    EXPECT_FALSE(keys.isDown(VK_CONTROL));
}

TEST(KeyState, LossOfFocusForgetsAll)
{
    KeyState keys;
    keys.press(press(Qt::Key_V, Qt::ControlModifier));
    keys.clear();
    EXPECT_FALSE(keys.isDown('V'));
    EXPECT_FALSE(keys.isDown(VK_CONTROL));
}

TEST(KeyState, AKeyThatIsAnotherOneWithoutControlIsReleasedBehindControl)
{
    KeyState keys;
    keys.press(press(Qt::Key_Control, Qt::ControlModifier));
    keys.press(pressOfC(Qt::Key_C, Qt::ControlModifier));
    keys.release(release(Qt::Key_Control));
    EXPECT_FALSE(keys.isDown(VK_CONTROL));
    EXPECT_TRUE(keys.isDown('C'));
    keys.release(releaseOfC(cyrillicEs, Qt::NoModifier));
    EXPECT_FALSE(keys.isDown('C'));
}

TEST(KeyState, AKeyThatIsAnotherOneWithoutControlIsReleasedAheadOfControl)
{
    KeyState keys;
    keys.press(press(Qt::Key_Control, Qt::ControlModifier));
    keys.press(pressOfC(Qt::Key_C, Qt::ControlModifier));
    keys.release(releaseOfC(Qt::Key_C, Qt::ControlModifier));
    EXPECT_FALSE(keys.isDown('C'));
    EXPECT_TRUE(keys.isDown(VK_CONTROL));
    keys.release(release(Qt::Key_Control));
    EXPECT_FALSE(keys.isDown(VK_CONTROL));
}

TEST(KeyState, AKeyPressedAheadOfControlCountsByTheNameItsRepeatHas)
{
    KeyState keys;
    keys.press(pressOfC(cyrillicEs, Qt::NoModifier));
    EXPECT_FALSE(keys.isDown('C'));
    keys.press(press(Qt::Key_Control, Qt::ControlModifier));
    keys.press(pressOfC(Qt::Key_C, Qt::ControlModifier, true));
    EXPECT_TRUE(keys.isDown('C'));
    keys.release(releaseOfC(Qt::Key_C, Qt::ControlModifier));
    EXPECT_FALSE(keys.isDown('C'));
}

TEST(KeyState, AnAutomaticRepeatUnderAnotherNameIsNeitherAReleaseNorTheEndOfTheKey)
{
    KeyState keys;
    keys.press(pressOfC(Qt::Key_C, Qt::ControlModifier));
    keys.release(releaseOfC(cyrillicEs, Qt::NoModifier, true));
    keys.press(pressOfC(cyrillicEs, Qt::NoModifier, true));
    EXPECT_TRUE(keys.isDown('C'));
    keys.release(releaseOfC(cyrillicEs, Qt::NoModifier));
    EXPECT_FALSE(keys.isDown('C'));
}

TEST(KeyState, APressUnderAnotherNameReplacesThePressWhoseReleaseWasLost)
{
    KeyState keys;
    keys.press(pressOfC(Qt::Key_C, Qt::ControlModifier));
    keys.press(pressOfC(cyrillicEs, Qt::NoModifier));
    EXPECT_FALSE(keys.isDown('C'));
}

TEST(KeyState, OneNameOfTwoKeysIsDownUntilBothAreReleased)
{
    KeyState keys;
    keys.press(press(Qt::Key_C));
    keys.press(pressOfC(Qt::Key_C, Qt::NoModifier));
    keys.release(releaseOfC(Qt::Key_C, Qt::NoModifier));
    EXPECT_TRUE(keys.isDown('C'));
    keys.release(release(Qt::Key_C));
    EXPECT_FALSE(keys.isDown('C'));
}
