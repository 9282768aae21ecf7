#pragma once

#include <QCoreApplication>
#include <QProcess>
#include <QStringList>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

/// Runs the tests of that filter again, in a process of their own that starts with these variables
/// set and these arguments, and fails with what it says. It does not go on from there.
inline void runAgain(const QString& filter,
    const std::vector<std::pair<QString, QString>>& variables, const QStringList& arguments = {})
{
    const QString guard = QStringLiteral("NOMAR_TEST_AGAIN");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    ASSERT_FALSE(environment.contains(guard)) << "the process is not as it was asked for";
    environment.insert(guard, QStringLiteral("1"));
    environment.remove(QStringLiteral("GTEST_OUTPUT")); // The report is the first run's.
    for (const auto& [name, value] : variables)
        environment.insert(name, value);
    QProcess again;
    again.setProcessEnvironment(environment);
    again.setProcessChannelMode(QProcess::MergedChannels);
    again.start(QCoreApplication::applicationFilePath(),
        QStringList(QStringLiteral("--gtest_filter=") + filter) + arguments);
    ASSERT_TRUE(again.waitForFinished(120000)) << qPrintable(again.errorString());
    EXPECT_EQ(again.exitCode(), 0) << again.readAll().toStdString();
}
