#include "noteattach/AttachList.h"

#include "noteattach/Elements.h"
#include "noteattach/ModifyTimes.h"
#include "support/FailingNew.h"
#include "support/TestStore.h"
#include "support/TimeText.h"

#include <gtest/gtest.h>

using namespace noteattach;

namespace {

const QString kGuid = QStringLiteral("0123456789abcdef0123456789abcdef");
const QString kPicture = QStringLiteral("aa.png");
const QString kFile = QStringLiteral("bb.pdf");
const QString kCard = QStringLiteral("cc.bmp");

class AttachListTest : public testing::Test {
protected:
    NewAttachFile classRecord(const QString& fileName, const QString& origName) const
    {
        NewAttachFile record = srcRecord(fileName);
        record.origName = origName;
        record.fileType = 2;
        record.isSrcFile = 0;
        if (!origName.isEmpty())
            record.filePath = m_store.path(kGuid + u'/' + origName);
        return record;
    }

    NewAttachFile srcRecord(const QString& fileName) const
    {
        NewAttachFile record;
        record.fileType = 1;
        record.isSrcFile = 1;
        record.fileName = fileName;
        record.fileExt = fileName.section(u'.', -1);
        record.filePath = m_store.path(fileName);
        return record;
    }

    std::vector<NewAttachFile> parse(const QString& html)
    {
        std::vector<NewAttachFile> list{srcRecord(QStringLiteral("stale"))};
        EXPECT_EQ(ParseAttList(kGuid, html, list, nullptr), 1);
        return list;
    }

    using List = std::vector<NewAttachFile>;
    TestStore m_store;
};

} // namespace

void PrintTo(const NewAttachFile& record, std::ostream* out)
{
    *out << record.fileType << ' ' << record.fileName.toStdString() << " ("
         << record.origName.toStdString() << ") at " << record.filePath.toStdString();
}

TEST_F(AttachListTest, ANoteWithoutAnyElementGivesAnEmptyList)
{
    EXPECT_EQ(parse(QString()), List());
    EXPECT_EQ(parse(QStringLiteral("<p>text</p>")), List());
    EXPECT_TRUE(m_store.names().isEmpty());
}

TEST_F(AttachListTest, AnElementWithoutExDataIsNoAttachment)
{
    EXPECT_EQ(
        parse(QStringLiteral("<img class=\"userdata\\attachment\\a.png\" src=\"b.png\">")), List());
}

TEST_F(AttachListTest, AFileGivesItsRecordAndThatOfItsCard)
{
    const QString name = QStringLiteral("报告.pdf");
    EXPECT_EQ(
        parse(attachment(kFile, kCard, name)), (List{classRecord(kFile, name), srcRecord(kCard)}));
    EXPECT_EQ(m_store.names(), QStringList(kGuid)); // the note's folder is made
}

TEST_F(AttachListTest, WithoutAClassThereIsTheShownFileAlone)
{
    EXPECT_EQ(parse(QStringLiteral("<img src='x\\%1' nm_exdata='%2'>")
                        .arg(kCard, FormatOrigNameToJson(QStringLiteral("a")))),
        List{srcRecord(kCard)});
}

TEST_F(AttachListTest, WithoutASourceThereIsTheAttachmentAlone)
{
    const QString name = QStringLiteral("a.pdf");
    EXPECT_EQ(parse(QStringLiteral("<img class='x\\%1' nm_exdata='%2'>")
                        .arg(kFile, FormatOrigNameToJson(name))),
        List{classRecord(kFile, name)});
}

TEST_F(AttachListTest, TheSamePictureTwiceGivesTwoRecords)
{
    const QString element = attachment(kPicture, kPicture, QStringLiteral("p.png"));
    EXPECT_EQ(parse(element + element),
        (List{classRecord(kPicture, QStringLiteral("p.png")), srcRecord(kPicture)}));
}

TEST_F(AttachListTest, ASecondNameOfTheSamePictureIsLost)
{
    EXPECT_EQ(parse(attachment(kPicture, kPicture, QStringLiteral("one.png"))
                  + attachment(kPicture, kPicture, QStringLiteral("two.png"))),
        (List{classRecord(kPicture, QStringLiteral("one.png")), srcRecord(kPicture)}));
}

TEST_F(AttachListTest, ASecondNameOfTheSameFileIsKept)
{
    EXPECT_EQ(parse(attachment(kFile, kCard, QStringLiteral("one.pdf"))
                  + attachment(kFile, QStringLiteral("dd.bmp"), QStringLiteral("two.pdf"))),
        (List{classRecord(kFile, QStringLiteral("one.pdf")), srcRecord(kCard),
            classRecord(kFile, QStringLiteral("two.pdf")), srcRecord(QStringLiteral("dd.bmp"))}));
}

TEST_F(AttachListTest, ASecondNameOfTheSameFileWithTheSameCardGivesThreeRecords)
{
    EXPECT_EQ(parse(attachment(kFile, kCard, QStringLiteral("one.pdf"))
                  + attachment(kFile, kCard, QStringLiteral("two.pdf"))),
        (List{classRecord(kFile, QStringLiteral("one.pdf")), srcRecord(kCard),
            classRecord(kFile, QStringLiteral("two.pdf"))}));
}

TEST_F(AttachListTest, SlashesAndBackslashesAreTheSame)
{
    const QString exData = FormatOrigNameToJson(QStringLiteral("n.pdf"));
    const List expected{classRecord(kFile, QStringLiteral("n.pdf")), srcRecord(kCard)};
    for (const QString& prefix : {QStringLiteral("userdata/attachment/"),
             QStringLiteral("..\\userdata/attachment\\"), QStringLiteral("a/b\\"), QString()})
        EXPECT_EQ(parse(QStringLiteral("<img class='%1%2' src='%1%3' nm_exdata='%4'>")
                            .arg(prefix, kFile, kCard, exData)),
            expected)
            << prefix.toStdString();
}

TEST_F(AttachListTest, AClassWithABlankIsOneName)
{
    const QString name = QStringLiteral("two words.pdf");
    EXPECT_EQ(parse(QStringLiteral("<img class='x\\%1' nm_exdata='%2'>")
                        .arg(name, FormatOrigNameToJson(name))),
        List{classRecord(name, name)});
}

TEST_F(AttachListTest, ExDataThatIsNoJsonGivesARecordWithoutAName)
{
    for (const QString& exData : {QStringLiteral("x"), QString(), QStringLiteral("[]")})
        EXPECT_EQ(parse(QStringLiteral("<img class='x\\%1' src='y/%2' nm_exdata='%3'>")
                            .arg(kFile, kCard, exData)),
            (List{classRecord(kFile, QString()), srcRecord(kCard)}));
}

TEST_F(AttachListTest, PathsThatEndInASeparatorGiveNoRecord)
{
    EXPECT_EQ(parse(QStringLiteral("<img class='x\\' src='y/' nm_exdata='{}'>")), List());
}

TEST_F(AttachListTest, ANameWithoutADotIsItsOwnExtension)
{
    const List list = parse(attachment(QStringLiteral("digest"), kCard, QStringLiteral("README")));
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].fileExt, QStringLiteral("digest"));
}

TEST_F(AttachListTest, AHostileNameNeverLeadsOutOfTheStore)
{
    for (const QString& name : {QStringLiteral("../../../etc/passwd"), QStringLiteral(".."),
             QStringLiteral("."), QStringLiteral("a\\b"), QString(300, u'x')}) {
        const List list = parse(attachment(kFile, kCard, name));
        ASSERT_EQ(list.size(), 2u);
        EXPECT_EQ(list[0].origName, name);
        EXPECT_EQ(list[0].filePath, QString());
    }
    EXPECT_EQ(parse(attachment(QStringLiteral(".."), kCard, QString()))[0].filePath, QString());
    EXPECT_TRUE(m_store.names().isEmpty());
}

TEST_F(AttachListTest, ADocumentOfFramesHasNoAttachmentsAndLeavesThePlainTextAlone)
{
    List list;
    QString plain = QStringLiteral("before");
    EXPECT_EQ(ParseAttList(kGuid,
                  QStringLiteral("<frameset></frameset>") + attachment(kFile, kCard, kFile), list,
                  &plain),
        1);
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(plain, QStringLiteral("before"));
}

TEST_F(AttachListTest, ThePlainTextIsThatOfTheBody)
{
    List list;
    QString plain;
    EXPECT_EQ(ParseAttList(kGuid, QStringLiteral("<p>a &amp; b</p>"), list, &plain), 1);
    EXPECT_EQ(plain, QStringLiteral("a & b"));
    EXPECT_EQ(ParseAttList(kGuid, attachment(kFile, kCard, kFile), list, &plain), 1);
    EXPECT_EQ(plain, QString());
}

// The list may keep rows of the unfinished scan then, which the caller is told to expect.
TEST_F(AttachListTest, AFailureOnTheWayIsLoggedAndGivesZero)
{
    const QString html = attachment(kPicture, kPicture, QStringLiteral("p.png")).repeated(3);
    LoggedLines lines;
    int failures = 0;
    for (long allowed = 0;; ++allowed) {
        List list;
        int result;
        lines.makeRoom();
        {
            const FailingNew failing(allowed);
            result = ParseAttList(kGuid, html, list, nullptr);
        }
        if (result == 1) {
            EXPECT_EQ(list.size(), 2u);
            break;
        }
        ++failures;
    }
    EXPECT_GT(failures, 0);
    EXPECT_EQ(lines.take(),
        QStringList(failures, QStringLiteral("[ERROR] 解析html字串，获取附件列表失败！")));
}

TEST_F(AttachListTest, AFailedScanLeavesTheRowOfAPicture)
{
    const QString html = attachment(kPicture, kPicture, QStringLiteral("p.png"));
    bool seen = false;
    for (long allowed = 0; !seen; ++allowed) {
        List list;
        {
            const FailingNew failing(allowed);
            if (ParseAttList(kGuid, html, list, nullptr))
                break;
        }
        if (list.size() == 1 && list[0].isSrcFile == 0) {
            seen = true;
            EXPECT_EQ(list[0].fileName, kPicture);
            EXPECT_EQ(list[0].filePath, m_store.path(kPicture));
            EXPECT_EQ(list[0].fileType, 1);
            EXPECT_EQ(list[0].origName, QString());
        }
    }
    EXPECT_TRUE(seen);
}

TEST_F(AttachListTest, ThousandsOfAttachmentsKeepTheirOrder)
{
    QString html;
    List expected;
    for (int i = 0; i < 3000; ++i) {
        const QString number = QString::number(i);
        const QString name = number + QStringLiteral(".pdf");
        const QString card = number + QStringLiteral(".bmp");
        html += attachment(name, card, name);
        expected.push_back(classRecord(name, name));
        expected.push_back(srcRecord(card));
    }
    EXPECT_EQ(parse(html), expected);
}

TEST(ParseAttOrigFileNameList, AppendsEveryNameRepeatedOnesToo)
{
    const QString element = attachment(kFile, kCard, QStringLiteral("a.pdf"));
    std::vector<QString> names{QStringLiteral("x")};
    EXPECT_EQ(ParseAttOrigFileNameList(element + QStringLiteral("<img src='y'>")
                      + attachment(kFile, kCard, QString()) + element
                      + QStringLiteral("<img nm_exdata='no json'>"),
                  names),
        1);
    EXPECT_EQ(names,
        (std::vector<QString>{
            QStringLiteral("x"), QStringLiteral("a.pdf"), QStringLiteral("a.pdf")}));
}

TEST(ParseAttOrigFileNameList, AFailureOnTheWayIsLoggedAndGivesZero)
{
    std::vector<QString> names;
    LoggedLines lines;
    lines.makeRoom();
    int result;
    {
        const FailingNew failing(0);
        result = ParseAttOrigFileNameList(attachment(kFile, kCard, kFile), names);
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ(lines.take(),
        QStringList(QStringLiteral("[ERROR] 解析html字串，获取附件原文件名列表失败！")));
}

TEST_F(AttachListTest, GetAttachFileFromHtmlGivesTheAttachmentsThatExist)
{
    const QString here = QStringLiteral("here.pdf");
    const QString html = QStringLiteral("text") + attachment(kFile, kCard, here)
        + attachment(kPicture, kPicture, QStringLiteral("gone.png"));
    m_store.write(kCard, "shown files are not asked for");
    QDir(m_store.store()).mkdir(kGuid);
    const QString path = m_store.write(kGuid + u'/' + here, "x");
    std::vector<QString> paths;
    QString plain;
    GetAttachFileFromHtml(kGuid, html, paths, &plain);
    EXPECT_EQ(paths, std::vector<QString>{path});
    EXPECT_EQ(plain, QStringLiteral("text"));
}

// A paste notes the time of a card so, and no record of a list has such a key.
TEST_F(AttachListTest, ACardThatIsInTheBookUnderItsNameTwiceGetsTheTimeOfTheCall)
{
    const QString name = QStringLiteral("a.pdf");
    const QString then = QStringLiteral("2001-02-03 04:05:06");
    List list = parse(attachment(kFile, kCard, name));
    ASSERT_EQ(list.size(), 2u);
    const QString before = FormatNowTime();
    UpdateAttModifyTimeField(kGuid, list, {{kFile + name, then}, {kCard + kCard, then}});
    EXPECT_EQ(list[0].modifyTime, then);
    EXPECT_LE(before, list[1].modifyTime);
    EXPECT_LE(list[1].modifyTime, FormatNowTime());
}

TEST(UpdateAttModifyTimeField, TakesTheTimeOfTheCacheAndElseOfTheCall)
{
    NewAttachFile file;
    file.fileName = kFile;
    file.origName = QStringLiteral("a.pdf");
    NewAttachFile card;
    card.fileName = kCard;
    NewAttachFile note;
    note.fileName = QStringLiteral("dd.html");
    const QString then = QStringLiteral("2001-02-03 04:05:06");
    const AttachModifyCache cache{{file.fileName + file.origName, then}, {kCard, then},
        {QStringLiteral("dd.htmldd.html"), then}}; // a key that no record has

    std::vector<NewAttachFile> list{note, file, card};
    const QString before = FormatNowTime();
    UpdateAttModifyTimeField(kGuid, list, cache);
    EXPECT_EQ(list[1].modifyTime, then);
    EXPECT_EQ(list[2].modifyTime, then);
    EXPECT_LE(before, list[0].modifyTime);
    EXPECT_LE(list[0].modifyTime, FormatNowTime());

    std::vector<NewAttachFile> none;
    UpdateAttModifyTimeField(kGuid, none, cache);
    EXPECT_TRUE(none.empty());
}
