// What another program may put up for a paste: "HTML Format" blocks that lie, lists of files
// without end. The page that a user sees stays, and so does the note.

#include "clipdrag/ClipFlavours.h"
#include "kit/Answers.h"
#include "reliability/browser/OpenNoteFixture.h"
#include "reliability/browser/Usage.h"

#include "clipformat/HtmlFormat.h"

#include <QTemporaryDir>

#include <unistd.h>

namespace {

/// The four offsets of a block, in their order.
constexpr const char* fields[] = {"StartHTML:", "EndHTML:", "StartFragment:", "EndFragment:"};

/// What a field can wrongly say; `%1` is what it should.
const char* const wrongValues[] = {"", "0", "-1", "+1", "1", "%1 ", " %1", "\t%1", "0%1", "-%1",
    "+%1", "%1x", "x%1", "0x10", "1e3", "1.5", "--1", "+-1", "00000000", "99999999", "100000000",
    "2147483647", "2147483648", "-2147483648", "4294967295", "4294967296", "4294967297",
    "9223372036854775807", "9223372036854775808", "-9223372036854775809", "18446744073709551615",
    "18446744073709551616", "99999999999999999999999999999999", "NaN", "-", "%n%s",
    "\xEF\xBC\x91\xEF\xBC\x92", "\xFF\xFE"};

std::string goodBlock(const std::string& text)
{
    std::string block;
    EXPECT_TRUE(clipformat::BuildHtmlFormat(text, block));
    return block;
}

/// Where a field's line begins, and its end.
std::pair<std::size_t, std::size_t> lineOf(const std::string& block, const char* field)
{
    const std::size_t start = block.find(field);
    return {start, block.find("\r\n", start) + 2};
}

std::string valueOf(const std::string& block, const char* field)
{
    const auto [start, end] = lineOf(block, field);
    const std::size_t value = start + std::strlen(field);
    return block.substr(value, end - 2 - value);
}

std::string with(std::string block, const char* field, const std::string& value)
{
    const auto [start, end] = lineOf(block, field);
    return block.replace(start, end - start, field + value + "\r\n");
}

std::string filledIn(std::string wrong, const std::string& right)
{
    const std::size_t at = wrong.find("%1");
    return at == std::string::npos ? wrong : wrong.replace(at, 2, right);
}

void addTwisted(const std::string& block, std::vector<std::string>& blocks)
{
    for (const char* field : fields) {
        const std::string right = valueOf(block, field);
        for (const char* wrong : wrongValues)
            blocks.push_back(with(block, field, filledIn(wrong, right)));
        const auto [start, end] = lineOf(block, field);
        const std::string line = block.substr(start, end - start);
        blocks.push_back(std::string(block).erase(start, end - start)); // missing
        blocks.push_back(std::string(block).insert(start, line)); // twice
        blocks.push_back(std::string(block).insert(start, std::string(field) + "7\r\n"));
        blocks.push_back(std::string(block).insert(end - 2, std::string(100'000, '0')));
        blocks.push_back(block.substr(0, end - 2)); // nothing behind it
        blocks.push_back(block.substr(0, start + std::strlen(field)));
        for (const char* other : fields) { // swapped
            blocks.push_back(with(with(block, field, valueOf(block, other)), other, right));
            blocks.push_back(with(block, field, valueOf(block, other))); // overlapping
        }
    }
}

/// Blocks with each field wrong in every way, with a terminator and without.
std::vector<std::string> wrongBlocks(const std::string& text)
{
    const std::string good = goodBlock(text);
    std::vector<std::string> blocks{good, "", std::string(1, '\0'), "Version:0.9", text};
    addTwisted(good, blocks);
    for (std::size_t length = 0; length < good.size(); length += 7)
        blocks.push_back(good.substr(0, length));
    blocks.push_back(with(good, "Version:", "99999999"));
    std::string upper = good;
    for (char& c : upper)
        c = char(std::toupper(static_cast<unsigned char>(c)));
    blocks.push_back(upper);
    std::string lineFeeds = good;
    std::erase(lineFeeds, '\r');
    blocks.push_back(lineFeeds);
    for (std::size_t i = 0, count = blocks.size(); i < count; ++i)
        blocks.push_back(blocks[i] + '\0');
    return blocks;
}

/// A list as the desktop hands it over: bytes that nobody has taken apart yet.
class ListOfAnotherProgram : public QMimeData {
public:
    explicit ListOfAnotherProgram(const QByteArray& lines)
        : m_lines(lines)
    {
    }
    QStringList formats() const override { return {QStringLiteral("text/uri-list")}; }
    bool hasFormat(const QString& format) const override { return formats().contains(format); }

protected:
    QVariant retrieveData(const QString& format, QMetaType) const override
    {
        return hasFormat(format) ? QVariant(m_lines) : QVariant();
    }

private:
    const QByteArray m_lines;
};

class HostileClipboard : public OpenNoteFixture {
protected:
    QTemporaryDir dir;
};

} // namespace

TEST_F(HostileClipboard, NoWrongOffsetOfABlockReachesBeyondIt)
{
    show(QStringLiteral("<p>before</p>"));
    const qint64 page = bench.page()->renderProcessPid();
    const std::string text = "<p>pasted</p><img nm_exdata='{}' "
                             "class='userdata\\attachment\\x.txt' src='x'>";
    const std::vector<std::string> blocks = wrongBlocks(text);
    for (const std::string& block : blocks) {
        std::string fragment;
        if (clipformat::CutHtmlFragment(block, fragment)) {
            EXPECT_NE(block.find(fragment), std::string::npos);
        }
        auto data = std::make_unique<QMimeData>();
        data->setData(clipdrag::kHtmlFormat, QByteArray::fromStdString(block));
        QGuiApplication::clipboard()->setMimeData(data.release());
        handler().DoCtrlV();
    }
    // With all of a user's keys for those that differ most.
    for (std::size_t i = 0; i < blocks.size(); i += figures::isDeep() ? 1 : 40) {
        auto data = htmlData(QStringLiteral("<b>x</b>"));
        data->setData(clipdrag::kHtmlFormat, QByteArray::fromStdString(blocks[i]));
        paste(std::move(data));
    }
    EXPECT_EQ(bench.page()->renderProcessPid(), page);
    EXPECT_TRUE(html().startsWith(QStringLiteral("<p>before")));
    EXPECT_TRUE(bench.attachmentNames().isEmpty());
    figures::add("wrong \"HTML Format\" blocks pasted", long(blocks.size()));
}

TEST_F(HostileClipboard, AListOfAMillionFilesIsRefusedWholeAndAtOnce)
{
    QFile file(dir.filePath(QStringLiteral("a.txt")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("x");
    file.close();
    show(QStringLiteral("<p>before</p>"));
    for (const QUrl& url :
        {QUrl::fromLocalFile(file.fileName()), QUrl::fromLocalFile(QStringLiteral("/no/such"))}) {
        const QByteArray lines = (url.toEncoded() + "\r\n").repeated(1'000'000);
        const Answers answers;
        usage::resetPeak();
        const qint64 before = usage::memoryOf(::getpid());
        QElapsedTimer time;
        time.start();
        paste(std::make_unique<ListOfAnotherProgram>(lines));
        figures::atLeast("seconds to refuse a million pasted files", double(time.restart()) / 1000);
        const ListOfAnotherProgram dragged(lines);
        time.start();
        for (int i = 0; i < 8; ++i)
            EXPECT_FALSE(i == 0 ? send<QDragEnterEvent>(dragged) : send<QDragMoveEvent>(dragged));
        EXPECT_FALSE(send<QDropEvent>(dragged));
        figures::atLeast(
            "seconds to refuse a million dragged files", double(time.elapsed()) / 1000);
        // A few times the list itself, which is 30 MB.
        EXPECT_LT(usage::peak() - before, qint64(300) * 1024 * 1024);
        EXPECT_EQ(answers.texts, QStringList{QStringLiteral("一次最多添加1000个文件！")});
        EXPECT_EQ(html(), QStringLiteral("<p>before</p>"));
    }
}
