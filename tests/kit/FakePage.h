#pragma once

#include "support/AppDirs.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// A page of the test's own in the place of the real one, for its lifetime: a failure must be
/// forced where the real page would not fail. `script` may use `calls`, the list of "method
/// argument" that arrived, and define `answer(method, argument)`, whose result goes back.
class FakePage {
public:
    explicit FakePage(const QString& script)
    {
        QDir(m_dir.path()).mkdir(QStringLiteral("nmeditor"));
        QFile file(m_dir.filePath(QStringLiteral("nmeditor/index.html")));
        if (file.open(QIODevice::WriteOnly))
            file.write((
                QStringLiteral("<!DOCTYPE html><meta charset=\"utf-8\"><body>"
                               "<textarea id=\"t\" autofocus></textarea><script>"
                               "const calls = [];"
                               "let answer = () => '{\"result\":true,\"errmsg\":\"\"}';"
                               "const ok = (o) => JSON.stringify({result: true, errmsg: '', ...o});"
                               "window.jsProcessor = (method, argument) => {"
                               "  calls.push(method + ' ' + argument);"
                               "  return answer(method, argument); };"
                               "window.nomarPagePrivate = () => ok();")
                + script + QStringLiteral("; nomarPrivate.post('ready', '');</script>"))
                           .toUtf8());
        file.close();
        SetInstallDir(m_dir.path());
    }
    ~FakePage() { SetInstallDir(m_old); }

private:
    QString m_old = GetInstallDir();
    QTemporaryDir m_dir;
};
