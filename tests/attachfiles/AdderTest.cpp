#include "kit/AddingFixture.h"

#include "attachstore/EntryRules.h"

#include <QImage>
#include <QRegularExpression>

#include <sys/stat.h>

namespace {

const QString folderText = QStringLiteral("暂不支持文件夹粘贴！");
const QString emptyText = QStringLiteral("不能上传文件大小为0的附件！");
const QString limitText = QStringLiteral("最大支持上传10M附件！");
const QString totalText = QStringLiteral("获取笔记编辑器附件总大小失败！");

constexpr quint64 limit = attachstore::attachLimit;

bool isTime(const QString& text)
{
    static const QRegularExpression form(
        QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d$"));
    return form.match(text).hasMatch();
}

} // namespace

// --- Rules and messages ---

TEST_F(AddDropFileToEditor, AReadOnlyNoteIsLeftAloneWithoutAMessage)
{
    note.m_readOnly = 1;
    adder->AddDropFileToEditor({record(file(QStringLiteral("a.txt")))});
    EXPECT_TRUE(page.order.isEmpty());
    EXPECT_TRUE(boxes.texts.isEmpty());
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(AddDropFileToEditor, WithoutTheTotalNothingIsAdded)
{
    page.html = element(QStringLiteral("unknown.doc"), QStringLiteral("报告.doc"));
    adder->AddDropFileToEditor({record(file(QStringLiteral("a.txt")))});
    EXPECT_EQ(boxes.texts, QStringList{totalText});
    EXPECT_EQ(log.take(),
        QStringList({QStringLiteral("[ERROR] 查询报告.doc附件大小失败！"),
            QStringLiteral("[ERROR] 获取笔记编辑器附件总大小失败！")}));
    EXPECT_TRUE(added().isEmpty());
    EXPECT_FALSE(noteFolder().exists(QStringLiteral("a.txt")));
}

TEST_F(AddDropFileToEditor, FolderEmptyAndOverLimitShowOneMessageEachInThisOrder)
{
    QDir(dir.path()).mkpath(QStringLiteral("one"));
    QDir(dir.path()).mkpath(QStringLiteral("two"));
    adder->AddDropFileToEditor({sized(QStringLiteral("big"), limit + 1),
        record(file(QStringLiteral("empty"), QByteArray())),
        record(dir.filePath(QStringLiteral("one"))), sized(QStringLiteral("bigger"), limit * 2),
        record(dir.filePath(QStringLiteral("two"))),
        record(file(QStringLiteral("empty too"), QByteArray()))});
    EXPECT_EQ(boxes.texts, QStringList({folderText, emptyText, limitText}));
    EXPECT_TRUE(added().isEmpty());
}

TEST_F(AddDropFileToEditor, AFolderIsLeftOutAndTheOthersGoOn)
{
    adder->AddDropFileToEditor({record(dir.path()), record(file(QStringLiteral("a.txt")))});
    EXPECT_EQ(boxes.texts, QStringList{folderText});
    EXPECT_EQ(added(), QStringList{QStringLiteral("a.txt")});
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(AddDropFileToEditor, AnEmptyFileIsLeftOutAndTheOthersGoOn)
{
    adder->AddDropFileToEditor({record(file(QStringLiteral("empty"), QByteArray())),
        record(file(QStringLiteral("a.txt")))});
    EXPECT_EQ(boxes.texts, QStringList{emptyText});
    EXPECT_EQ(added(), QStringList{QStringLiteral("a.txt")});
}

TEST_F(AddDropFileToEditor, ALimitHitShowsOneMessageThoughTheOtherFilesAreAdded)
{
    adder->AddDropFileToEditor({sized(QStringLiteral("big"), limit + 1),
        sized(QStringLiteral("a"), 1), sized(QStringLiteral("big too"), limit)});
    EXPECT_EQ(boxes.texts, QStringList{limitText});
    EXPECT_EQ(added(), QStringList{QStringLiteral("a")});
}

TEST_F(AddDropFileToEditor, ASmallerFileBehindARefusedOneStillPasses)
{
    noteWeighs(limit - 10);
    adder->AddDropFileToEditor({sized(QStringLiteral("x.one"), 20),
        sized(QStringLiteral("y.two"), 5), sized(QStringLiteral("z.three"), 5)});
    EXPECT_EQ(added(), QStringList({QStringLiteral("y.two"), QStringLiteral("z.three")}));
    EXPECT_EQ(boxes.texts, QStringList{limitText});
}

TEST_F(AddDropFileToEditor, AFileOfExactlyTheLimitPassesIntoAnEmptyNote)
{
    adder->AddDropFileToEditor({sized(QStringLiteral("full"), limit)});
    EXPECT_EQ(added(), QStringList{QStringLiteral("full")});
    EXPECT_TRUE(boxes.texts.isEmpty());
}

TEST_F(AddDropFileToEditor, OneByteMoreThanTheLimitDoesNotPass)
{
    adder->AddDropFileToEditor({sized(QStringLiteral("full"), limit + 1)});
    EXPECT_TRUE(added().isEmpty());
    EXPECT_EQ(boxes.texts, QStringList{limitText});
}

TEST_F(AddDropFileToEditor, AllMessagesPrecedeAllImports)
{
    QStringList copiesAtBox{QStringLiteral("no box")};
    boxes.onShow = [&] { copiesAtBox = copies(); };
    adder->AddDropFileToEditor({record(file(QStringLiteral("a.txt"))), record(dir.path()),
        sized(QStringLiteral("b"), limit + 1)});
    EXPECT_EQ(boxes.texts.size(), 2);
    EXPECT_TRUE(copiesAtBox.isEmpty());
    EXPECT_EQ(added(), QStringList{QStringLiteral("a.txt")});
}

TEST_F(AddDropFileToEditor, AnEmptyListStillAsksForTheTotal)
{
    page.html = element(QStringLiteral("unknown.doc"), QStringLiteral("a"));
    adder->AddDropFileToEditor({});
    EXPECT_EQ(boxes.texts, QStringList{totalText});
}

// --- What reaches the page and the books ---

TEST_F(AddDropFileToEditor, ThePageIsToldTheFourValues)
{
    adder->AddDropFileToEditor({record(file(QStringLiteral("报告.TXT"), "text"))});
    ASSERT_EQ(page.added().size(), 1u);
    const Json::Value fields = page.added()[0];
    const QString md5 = QStringLiteral("1cb251ec0d568de6a929b520c4aed8d1");
    EXPECT_EQ(fields.size(), 4u);
    EXPECT_EQ(AnsiToWide(fields["strData"].asString()),
        QStringLiteral("userdata\\attachment\\%1.txt").arg(md5));
    EXPECT_TRUE(
        QRegularExpression(QStringLiteral("^\\.\\./userdata\\\\attachment\\\\[0-9a-f]{32}\\.bmp$"))
            .match(AnsiToWide(fields["picpath"].asString()))
            .hasMatch())
        << fields["picpath"].asString();
    EXPECT_EQ(AnsiToWide(fields["exdata"].asString()),
        noteattach::FormatOrigNameToJson(QStringLiteral("报告.TXT")));
    EXPECT_EQ(fields["type"].asString(), "txt");
    // Styled, as the page has always received it.
    EXPECT_TRUE(page.calls.back().second.contains(u'\n'));
}

TEST_F(AddDropFileToEditor, ADocumentEntersTheBooksWithItsCard)
{
    adder->AddDropFileToEditor({record(file(QStringLiteral("a.txt"), "text"))});
    ASSERT_EQ(note.m_attachSizeCache.size(), 2u);
    const QString attName = QStringLiteral("1cb251ec0d568de6a929b520c4aed8d1.txt");
    EXPECT_EQ(note.m_attachSizeCache.at(attName), 4u);
    const auto card = std::find_if(note.m_attachSizeCache.begin(), note.m_attachSizeCache.end(),
        [](const auto& entry) { return entry.first.endsWith(u".bmp"); });
    ASSERT_NE(card, note.m_attachSizeCache.end());
    EXPECT_EQ(qint64(card->second), QFileInfo(GetAttachmentDir() + u'/' + card->first).size());
    ASSERT_EQ(note.m_attachModifyCache.size(), 2u);
    EXPECT_TRUE(isTime(note.m_attachModifyCache.at(attName + QStringLiteral("a.txt"))));
    EXPECT_TRUE(isTime(note.m_attachModifyCache.at(card->first + card->first)));
}

TEST_F(AddDropFileToEditor, APictureEntersTheBooksOnce)
{
    adder->AddDropFileToEditor({record(file(QStringLiteral("p.png"), "no picture at all"))});
    ASSERT_EQ(note.m_attachSizeCache.size(), 1u);
    EXPECT_EQ(note.m_attachSizeCache.begin()->second, 17u);
    EXPECT_EQ(note.m_attachModifyCache.size(), 1u);
    ASSERT_EQ(page.added().size(), 1u);
    EXPECT_EQ("../" + page.added()[0]["strData"].asString(), page.added()[0]["picpath"].asString());
}

TEST_F(AddDropFileToEditor, AKnownNameLeavesBothBooksAlone)
{
    const QString attName = QStringLiteral("1cb251ec0d568de6a929b520c4aed8d1.txt");
    note.m_attachSizeCache[attName] = 77;
    adder->AddDropFileToEditor({record(file(QStringLiteral("a.txt"), "text"))});
    EXPECT_EQ(note.m_attachSizeCache.at(attName), 77u);
    EXPECT_FALSE(note.m_attachModifyCache.contains(attName + QStringLiteral("a.txt")));
}

TEST_F(AddDropFileToEditor, TheSamePictureAgainIsNumberedAndSharesThePictureFile)
{
    const QString path = file(QStringLiteral("a.jpg"), "pixels");
    adder->AddDropFileToEditor({record(path)});
    const QStringList stored = storeFiles();
    const auto sizes = note.m_attachSizeCache;
    const auto times = note.m_attachModifyCache;
    adder->AddDropFileToEditor({record(path)});
    EXPECT_EQ(added(), QStringList({QStringLiteral("a.jpg"), QStringLiteral("a(1).jpg")}));
    EXPECT_EQ(copies(), QStringList({QStringLiteral("a(1).jpg"), QStringLiteral("a.jpg")}));
    EXPECT_EQ(storeFiles(), stored);
    EXPECT_EQ(note.m_attachSizeCache, sizes);
    EXPECT_EQ(note.m_attachModifyCache, times);
}

// --- Failures of single files ---

TEST_F(AddDropFileToEditor, AFailedImportIsLeftOutWithOneLineAndTheOthersGoOn)
{
    const DropFileInfo gone = record(file(QStringLiteral("gone.txt")));
    QFile::remove(gone.filePath);
    adder->AddDropFileToEditor({gone, record(file(QStringLiteral("a.txt")))});
    const QStringList lines = log.take();
    EXPECT_EQ(lines.filter(QStringLiteral("MoveAttFile")),
        QStringList{QStringLiteral("[ERROR] NmWebNoteHandler::MoveAttFile cal md5 code faild ! ")});
    EXPECT_EQ(added(), QStringList{QStringLiteral("a.txt")});
    EXPECT_TRUE(boxes.texts.isEmpty());
}

struct PageFailure {
    const char* name;
    ScriptedPage::Answer answer;
    const char* line;
};

class FailedPageCall : public Adding, public ::testing::WithParamInterface<PageFailure> { };

TEST_P(FailedPageCall, LeavesFilesAndBooksAndGoesOnWithTheNext)
{
    page.forced[QStringLiteral("AddPicToEditor")] = GetParam().answer;
    adder->AddDropFileToEditor(
        {record(file(QStringLiteral("a.txt"))), record(file(QStringLiteral("b.txt"), "other"))});
    const QString line = QString::fromUtf8(GetParam().line);
    EXPECT_EQ(log.take(), QStringList({line, line}));
    EXPECT_TRUE(boxes.texts.isEmpty());
    EXPECT_EQ(copies(), QStringList({QStringLiteral("a.txt"), QStringLiteral("b.txt")}));
    EXPECT_EQ(note.m_attachSizeCache.size(), 4u);
    EXPECT_EQ(note.m_attachModifyCache.size(), 4u);
}

INSTANTIATE_TEST_SUITE_P(Adder, FailedPageCall,
    ::testing::Values(PageFailure{"TheCallFails", {PAGE_CALL_FAILED, {}},
                          "添加附件到笔记编辑器，js方法调用失败！，ErrMsg:unknow error ！"},
        PageFailure{"TheAnswerIsNoJson", {S_OK, QStringLiteral("nonsense")},
            "添加附件到笔记编辑器，解析js返回json字符串失败！"},
        PageFailure{"ThePageRefuses",
            {S_OK, QStringLiteral("{\"result\":false,\"errmsg\":\"没有位置\"}")},
            "添加附件到笔记编辑器，错误信息：没有位置"}),
    [](const auto& info) { return info.param.name; });

TEST_F(AddDropFileToEditor, AFileThatThePageFailedIsInTheBookButNotUnderTheLimit)
{
    page.forced[QStringLiteral("AddPicToEditor")] = {PAGE_CALL_FAILED, {}};
    adder->AddDropFileToEditor({sized(QStringLiteral("a.png"), limit)});
    ASSERT_EQ(note.m_attachSizeCache.size(), 1u);
    page.forced.clear();
    adder->AddDropFileToEditor({sized(QStringLiteral("b.png"), limit)});
    EXPECT_TRUE(boxes.texts.isEmpty());
    EXPECT_EQ(page.added().size(), 2u);
}

// --- Odd files ---

TEST_F(AddDropFileToEditor, OddNamesComeThroughAsTheyAre)
{
    page.html = QStringLiteral("<p>x</p>");
    const QStringList names = {QStringLiteral("line\nbreak.txt"), QStringLiteral("-rf.txt"),
        QStringLiteral("\"quoted\" 'too'.txt"), QStringLiteral("100%1 %n.txt"),
        QStringLiteral("\u202Etxt.exe"), QStringLiteral("😀👨‍👩‍👧.md"),
        QString(250, u'n') + QStringLiteral(".txt"), QStringLiteral(" blank .txt ")};
    std::vector<DropFileInfo> files;
    for (const QString& name : names)
        files.push_back(record(file(name, name.toUtf8())));
    adder->AddDropFileToEditor(files);
    EXPECT_EQ(added(), names);
    for (const QString& name : names)
        EXPECT_TRUE(QFile::exists(noteFolder().filePath(name))) << qPrintable(name);
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(AddDropFileToEditor, ANameOfDiskThatNoNoteCanHoldAgreesWithItsWorkingCopy)
{
    adder->AddDropFileToEditor({record(file(QStringLiteral("a\\b.txt")))});
    ASSERT_EQ(added().size(), 1);
    EXPECT_EQ(copies(), added());
}

TEST_F(AddDropFileToEditor, APictureThatIsNoneIsStoredAsItIs)
{
    const QByteArray broken = "\x89PNG\r\n\x1a\nbroken";
    adder->AddDropFileToEditor({record(file(QStringLiteral("p.png"), broken))});
    ASSERT_EQ(page.added().size(), 1u);
    QFile copy(noteFolder().filePath(QStringLiteral("p.png")));
    ASSERT_TRUE(copy.open(QIODevice::ReadOnly));
    EXPECT_EQ(copy.readAll(), broken);
}

// --- DoAttSameName ---

struct Renaming {
    QStringList inNote;
    QStringList added;
    QStringList expected;
};

class DoAttSameName : public Adding, public ::testing::WithParamInterface<Renaming> { };

TEST_P(DoAttSameName, NumbersWhatClashes)
{
    for (const QString& name : GetParam().inNote)
        page.html += element(QStringLiteral("0.x"), name);
    std::vector<DropFileInfo> files;
    for (const QString& name : GetParam().added) {
        DropFileInfo made;
        made.origName = made.fileName = name;
        files.push_back(made);
    }
    adder->DoAttSameName(files);
    QStringList names;
    for (const DropFileInfo& made : files) {
        EXPECT_EQ(made.origName, made.fileName);
        names << made.origName;
    }
    EXPECT_EQ(names, GetParam().expected);
}

static QStringList names(const char* text)
{
    return QString::fromUtf8(text).split(u'|', Qt::SkipEmptyParts);
}

INSTANTIATE_TEST_SUITE_P(Adder, DoAttSameName,
    ::testing::Values(
        Renaming{names("a.txt|a(3).doc|b.txt"), names("a.txt|a.txt|a.pdf|b(9).txt|c.txt"),
            names("a(4).txt|a(5).txt|a(6).pdf|b(1).txt|c.txt")},
        Renaming{names("a(b).txt"), names("a.txt"), names("a(1).txt")},
        Renaming{names("(5).txt"), names("(2).txt"), names("(6).txt")},
        Renaming{names("LICENSE"), names("readme"), names("(1).readme")},
        Renaming{names("a(1)b.txt"), names("a.txt"), names("a.txt")},
        Renaming{{}, names("a.txt|a.txt"), names("a.txt|a.txt")}));

TEST_F(Adding, NamesStayIfThePageCannotTellItsText)
{
    page.forced[QStringLiteral("GetEditorContent")] = {PAGE_CALL_FAILED, {}};
    std::vector<DropFileInfo> files{record(file(QStringLiteral("a.txt")))};
    adder->DoAttSameName(files);
    EXPECT_EQ(files[0].origName, QStringLiteral("a.txt"));
    EXPECT_EQ(log.take().size(), 1);
}

// --- GetExistAttTotalSize ---

TEST_F(Adding, TheTotalCountsShownFilesAndOneByteLessEach)
{
    quint64 total = 7;
    EXPECT_EQ(adder->GetExistAttTotalSize(total), 1);
    EXPECT_EQ(total, 0u);
    page.html = QStringLiteral("<img class=\"u\\d.txt\" src=\"../u\\c.bmp\" nm_exdata=\"{}\">");
    note.m_attachSizeCache = {{QStringLiteral("d.txt"), 100}, {QStringLiteral("c.bmp"), 50}};
    EXPECT_EQ(adder->GetExistAttTotalSize(total), 1);
    EXPECT_EQ(total, 148u);
}

TEST_F(Adding, AnAttachmentWithARecordedSizeOfZeroMakesGetExistAttTotalSizeReturnZero)
{
    page.html = element(QStringLiteral("d.txt"), QStringLiteral("报告.txt"));
    note.m_attachSizeCache = {{QStringLiteral("d.txt"), 0}};
    quint64 total = 7;
    EXPECT_EQ(adder->GetExistAttTotalSize(total), 0);
    EXPECT_EQ(log.take(), QStringList(QStringLiteral("[ERROR] 查询报告.txt附件大小失败！")));
}

TEST_F(Adding, ThereIsNoTotalOfANoteThatHasGivenWay)
{
    page.onCall = [&] { ++note.m_loads; };
    quint64 total = 7;
    EXPECT_EQ(adder->GetExistAttTotalSize(total), 0);
    EXPECT_TRUE(log.take().isEmpty());
}
