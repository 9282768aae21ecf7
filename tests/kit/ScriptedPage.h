#pragma once

#include "bridge/NotePage.h"

#include <QStringList>

#include <deque>
#include <functional>
#include <utility>
#include <vector>

/// A page that answers what it was told to, in order; an exhausted script answers success.
class ScriptedPage : public NotePage {
public:
    struct Answer {
        long code = S_OK;
        QString reply;
    };

    std::deque<Answer> answers;
    bool back = true;
    std::function<void()> onWait; ///< Runs while the bridge waits for a page that died.
    std::function<void()> onCall; ///< Runs while a call is in flight.
    std::vector<std::pair<QString, QString>> calls; ///< Method and argument, or kind and text.
    QStringList order; ///< Calls and posts, in order.

    void answer(long code, const QString& reply = {}) { answers.push_back({code, reply}); }

    long call(const QString& method, const QString& argument, QString& reply) override
    {
        calls.emplace_back(method, argument);
        order.append(method);
        if (const auto act = onCall) // A copy: it may take itself away.
            act();
        Answer next{S_OK, QStringLiteral("{\"result\":true,\"errmsg\":\"\"}")};
        if (!answers.empty()) {
            next = answers.front();
            answers.pop_front();
        }
        reply = next.reply;
        return next.code;
    }

    long request(const QString& kind, const QString& text, QString& reply) override
    {
        return call(kind, text, reply);
    }

    bool waitUntilBack() override
    {
        if (const auto act = onWait)
            act();
        return back;
    }

    void post(int message) override { order.append(QString::number(message)); }
    QWidget* window() const override { return nullptr; }
};
