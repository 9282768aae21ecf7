#include "reliability/browser/HostileNotes.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <functional>
#include <stdexcept>

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot be read: " + path.toStdString());
    return file.readAll();
}

void replaceEach(QString& text, const char* pattern,
    const std::function<QString(const QRegularExpressionMatch&)>& with)
{
    const QRegularExpression expression(QString::fromLatin1(pattern));
    for (auto match = expression.match(text); match.hasMatch();) {
        const QString found = with(match);
        text.replace(match.capturedStart(), match.capturedLength(), found);
        match = expression.match(text, match.capturedStart() + found.size());
    }
}

QString filledIn(QString html, int number, const QString& address, const QString& picture)
{
    html.replace(QStringLiteral("{R}"), QStringLiteral("top.hit(%1)").arg(number));
    html.replace(QStringLiteral("{P}"), QStringLiteral("top.postMessage(%1,`*`)").arg(number));
    html.replace(QStringLiteral("{A}"), QStringLiteral("%1/%2").arg(address).arg(number));
    html.replace(QStringLiteral("{S}"), picture);
    replaceEach(html, "\\{U\\+([0-9A-F]{4})\\}", [](const auto& match) {
        return QString(QChar(char16_t(match.captured(1).toUInt(nullptr, 16))));
    });
    replaceEach(html, "\\{(\\d+)\\*([^}]*)\\}",
        [](const auto& match) { return match.captured(2).repeated(match.captured(1).toInt()); });
    replaceEach(html, "\\{B64:([^}]*)\\}", [](const auto& match) {
        return QString::fromLatin1(match.captured(1).toUtf8().toBase64());
    });
    return html;
}

} // namespace

std::vector<HostileNote> hostileNotes(const QString& address, const QString& picture)
{
    std::vector<HostileNote> notes;
    const auto add = [&](const QString& kind, const QString& html) {
        const int number = int(notes.size()) + 1;
        notes.push_back({kind, filledIn(html, number, address, picture), number});
    };
    QString kind;
    const QString ours =
        QString::fromUtf8(contentOf(QStringLiteral(NOMAR_TEST_DATA "/hostile_notes.txt")));
    for (const QString& line : ours.split(u'\n')) {
        if (line.startsWith(QStringLiteral("== ")))
            kind = line.mid(3);
        else if (!line.isEmpty() && !line.startsWith(QStringLiteral("## ")))
            add(kind, line);
    }
    const QString others = qEnvironmentVariable("NOMAR_HOSTILE_NOTES");
    if (!others.isEmpty()) {
        for (const QJsonValue& each : QJsonDocument::fromJson(contentOf(others)).array()) {
            // What those run is for a person to see: a box, or a request.
            static const QRegularExpression box(QStringLiteral("\\b(?:alert|confirm|prompt)\\b"));
            QString html = each.toObject().value(u"payload").toString();
            add(QStringLiteral("others"), html.replace(box, QStringLiteral("top.hit")));
        }
    }
    return notes;
}
