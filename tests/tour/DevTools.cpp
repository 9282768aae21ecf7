#include "DevTools.h"

#include "Wait.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>

using namespace Qt::StringLiterals;

QString DevTools::pageAddress(int port)
{
    QTcpSocket socket;
    socket.connectToHost(u"127.0.0.1"_s, quint16(port));
    if (!socket.waitForConnected(500))
        return {};
    // The answer's addresses are made of the host that the question names.
    socket.write("GET /json HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(port)
        + "\r\nConnection: close\r\n\r\n");
    QByteArray answer;
    while (answer.count(']') == 0 && socket.waitForReadyRead(1000))
        answer += socket.readAll();
    const QJsonArray pages = QJsonDocument::fromJson(answer.mid(answer.indexOf('['))).array();
    for (const QJsonValue& page : pages)
        if (page[u"type"].toString() == u"page")
            return page[u"webSocketDebuggerUrl"].toString();
    return {};
}

bool DevTools::attach(int port, int milliseconds)
{
    detach();
    return waitUntil(
        [&] {
            if (m_socket.state() == QAbstractSocket::ConnectedState)
                return true;
            if (m_socket.state() == QAbstractSocket::UnconnectedState)
                if (const QString address = pageAddress(port); !address.isEmpty())
                    m_socket.open(QUrl(address));
            return false;
        },
        milliseconds);
}

void DevTools::detach()
{
    m_socket.abort();
}

QJsonValue DevTools::evaluate(const QString& script)
{
    const int id = ++m_lastId;
    QJsonValue value(QJsonValue::Undefined);
    bool answered = false;
    const auto connection = QObject::connect(
        &m_socket, &QWebSocket::textMessageReceived, &m_socket, [&](const QString& message) {
            const QJsonObject answer = QJsonDocument::fromJson(message.toUtf8()).object();
            if (answer[u"id"].toInt() != id)
                return;
            answered = true;
            value = answer[u"result"][u"result"][u"value"];
        });
    const QJsonObject parameters{
        {u"expression"_s, script}, {u"returnByValue"_s, true}, {u"awaitPromise"_s, true}};
    const QJsonObject request{
        {u"id"_s, id}, {u"method"_s, u"Runtime.evaluate"_s}, {u"params"_s, parameters}};
    m_socket.sendTextMessage(QString::fromUtf8(QJsonDocument(request).toJson()));
    waitUntil([&] { return answered || !m_socket.isValid(); }, 5000);
    QObject::disconnect(connection);
    return value;
}
