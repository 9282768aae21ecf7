#include "Output.h"
#include "Verbs.h"

#include "support/FileMd5.h"

namespace nmnote {
namespace {

// As md5sum has it: a name that would break the line is escaped, and a backslash in front of the
// line says so.
QString line(const QString& digest, const QString& path)
{
    QString name = path;
    name.replace(u'\\', QStringLiteral("\\\\"))
        .replace(u'\n', QStringLiteral("\\n"))
        .replace(u'\r', QStringLiteral("\\r"));
    const QString mark = name == path ? QString() : QStringLiteral("\\");
    return mark + digest + QStringLiteral("  ") + name + u'\n';
}

} // namespace

int md5Verb(const Arguments& arguments)
{
    int code = Done;
    for (const QString& path : arguments.operands) {
        const QString digest = FileMd5(path);
        if (digest.isEmpty()) {
            complain(QStringLiteral("cannot read '%1'").arg(path));
            code = Failed;
        } else {
            print(line(digest, path));
        }
    }
    return code;
}

} // namespace nmnote
