#pragma once

#include "capture/IconFiles.h"

#include "capture/CSTip.h"
#include "capture/CSToolbar.h"
#include "capture/IScreenCaptureNotify.h"
#include "capture/NomarNoteScreenCapture.h"
#include "capture/RectPrint.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>
#include <vector>

/// A picture in which no two neighbouring pixels are alike.
inline QImage patterned(const QSize& pixels, qreal ratio = 1)
{
    QImage image(pixels, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * 7 + y, y * 5 + x * 3, (x ^ y) * 11));
    }
    image.setDevicePixelRatio(ratio);
    return image;
}

/// A picture of the screen that the tests run on.
inline QImage patternedScreen()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    return patterned(
        (QSizeF(screen->size()) * screen->devicePixelRatio()).toSize(), screen->devicePixelRatio());
}

/// Keeps the pictures that a capture delivers.
class KeptPictures : public IScreenCaptureNotify {
public:
    void OnScreenCaptureComplet(const QImage& bitmap) override
    {
        pictures.push_back(bitmap);
        if (onPicture)
            onPicture();
    }
    std::vector<QImage> pictures;
    std::function<void()> onPicture;
};

/// The save dialog's answer; null cancels.
class KeptPath : public SaveImageDialog {
public:
    bool choose(QString& path) override
    {
        ++asked;
        if (onAsk)
            onAsk();
        if (answer.isNull())
            return false;
        path = answer;
        return true;
    }
    QString answer;
    std::function<void()> onAsk;
    int asked = 0;
};

/// The capture dialog with its insides in reach.
class OpenCapture : public NomarNoteScreenCapture {
public:
    using NomarNoteScreenCapture::NomarNoteScreenCapture;
    using NomarNoteScreenCapture::OnCommand;

    QRect toolbarRect() { return Toolbar().geometry(); }
    CSTip& tip() { return *findChild<CSTip*>(); }
    int cancels = 0, oks = 0;

protected:
    void OnCancel() override
    {
        ++cancels;
        NomarNoteScreenCapture::OnCancel();
    }
    void OnOK() override
    {
        ++oks;
        NomarNoteScreenCapture::OnOK();
    }
};

/// The user of a menu: when one comes up, keeps its texts and chooses the item of that text, or
/// none.
class MenuUser {
public:
    explicit MenuUser(const QString& item = {})
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this, item] { use(item); });
        m_timer.start(5);
    }
    QStringList texts;
    QPoint place;
    int menus = 0;
    std::function<void()> onMenu; ///< Before the choice.

private:
    void use(const QString& item)
    {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        ++menus;
        if (onMenu)
            onMenu();
        texts.clear();
        place = menu->pos();
        for (QAction* action : menu->actions()) {
            texts << action->text();
            if (action->text() == item)
                menu->setActiveAction(action);
        }
        QTest::keyClick(menu, item.isNull() ? Qt::Key_Escape : Qt::Key_Return);
    }

    QTimer m_timer;
};

/// Counts how often a widget is painted.
class Paints : public QObject {
public:
    explicit Paints(QWidget& widget) { widget.installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint;
        return false;
    }
};

class CaptureTest : public ::testing::Test {
protected:
    CaptureTest()
    {
        capture.notify = &kept;
        capture.saveDialog = &saved;
        EXPECT_TRUE(capture.Create(nullptr));
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&capture));
    }
    ~CaptureTest() override { EXPECT_EQ(QWidget::mouseGrabber(), nullptr); }

    void press(const QPoint& at, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(&capture, button, Qt::NoModifier, at);
    }
    void release(const QPoint& at, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseRelease(&capture, button, Qt::NoModifier, at);
    }
    void move(const QPoint& to) { QTest::mouseMove(&capture, to); }
    void rightClick(const QPoint& at)
    {
        press(at, Qt::RightButton);
        release(at, Qt::RightButton);
    }
    void doubleClick(const QPoint& at)
    {
        QTest::mouseDClick(&capture, Qt::LeftButton, Qt::NoModifier, at);
    }
    void key(Qt::Key which) { QTest::keyClick(&capture, which); }
    void draw(const QPoint& from, const QPoint& to)
    {
        press(from);
        move(to);
        release(to);
    }
    /// One move, and nothing else that waits.
    void moveAlone(const QPoint& at)
    {
        QMouseEvent event(QEvent::MouseMove, at, capture.mapToGlobal(QPointF(at)), Qt::NoButton,
            Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&capture, &event);
    }
    /// What comes while a tracking runs, in this order.
    void later(QEvent::Type type, const QPoint& at, Qt::MouseButton button = Qt::NoButton)
    {
        QCoreApplication::postEvent(&capture,
            new QMouseEvent(type, at, capture.mapToGlobal(QPointF(at)), button, Qt::LeftButton,
                Qt::NoModifier));
    }
    void laterMove(const QPoint& to) { later(QEvent::MouseMove, to); }
    void laterRelease(const QPoint& at) { later(QEvent::MouseButtonRelease, at, Qt::LeftButton); }
    void laterKey(Qt::Key which)
    {
        QCoreApplication::postEvent(
            &capture, new QKeyEvent(QEvent::KeyPress, which, Qt::NoModifier));
    }
    void laterDo(std::function<void()> what)
    {
        QMetaObject::invokeMethod(&capture, std::move(what), Qt::QueuedConnection);
    }
    void reopen()
    {
        if (!isOpen()) {
            ASSERT_TRUE(capture.Create(nullptr));
        }
    }
    /// Gives each command of `order` once, by its place there, and sees to what comes of it.
    void expectCommands(
        const std::vector<CaptureCommand>& order, const std::function<void(int)>& give)
    {
        QClipboard* clipboard = QGuiApplication::clipboard();
        for (int i = 0; i < int(order.size()); ++i) {
            SCOPED_TRACE(i);
            kept.pictures.clear();
            saved.asked = 0;
            clipboard->clear();
            reopen();
            draw(from, to);
            give(i);
            EXPECT_EQ(kept.pictures.size(), order[i] == captureComplete ? 1U : 0U);
            EXPECT_EQ(saved.asked, order[i] == captureSaveAs ? 1 : 0);
            EXPECT_EQ(!clipboard->image().isNull(), order[i] == captureCopy);
            // The save was cancelled.
            EXPECT_EQ(isOpen(), order[i] == captureSaveAs);
            if (isOpen())
                rightClick({600, 600});
        }
    }
    bool isOpen() const { return capture.isVisible(); }
    bool isToolbarShown() { return !capture.toolbarRect().isEmpty(); }
    QAbstractButton& button(int index)
    {
        return *capture.findChildren<QAbstractButton*>().at(index);
    }
    void click(QAbstractButton& which) { QTest::mouseClick(&which, Qt::LeftButton); }

    const OwnRes withoutFiles;
    QImage screen = patternedScreen();
    KeptPictures kept;
    KeptPath saved;
    OpenCapture capture{screen};
    /// A selection of 100 by 80 at (304, 304).
    const QPoint from{300, 300}, to{404, 384};
    const CaptureRect selected{304, 304, 404, 384};
    const CaptureRect nothing{};
};
