#include "Output.h"
#include "Verbs.h"

#include "support/AppDirs.h"
#include "support/Log.h"

#include <QCommandLineParser>
#include <QDir>
#include <QGuiApplication>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>
#include <new>

using namespace nmnote;

namespace {

const QString kUsage = QStringLiteral(R"(usage: nmnote [--app-dir DIR] VERB ...

  parse [--guid G] FILE      the attachment records of a note, as a JSON array
  names FILE                 the original names of the note's attachments in their
                             order, repeated ones repeated, as a JSON array
  read FILE                  {"version":...,"html":...}
  text FILE                  the plain text of the note's body
  rewrite FILE --orig NAME --class V --src V
                             the note's body with V as class and as src of each
                             attachment whose original name is NAME; the file
                             stays as it is, and no line end is added
  upgrade FILE               the note's text as a save would file it
  mht FILE OUT [--embed]     export as one MHT file; with its pictures
  save FILE [--version N]    file the note into the store; its record as JSON
  import --note GUID FILE... take any files into the store as attachments of a note;
                             what became of each, as a JSON array
  sync --note FILE --attachment PATH
                             make a note follow a change of an attachment's file in its
                             folder of the store: a new card or picture, and the note filed
                             anew; its records as a save hands them out, [] if nothing
                             has changed
  card NAME INFO OUT.bmp     draw the card of a file with that name and second line;
                             what was drawn, as JSON
  clip encode                a fragment's HTML (UTF-8, up to a zero byte) to the bytes
                             of the clipboard's "HTML Format"
  clip decode                those bytes to the fragment; exit code 1 if none is marked
  files encode               a JSON array of paths to the drop-files record
  files decode               that record to {"fWide":0|1,"paths":[...],
                             "as16Bit":[...]|null}: the paths as fWide says, and taken
                             for 16-bit text
  md5 FILE...                as md5sum prints it
  check [STORE]              look through a store: damaged and missing files (exit
                             code 1), changed working copies and leftovers

FILE is a note file, with its version marker or without, unless said otherwise. A
note of version 0 or 1 is upgraded when it is saved; --version says what version the
text is. An array may hold names with line ends: a note can name a file anything.
clip and files convert from the standard input to the standard output.
--app-dir names the directory that holds userdata (default: that of nmnote); the
log is written there. G is the note's GUID, whose folder the records point into.
Exit codes: 0 done, 1 failed or something is wrong, 2 bad use.
)");

struct Verb {
    QString name;
    int fewest, most; // operands
    QStringList mayHave, mustHave; // options
    int (*run)(const Arguments&);
    bool drawsText = false;
};

constexpr int kAnyNumber = 1'000'000;

const Verb kVerbs[]{
    {QStringLiteral("parse"), 1, 1, {QStringLiteral("guid")}, {}, parseVerb},
    {QStringLiteral("names"), 1, 1, {}, {}, namesVerb},
    {QStringLiteral("read"), 1, 1, {}, {}, readVerb},
    {QStringLiteral("text"), 1, 1, {}, {}, textVerb},
    {QStringLiteral("rewrite"), 1, 1, {},
        {QStringLiteral("orig"), QStringLiteral("class"), QStringLiteral("src")}, rewriteVerb},
    {QStringLiteral("upgrade"), 1, 1, {}, {}, upgradeVerb},
    {QStringLiteral("mht"), 2, 2, {QStringLiteral("embed")}, {}, mhtVerb},
    {QStringLiteral("save"), 1, 1, {QStringLiteral("version")}, {}, saveVerb},
    {QStringLiteral("import"), 1, kAnyNumber, {}, {QStringLiteral("note")}, importVerb, true},
    {QStringLiteral("sync"), 0, 0, {}, {QStringLiteral("note"), QStringLiteral("attachment")},
        syncVerb, true},
    {QStringLiteral("card"), 3, 3, {}, {}, cardVerb, true},
    {QStringLiteral("clip"), 1, 1, {}, {}, clipVerb},
    {QStringLiteral("files"), 1, 1, {}, {}, filesVerb},
    {QStringLiteral("md5"), 1, kAnyNumber, {}, {}, md5Verb},
    {QStringLiteral("check"), 0, 1, {}, {}, checkVerb},
};

// Options of the whole command, which every verb takes.
const QStringList kCommonOptions{QStringLiteral("app-dir")};

const Verb* findVerb(const QString& name)
{
    const auto verb = std::find_if(std::begin(kVerbs), std::end(kVerbs),
        [&](const Verb& candidate) { return candidate.name == name; });
    return verb == std::end(kVerbs) ? nullptr : verb;
}

int badUse(const QString& reason)
{
    complain(reason);
    std::fputs(kUsage.toUtf8().constData(), stderr);
    return BadUse;
}

// What is wrong with the options of a verb; empty if nothing is.
QString optionFault(const Verb& verb, const QCommandLineParser& parser)
{
    const QStringList taken = kCommonOptions + verb.mayHave + verb.mustHave;
    for (const QString& option : parser.optionNames()) {
        if (!taken.contains(option))
            return QStringLiteral("%1 takes no --%2").arg(verb.name, option);
    }
    for (const QString& option : verb.mustHave) {
        if (!parser.isSet(option))
            return QStringLiteral("%1 needs --%2").arg(verb.name, option);
    }
    return QString();
}

// The Qt of the process, which the verb works in. Text is drawn by a QGuiApplication alone, on a
// screen or, as here, on none.
std::unique_ptr<QCoreApplication> makeApplication(const Verb& verb, int& argc, char** argv)
{
    if (!verb.drawsText)
        return std::make_unique<QCoreApplication>(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Qt's own remarks, on directories that a desktop would have, are none of the verb's.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    auto application = std::make_unique<QGuiApplication>(argc, argv);
    // Built, the icons lie beside the executable; installed, in the package's data directory.
    const QDir bin(QCoreApplication::applicationDirPath());
    if (!bin.exists(QStringLiteral("res")))
        SetInstallDir(bin.filePath(QStringLiteral("../share/nomareditor")));
    return application;
}

// Fills `arguments`; returns what is wrong with the command line, empty if nothing is.
QString readArguments(const Verb& verb, const QCommandLineParser& parser, Arguments& arguments)
{
    arguments.operands = parser.positionalArguments().mid(1);
    if (arguments.operands.size() < verb.fewest || arguments.operands.size() > verb.most)
        return QStringLiteral("%1: wrong number of operands").arg(verb.name);
    arguments.guid = parser.value(QStringLiteral("guid"));
    arguments.note = parser.value(QStringLiteral("note"));
    arguments.attachment = parser.value(QStringLiteral("attachment"));
    arguments.orig = parser.value(QStringLiteral("orig"));
    arguments.classValue = parser.value(QStringLiteral("class"));
    arguments.srcValue = parser.value(QStringLiteral("src"));
    arguments.embed = parser.isSet(QStringLiteral("embed"));
    if (parser.isSet(QStringLiteral("version"))) {
        bool isNumber = false;
        arguments.version = parser.value(QStringLiteral("version")).toInt(&isNumber);
        if (!isNumber || *arguments.version < 0)
            return QStringLiteral("--version takes a number");
    }
    return optionFault(verb, parser);
}

QStringList asTexts(int argc, char** argv)
{
    QStringList texts;
    for (int i = 0; i < argc; ++i)
        texts += QString::fromLocal8Bit(argv[i]);
    return texts;
}

int run(int argc, char** argv)
{
    QCommandLineParser parser;
    parser.addOptions({
        {{QStringLiteral("h"), QStringLiteral("help")}, QString()},
        {QStringLiteral("app-dir"), QString(), QStringLiteral("DIR")},
        {QStringLiteral("guid"), QString(), QStringLiteral("G")},
        {QStringLiteral("note"), QString(), QStringLiteral("NOTE")},
        {QStringLiteral("attachment"), QString(), QStringLiteral("PATH")},
        {QStringLiteral("orig"), QString(), QStringLiteral("NAME")},
        {QStringLiteral("class"), QString(), QStringLiteral("V")},
        {QStringLiteral("src"), QString(), QStringLiteral("V")},
        {QStringLiteral("version"), QString(), QStringLiteral("N")},
        {QStringLiteral("embed"), QString()},
    });
    if (!parser.parse(asTexts(argc, argv)))
        return badUse(parser.errorText());
    if (parser.isSet(QStringLiteral("help"))) {
        print(kUsage);
        return Done;
    }
    if (parser.positionalArguments().isEmpty())
        return badUse(QStringLiteral("no verb"));
    const QString name = parser.positionalArguments().first();
    const Verb* verb = findVerb(name);
    if (!verb)
        return badUse(QStringLiteral("no such verb: '%1'").arg(name));
    Arguments arguments;
    const QString fault = readArguments(*verb, parser, arguments);
    if (!fault.isEmpty())
        return badUse(fault);
    if (parser.isSet(QStringLiteral("app-dir")))
        SetAppDir(parser.value(QStringLiteral("app-dir")));
    const auto application = makeApplication(*verb, argc, argv);
    return verb->run(arguments);
}

} // namespace

int main(int argc, char** argv)
{
    int code = Failed;
    try {
        code = run(argc, argv);
    } catch (const std::bad_alloc&) {
        complain(QStringLiteral("not enough memory"));
    }
    if (!flushOutput()) {
        complain(QStringLiteral("cannot write the output"));
        code = Failed;
    }
    CLog4C::WriteQueued(); // the log's own turn may not come any more
    return code;
}
