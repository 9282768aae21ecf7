#include "Output.h"
#include "Verbs.h"

#include "support/AppDirs.h"
#include "support/Log.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <new>

using namespace nmnote;

namespace {

const QString kUsage = QStringLiteral(R"(usage: nmnote [--app-dir DIR] VERB ...

  parse [--guid G] FILE      the attachment records of a note, as a JSON array
  read FILE                  {"version":...,"html":...}
  text FILE                  the plain text of the note's body
  save FILE [--version N]    file the note into the store; its record as JSON
  md5 FILE...                as md5sum prints it
  check [STORE]              look through a store: damaged and missing files (exit
                             code 1), changed working copies and leftovers

FILE is a note file, with its version marker or without. A note of version 0 or 1
is upgraded when it is saved; --version says what version the text is.
--app-dir names the directory that holds userdata (default: that of nmnote); the
log is written there. G is the note's GUID, whose folder the records point into.
Exit codes: 0 done, 1 failed or something is wrong, 2 bad use.
)");

struct Verb {
    QString name;
    int fewest, most; // operands
    bool takesGuid, takesVersion;
    int (*run)(const Arguments&);
};

const Verb kVerbs[]{
    {QStringLiteral("parse"), 1, 1, true, false, parseVerb},
    {QStringLiteral("read"), 1, 1, false, false, readVerb},
    {QStringLiteral("text"), 1, 1, false, false, textVerb},
    {QStringLiteral("save"), 1, 1, false, true, saveVerb},
    {QStringLiteral("md5"), 1, 1'000'000, false, false, md5Verb},
    {QStringLiteral("check"), 0, 1, false, false, checkVerb},
};

int badUse(const QString& reason)
{
    complain(reason);
    std::fputs(kUsage.toUtf8().constData(), stderr);
    return BadUse;
}

int runVerb(const Verb& verb, const QCommandLineParser& parser)
{
    Arguments arguments{parser.positionalArguments().mid(1), {}, {}};
    if (arguments.operands.size() < verb.fewest || arguments.operands.size() > verb.most)
        return badUse(QStringLiteral("%1: wrong number of files").arg(verb.name));
    if (parser.isSet(QStringLiteral("guid"))) {
        if (!verb.takesGuid)
            return badUse(QStringLiteral("%1 takes no --guid").arg(verb.name));
        arguments.guid = parser.value(QStringLiteral("guid"));
    }
    if (parser.isSet(QStringLiteral("version"))) {
        bool isNumber = false;
        arguments.version = parser.value(QStringLiteral("version")).toInt(&isNumber);
        if (!verb.takesVersion)
            return badUse(QStringLiteral("%1 takes no --version").arg(verb.name));
        if (!isNumber || *arguments.version < 0)
            return badUse(QStringLiteral("--version takes a number"));
    }
    return verb.run(arguments);
}

int run(const QStringList& commandLine)
{
    QCommandLineParser parser;
    parser.addOptions({
        {{QStringLiteral("h"), QStringLiteral("help")}, QString()},
        {QStringLiteral("app-dir"), QString(), QStringLiteral("DIR")},
        {QStringLiteral("guid"), QString(), QStringLiteral("G")},
        {QStringLiteral("version"), QString(), QStringLiteral("N")},
    });
    if (!parser.parse(commandLine))
        return badUse(parser.errorText());
    if (parser.isSet(QStringLiteral("help"))) {
        print(kUsage);
        return Done;
    }
    if (parser.positionalArguments().isEmpty())
        return badUse(QStringLiteral("no verb"));
    const QString name = parser.positionalArguments().first();
    const auto verb = std::find_if(std::begin(kVerbs), std::end(kVerbs),
        [&](const Verb& candidate) { return candidate.name == name; });
    if (verb == std::end(kVerbs))
        return badUse(QStringLiteral("no such verb: '%1'").arg(name));
    if (parser.isSet(QStringLiteral("app-dir")))
        SetAppDir(parser.value(QStringLiteral("app-dir")));
    return runVerb(*verb, parser);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    int code = Failed;
    try {
        code = run(QCoreApplication::arguments());
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
