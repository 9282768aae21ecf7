#include "notestore/MhtReader.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <gtest/gtest.h>

namespace {

QMap<QString, QString> headersOf(const QJsonValue& value)
{
    QMap<QString, QString> headers;
    const QJsonObject object = value.toObject();
    for (auto it = object.begin(); it != object.end(); ++it)
        headers[it.key()] = it.value().toString();
    return headers;
}

QJsonObject runReader(const QString& path)
{
    QProcess python;
    python.start(
        QStringLiteral("python3"), {QStringLiteral(NOMAR_TEST_DATA "/mht-parts.py"), path});
    EXPECT_TRUE(python.waitForFinished(120'000));
    EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().toStdString();
    return QJsonDocument::fromJson(python.readAllStandardOutput()).object();
}

} // namespace

QString MhtFile::html() const
{
    QString text = parts.empty() ? QString() : QString::fromUtf8(parts[0].body);
    return text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

MhtFile readMht(const QString& path)
{
    const QJsonObject object = runReader(path);
    MhtFile file;
    file.type = object[u"type"].toString();
    file.rootType = object[u"rootType"].toString();
    file.headers = headersOf(object[u"headers"]);
    file.aroundParts = object[u"preamble"].toString();
    for (const QJsonValue defect : object[u"defects"].toArray())
        file.defects += defect.toString();
    file.longestLine = object[u"longest"].toInt();
    file.bareLineEnds = object[u"bare"].toInt();
    file.beyondAscii = object[u"beyondAscii"].toInt();
    for (const QJsonValue part : object[u"parts"].toArray()) {
        file.parts.push_back(
            {part[u"type"].toString(), part[u"charset"].toString(), headersOf(part[u"headers"]),
                QByteArray::fromBase64(part[u"body"].toString().toLatin1())});
    }
    return file;
}
