#pragma once

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <functional>

/// Looks at `holds` again and again, while events go on, until it is true. False: it did not become
/// so in time.
inline bool waitUntil(const std::function<bool()>& holds, int milliseconds = 10'000)
{
    const QDeadlineTimer deadline(milliseconds);
    while (!holds()) {
        if (deadline.hasExpired())
            return false;
        QEventLoop pause;
        QTimer::singleShot(20, &pause, &QEventLoop::quit);
        pause.exec();
    }
    return true;
}
