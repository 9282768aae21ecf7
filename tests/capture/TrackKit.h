#pragma once

#include "capture/RectPrint.h"

#include "capture/CMyTracker.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// Tells in words what the tracker calls during a tracking.
class TellingTracker : public CMyTracker {
public:
    std::vector<std::string> calls;

    void DrawTrackerRect(const CaptureRect& shown, QWidget*, DragFrame*, QWidget*) override
    {
        calls.push_back((!erase              ? "draw "
                                : eraseFinal ? "last "
                                             : "erase ")
            + std::to_string(shown.left));
    }
    void OnChangedRect(const CaptureRect& rectOld) override
    {
        calls.push_back("changed " + std::to_string(rectOld.left));
    }
};

/// Counts what it sees.
class TrackedWindow : public QWidget {
public:
    std::map<QEvent::Type, int> seen;
    std::function<void(QEvent*)> onEvent;

protected:
    bool event(QEvent* event) override
    {
        ++seen[event->type()];
        if (onEvent)
            onEvent(event);
        return QWidget::event(event);
    }
};

class TrackHandle : public ::testing::Test {
protected:
    using Calls = std::vector<std::string>;
    static constexpr CaptureRect start{100, 100, 200, 150};

    TrackHandle()
    {
        window->setMouseTracking(true);
        window->resize(400, 300);
        window->show();
        tracker.style = 81;
        tracker.rect = start;
        tracker.invertAllow = true;
    }
    ~TrackHandle() override { EXPECT_EQ(QWidget::mouseGrabber(), nullptr); }

    /// What the user does next, in this order, once the tracking runs.
    void Mouse(QEvent::Type type, const QPoint& at, Qt::MouseButton button = Qt::NoButton)
    {
        QCoreApplication::postEvent(window.get(),
            new QMouseEvent(type, at, window->mapToGlobal(QPointF(at)), button, Qt::LeftButton,
                Qt::NoModifier));
    }
    void Move(const QPoint& to) { Mouse(QEvent::MouseMove, to); }
    void Release(const QPoint& at) { Mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton); }
    void Key(int key)
    {
        QCoreApplication::postEvent(
            window.get(), new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier));
    }
    void Do(std::function<void()> what)
    {
        QMetaObject::invokeMethod(&queue, std::move(what), Qt::QueuedConnection);
    }
    bool Track(TrackerHit hit, const QPoint& at)
    {
        // A tracking that does not end is a failure and no reason to wait.
        QTimer late;
        late.setSingleShot(true);
        QObject::connect(&late, &QTimer::timeout, [] {
            ADD_FAILURE() << "the tracking goes on";
            if (QWidget* grabber = QWidget::mouseGrabber())
                grabber->releaseMouse();
        });
        late.start(10000);
        return tracker.TrackHandle(hit, window.get(), at);
    }

    QObject queue;
    std::unique_ptr<TrackedWindow> window = std::make_unique<TrackedWindow>();
    TellingTracker tracker;
};
