#include "support/TestStore.h"

#include "support/AppDirs.h"
#include "support/Log.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace {

// The logger keeps the place it had at its first line, so it is given one before any test runs.
class LogPlace : public testing::Environment {
public:
    void SetUp() override
    {
        SetAppDir(m_directory.path());
        ASSERT_TRUE(SingletonTemplate<CLog4C>::GetInstance());
        SetAppDir(QString());
    }

    QString file() const { return m_directory.filePath(QStringLiteral("NomarEditor.log")); }

private:
    QTemporaryDir m_directory;
};

LogPlace* const s_logPlace = new LogPlace;
[[maybe_unused]] auto* const s_registered = testing::AddGlobalTestEnvironment(s_logPlace);

const QString kRoom = QStringLiteral("(room)");

} // namespace

TestStore::TestStore()
{
    QDir().mkpath(store());
    SetAppDir(m_directory.path());
}

TestStore::~TestStore()
{
    SetAppDir(QString());
}

QString TestStore::appDir() const
{
    return m_directory.path() + u'/';
}

QString TestStore::store() const
{
    return m_directory.filePath(QStringLiteral("userdata/attachment"));
}

QString TestStore::path(const QString& name) const
{
    return store() + u'/' + name;
}

QStringList TestStore::names() const
{
    return QDir(store()).entryList(
        QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

QString TestStore::write(const QString& name, const QByteArray& bytes) const
{
    writeFile(path(name), bytes);
    return path(name);
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}

LoggedLines::LoggedLines()
{
    CLog4C::WriteQueued();
    m_start = QFile(s_logPlace->file()).size();
}

void LoggedLines::makeRoom() const
{
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(kRoom);
}

QStringList LoggedLines::take()
{
    CLog4C::WriteQueued();
    const QString text = QString::fromUtf8(readFile(s_logPlace->file()).sliced(m_start));
    m_start = QFile(s_logPlace->file()).size();
    QStringList messages;
    for (const QString& line : text.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts))
        messages += line.section(u' ', 3); // behind date, time and thread
    messages.removeAll(kRoom);
    return messages;
}
