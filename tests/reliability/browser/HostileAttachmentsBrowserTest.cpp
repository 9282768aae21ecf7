// Attachment elements that name what is no file of the store, through the control and a host's
// shelf: nothing outside of the store is filed, opened or copied.

#include "reliability/browser/HostShelf.h"
#include "reliability/browser/OpenNoteFixture.h"

#include "clipdrag/ClipFlavours.h"
#include "clipdrag/CopyNotify.h"
#include "noteattach/ExData.h"
#include <QDir>
#include <QTemporaryDir>

namespace {

/// Names that a note gives to its files, each good for some mischief.
QStringList hostileNames()
{
    QStringList names{QString()};
    for (const char* name : {"..", ".", "../", "..\\", "../../etc/passwd", "..\\..\\etc\\passwd",
             "/etc/passwd", "//etc/passwd", "\\etc\\passwd", "etc/../../../etc/passwd", "/dev/zero",
             "/dev/null", "/dev/tty", "/proc/self/mem", "/proc/self/environ", "/proc/self/fd/0",
             "file:///etc/passwd", "http://127.0.0.1/x", "C:\\windows\\win.ini", "C:win.ini",
             "\\\\server\\share\\x", "\\\\?\\C:\\x", "\\\\.\\PhysicalDrive0", "CON", "NUL.txt",
             "COM1", "x:stream", "~/.profile", "~root", "$HOME", "%2e%2e%2fetc%2fpasswd",
             "..%2f..%2fetc%2fpasswd", "-rf", " ", " .. ", "....", "x/", "x\\", "*", "|id", "`id`",
             "$(id)", "\n/etc/passwd", "a\nb", "a\tb", "\x1b[2J", "{\"a\":1}", "\"'<>&",
             "\xE2\x80\xAEtxt.exe", "\xE2\x80\xA5/\xE2\x80\xA5/etc",
             "\xEF\xBC\x8E\xEF\xBC\x8E\xEF\xBC\x8F",
             "\xE2\x88\x95"
             "etc"})
        names << QString::fromUtf8(name);
    for (const char16_t odd : {u'\0', char16_t(0xD800), char16_t(0xDBFF), char16_t(0xDC00)})
        for (const char* behind : {"", "x", ".png", "/.."})
            names << QStringLiteral("..") + QChar(odd) + QLatin1String(behind)
                  << QChar(odd) + QLatin1String(behind);
    names << QString(255, u'x') << QString(256, u'x') << QString(4096, u'x')
          << QString(1024 * 1024, u'x') << QStringLiteral("../").repeated(100'000)
          << QStringLiteral("文").repeated(100);
    return names;
}

QString attribute(QString value)
{
    return value.replace(u'&', QStringLiteral("&amp;")).replace(u'"', QStringLiteral("&quot;"));
}

struct Element {
    QString exData;
    QString path;
    QString src;

    QString html() const
    {
        return QStringLiteral("<img nm_exdata=\"%1\" class=\"%2\" src=\"%3\" width=\"9\">")
            .arg(attribute(exData), attribute(path), attribute(src));
    }
};

QString jsonOf(const QString& origName)
{
    return noteattach::FormatOrigNameToJson(origName);
}

/// Each name in each place where an element has one.
std::vector<Element> hostileElements()
{
    const QString store = QStringLiteral("userdata\\attachment\\");
    std::vector<Element> elements;
    for (const QString& name : hostileNames()) {
        elements.push_back({jsonOf(name), store + QStringLiteral("a.txt"), QStringLiteral("x")});
        elements.push_back({jsonOf(QStringLiteral("a.txt")), store + name, QStringLiteral("x")});
        elements.push_back({jsonOf(QString()), name, QStringLiteral("../") + store + name});
        elements.push_back({jsonOf(name), name, name});
    }
    for (const char* json : {"", "{", "{}", "[]", "null", "1", "\"x\"", "{\"OrigName_B64\":null}",
             "{\"OrigName_B64\":1}", "{\"OrigName_B64\":{}}", "{\"OrigName_B64\":[\"x\"]}",
             "{\"OrigName_B64\":\"%%%\"}", "{\"OrigName_B64\":\"Li4vLi4vZXRjL3Bhc3N3ZA\"}",
             "{\"OrigName_B64\":\"////\"}", "{\"OrigName_B64\":\"AAAA\"}",
             "{\"OrigName_B64\":\"YQ==\",\"OrigName_B64\":\"Li4=\"}", "{\"origname_b64\":\"YQ==\"}",
             "\xEF\xBB\xBF{\"OrigName_B64\":\"YQ==\"}", "{\"OrigName_B64\":\"YQ==\"}x",
             "{\"OrigName_B64\":\"\\ud800\"}", "{\"__proto__\":{\"OrigName_B64\":\"YQ==\"}}"})
        elements.push_back({QString::fromUtf8(json), store + QStringLiteral("a.txt"),
            QStringLiteral("../") + store + QStringLiteral("a.bmp")});
    elements.push_back({QStringLiteral("[").repeated(100'000), store + QStringLiteral("a.txt"),
        QStringLiteral("x")});
    elements.push_back({QStringLiteral("{\"a\":").repeated(50'000), store + QStringLiteral("a.txt"),
        QStringLiteral("x")});
    return elements;
}

/// All of them in the long run, else every third: each place of an element comes up in turn.
std::vector<Element> someElements()
{
    const std::vector<Element> all = hostileElements();
    if (figures::isDeep())
        return all;
    std::vector<Element> some;
    for (std::size_t i = 0; i < all.size(); i += 3)
        some.push_back(all[i]);
    return some;
}

class HostileAttachments : public OpenNoteFixture {
protected:
    QTemporaryDir dir;
    HostShelf shelf;
    QString store;

    void SetUp() override
    {
        OpenNoteFixture::SetUp();
        ASSERT_TRUE(shelf.open(dir.filePath(QStringLiteral("shelf.db"))));
        store = QFileInfo(GetAttachmentDir()).canonicalFilePath();
    }

    /// No path, or one below the store, also when its links are followed.
    void expectInside(const QString& path)
    {
        if (path.isEmpty())
            return;
        EXPECT_FALSE(path.contains(QChar(u'\0')));
        const QString clean = QDir::cleanPath(path);
        EXPECT_TRUE(clean.startsWith(QDir::cleanPath(GetAttachmentDir()) + u'/'))
            << path.left(300).toStdString();
        const QString real = QFileInfo(clean).canonicalFilePath();
        EXPECT_TRUE(real.isEmpty() || real.startsWith(store + u'/')) << real.toStdString();
    }
};

} // namespace

TEST_F(HostileAttachments, TheHostIsHandedNoPathOutsideOfTheStoreAndOpensNone)
{
    const std::vector<Element> elements = someElements();
    for (const Element& element : elements) {
        SCOPED_TRACE(element.html().left(300).toStdString());
        show(QStringLiteral("<p>text</p>") + element.html());
        bench.inNote(QStringLiteral("(doc.body.append('edited'), 1)"));
        host().saves.clear();
        control().SaveEditor();
        ASSERT_EQ(host().saves.size(), 1u);
        std::vector<NewAttachFile> files = host().saves[0].files;
        ASSERT_FALSE(files.empty());
        EXPECT_EQ(files[0].fileType, 0);
        for (const NewAttachFile& file : files)
            expectInside(file.filePath);

        host().opened.clear();
        const int calls =
            bench
                .inNote(QStringLiteral("[...doc.images].filter(i => i.dispatchEvent(new MouseEvent("
                                       "'dblclick', {bubbles: true, cancelable: true})) === false)"
                                       ".length"))
                .toInt();
        ASSERT_TRUE(waitFor([&] { return host().opened.size() == calls; }));
        ASSERT_TRUE(shelf.save(guid, files, host().saves[0].text));
        for (const QString& call : host().opened) {
            const QString name = call.section(u'|', 1, 1), orig = call.section(u'|', 2);
            EXPECT_FALSE(name.contains(u'\\'));
            expectInside(shelf.attachment(GetAttachmentDir(), guid, name, orig));
        }
    }
    figures::add("hostile attachment records, none led out of the store", long(elements.size()));
}

TEST_F(HostileAttachments, ACopyPutsNoFileFromOutsideOnTheClipboard)
{
    const std::vector<Element> elements = someElements();
    for (const Element& element : elements) {
        SCOPED_TRACE(element.html().left(300).toStdString());
        QGuiApplication::clipboard()->setMimeData(
            htmlData(element.html() + element.html()).release());
        clipdrag::CopyAttachmentsAsFiles(guid);
        const QMimeData* held = QGuiApplication::clipboard()->mimeData();
        for (const QString& path : clipdrag::Files(*held))
            expectInside(path);
    }
    // Once with the keys of a user, for all of them together.
    QString all;
    for (const Element& element : elements)
        all += element.html();
    show(all);
    focus();
    bench.inNote(QStringLiteral("(doc.getSelection().selectAllChildren(doc.body), 1)"));
    press(Qt::Key_C);
    ASSERT_TRUE(waitFor([] {
        const QMimeData* held = QGuiApplication::clipboard()->mimeData();
        return held && held->html().contains(QStringLiteral("nm_exdata"));
    }));
    pressLast(Qt::Key_Shift);
    for (const QString& path : clipdrag::Files(*QGuiApplication::clipboard()->mimeData()))
        expectInside(path);
    figures::add("hostile attachment records copied", long(elements.size()));
}

TEST_F(HostileAttachments, APasteOfThemTakesNothingIntoTheStore)
{
    const QString outside = dir.filePath(QStringLiteral("outside.txt"));
    QFile file(outside);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("outside");
    file.close();
    std::vector<Element> elements = hostileElements();
    QString up = QStringLiteral("../").repeated(GetAttachmentDir().count(u'/') + 2);
    elements.push_back({jsonOf(outside), outside, outside});
    elements.push_back({jsonOf(up + outside), up + outside, up + outside});
    show(QStringLiteral("<p>text</p>"));
    const QDir folder(GetAttachmentDir());
    const QStringList before = folder.entryList(QDir::Files);
    for (const Element& element : elements) {
        QGuiApplication::clipboard()->setMimeData(
            htmlData(QStringLiteral("text") + element.html()).release());
        handler().DoCtrlV();
        EXPECT_EQ(folder.entryList(QDir::Files), before) << element.html().left(300).toStdString();
    }
    EXPECT_TRUE(QFile::exists(outside));
}
