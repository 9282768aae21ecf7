// Filing a note durably: against the least that a durable file of the same bytes can cost, and
// against a database that commits it. Encoding and digest count on every side.

#include "Figure.h"
#include "SampleNote.h"

#include "notestore/NoteHtmlRW.h"
#include "support/AppDirs.h"
#include "support/Md5.h"
#include "support/Paths.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <memory>
#include <sqlite3.h>
#include <stdexcept>
#include <unistd.h>

namespace {

void require(bool condition, const char* what)
{
    if (!condition)
        throw std::runtime_error(what);
}

// A text that was never filed before, of one size. Made outside the clock.
class Texts {
public:
    explicit Texts(qsizetype bytes)
        : m_note(bench::sampleNoteText(bytes))
    {
    }

    QString next() { return QString::number(++m_number) + m_note; }

private:
    QString m_note;
    int m_number = 0;
};

// The seconds of one call, over `calls` calls with a new text each.
bench::Side perText(Texts texts, int calls, std::function<void(QString&)> work)
{
    return [texts, calls, work]() mutable {
        std::vector<QString> round;
        for (int i = 0; i < calls; ++i)
            round.push_back(texts.next());
        auto text = round.begin();
        return bench::timedPerCall(calls, [&] { work(*text++); })();
    };
}

void fileNote(QString& html)
{
    NewAttachFile record;
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_2;
    require(NoteHtmlRW::SaveHtmlTextToFile(html, record, &version), "a save failed");
}

struct Bytes {
    explicit Bytes(const QString& html)
        : bytes("<!--{\"ver_number\":2}-->" + html.toUtf8())
    {
        Md5Context context;
        context.update(bytes.data(), static_cast<std::size_t>(bytes.size()));
        const auto& digest = context.digest();
        name = QByteArray(reinterpret_cast<const char*>(digest.data()), digest.size()).toHex();
    }

    QByteArray bytes;
    QByteArray name;
};

void writeBare(QString& html)
{
    static const QByteArray directory = QFile::encodeName(GetAttachmentDir());
    const auto [bytes, name] = Bytes(html);
    const QByteArray temporary = directory + "/bare.tmp";
    const QByteArray full = directory + '/' + name + ".bare";

    const int file = ::open(temporary, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    require(file >= 0 && ::write(file, bytes.data(), bytes.size()) == bytes.size(),
        "a bare write failed");
    require(::fsync(file) == 0 && ::close(file) == 0, "a bare flush failed");
    require(::rename(temporary, full) == 0, "a bare rename failed");
    const int parent = ::open(directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    require(parent >= 0 && ::fsync(parent) == 0 && ::close(parent) == 0, "a bare flush failed");
}

class Database {
public:
    explicit Database(const QString& path)
    {
        require(sqlite3_open(path.toUtf8(), &m_database) == SQLITE_OK, "no database");
        execute("PRAGMA journal_mode=DELETE");
        execute("PRAGMA synchronous=FULL");
        execute("CREATE TABLE note (name TEXT PRIMARY KEY, text TEXT)");
        require(
            sqlite3_prepare_v2(m_database, "INSERT INTO note VALUES (?, ?)", -1, &m_insert, nullptr)
                == SQLITE_OK,
            "no statement");
    }
    ~Database()
    {
        sqlite3_finalize(m_insert);
        sqlite3_close(m_database);
    }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // Each statement is its own transaction.
    void insert(const QString& html)
    {
        const auto [bytes, name] = Bytes(html);
        sqlite3_bind_text(m_insert, 1, name.constData(), int(name.size()), SQLITE_STATIC);
        sqlite3_bind_text(m_insert, 2, bytes.data(), int(bytes.size()), SQLITE_STATIC);
        require(sqlite3_step(m_insert) == SQLITE_DONE, "an insert failed");
        sqlite3_reset(m_insert);
    }

private:
    void execute(const char* statement)
    {
        require(
            sqlite3_exec(m_database, statement, nullptr, nullptr, nullptr) == SQLITE_OK, statement);
    }

    sqlite3* m_database = nullptr;
    sqlite3_stmt* m_insert = nullptr;
};

std::vector<bench::Figure> measure()
{
    const QTemporaryDir directory;
    SetAppDir(directory.path());
    GetAttachmentDir();
    auto database = std::make_shared<Database>(directory.filePath(QStringLiteral("notes.db")));
    const auto insert = [database](QString& html) { database->insert(html); };

    struct Size {
        const char* name;
        qsizetype bytes;
        int calls;
    };
    std::vector<bench::Figure> figures;
    for (const Size& size :
        {Size{"10 KB", 10 << 10, 40}, Size{"1 MB", 1 << 20, 8}, Size{"10 MB", 10 << 20, 2}}) {
        const std::string name = std::string("store write, ") + size.name + ", against ";
        const Texts texts(size.bytes);
        const auto ours = perText(texts, size.calls, fileNote);
        figures.push_back(bench::atMost(
            name + "a bare durable write", 1.15, ours, perText(texts, size.calls, writeBare), 15));
        figures.push_back(bench::timesFaster(name + "SQLite", 1.6,
            perText(texts, size.calls, fileNote), perText(texts, size.calls, insert), 9));
    }
    return figures;
}

const bench::Registration registration{"store write", measure};

} // namespace
