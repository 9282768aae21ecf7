#include "Chinese.h"

#include <QDir>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QByteArrayList textsOfTheWindow()
{
    static const QRegularExpression call(u"\\btr\\(\\s*\"([^\"]*)\""_s);
    QByteArrayList texts;
    const QDir sources(QStringLiteral(NOMAR_HOST_DIR));
    for (const QString& name : sources.entryList({u"*.cpp"_s, u"*.h"_s})) {
        QFile file(sources.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QString code = QString::fromUtf8(file.readAll());
        for (auto found = call.globalMatch(code); found.hasNext();)
            texts += found.next().captured(1).toUtf8();
    }
    return texts;
}

} // namespace

TEST(Chinese, EveryTextOfTheWindowIsTranslatedWithTheSamePlaceholders)
{
    const Chinese chinese;
    const QByteArrayList texts = textsOfTheWindow();
    ASSERT_GT(texts.size(), 15);
    for (const QByteArray& text : texts) {
        const QString translated = chinese.translate("", text, nullptr, -1);
        EXPECT_FALSE(translated.isEmpty()) << text.constData();
        EXPECT_EQ(translated.count(u'%'), text.count('%')) << text.constData();
    }
}

TEST(Chinese, UnknownTextStaysAsItIs)
{
    EXPECT_TRUE(Chinese().translate("", "Not a text of this window", nullptr, -1).isNull());
    EXPECT_TRUE(Chinese().translate("", "", nullptr, -1).isNull());
}
