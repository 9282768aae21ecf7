#pragma once

#include "kit/ScriptedPage.h"

#include "support/Json.h"
#include "support/Text.h"

#include <QWidget>

#include <json/json.h>

#include <map>

/// A page that holds a note and puts attachments at its end, as the real page does. A method that
/// is in `forced` answers that instead, and does nothing.
class NotePageOf : public ScriptedPage {
public:
    QString html;
    std::map<QString, Answer> forced;
    QWidget browser;

    /// How often a method was called.
    int count(const QString& method) const { return int(order.count(method)); }
    /// The arguments of the attachments that arrived.
    std::vector<Json::Value> added() const
    {
        std::vector<Json::Value> arguments;
        for (const auto& [method, argument] : calls) {
            if (method == u"AddPicToEditor")
                arguments.push_back(parsed(argument));
        }
        return arguments;
    }

    long call(const QString& method, const QString& argument, QString& reply) override
    {
        calls.emplace_back(method, argument);
        order.append(method);
        if (onCall)
            onCall();
        if (const auto answer = forced.find(method); answer != forced.end()) {
            reply = answer->second.reply;
            return answer->second.code;
        }
        Json::Value value;
        value["result"] = true;
        value["errmsg"] = "";
        if (method == u"GetEditorContent")
            value["ehtml"] = WideToAnsi(html);
        else if (method == u"AddPicToEditor")
            html += element(parsed(argument));
        reply = AnsiToWide(Json::FastWriter().write(value));
        return S_OK;
    }

    QWidget* window() const override { return const_cast<QWidget*>(&browser); }

private:
    static Json::Value parsed(const QString& json)
    {
        Json::Value value;
        Json::Reader().parse(WideToAnsi(json), value);
        return value;
    }
    static QString element(const Json::Value& fields)
    {
        const auto field = [&](const char* name) {
            return AnsiToWide(fields[name].asString()).replace(u'"', QStringLiteral("&quot;"));
        };
        return QStringLiteral("<img class=\"%1\" src=\"%2\" nm_exdata=\"%3\">")
            .arg(field("strData"), field("picpath"), field("exdata"));
    }
};
