#pragma once

#include <QJsonValue>
#include <QString>
#include <QWebSocket>

/// The page of a running host, through the engine's debugging protocol: only to look, never to act.
class DevTools {
public:
    /// Connects to the first page that the engine at that port has. False: none within the time.
    bool attach(int port, int milliseconds = 20'000);
    void detach();

    /// Value of a JavaScript expression in the top document of the page; undefined when it throws
    /// or the page is gone.
    QJsonValue evaluate(const QString& script);

private:
    QString pageAddress(int port);

    QWebSocket m_socket;
    int m_lastId = 0;
};
