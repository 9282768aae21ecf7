#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

/// Runs the event loop until `condition` holds; false if it does not within `ms`.
template <typename Condition> bool waitFor(Condition condition, int ms = 20000)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.elapsed() > ms)
            return false;
        QEventLoop loop;
        QTimer::singleShot(2, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}
