#include "Output.h"
#include "StoreCheck.h"
#include "Verbs.h"

#include "support/AppDirs.h"

#include <QDir>

#include <algorithm>

namespace nmnote {
namespace {

QString nameOf(Finding::Kind kind)
{
    switch (kind) {
    case Finding::Damaged:
        return QStringLiteral("damaged");
    case Finding::Missing:
        return QStringLiteral("missing");
    case Finding::Changed:
        return QStringLiteral("changed");
    case Finding::Leftover:
        return QStringLiteral("leftover");
    }
    return {};
}

QString line(const Finding& finding)
{
    QString text = nameOf(finding.kind) + QStringLiteral(": ") + finding.file;
    if (!finding.detail.isEmpty())
        text += QStringLiteral(" (%1)").arg(finding.detail);
    return text + u'\n';
}

} // namespace

int checkVerb(const Arguments& arguments)
{
    // Not GetAttachmentDir, which would make a missing store.
    const QString store = arguments.operands.isEmpty() ? GetAppDir() + QStringLiteral("userdata")
            + QDir::separator() + QStringLiteral("attachment")
                                                       : arguments.operands.first();
    StoreCheck check(store);
    if (!check.run()) {
        complain(QStringLiteral("cannot read the store '%1'").arg(store));
        return Failed;
    }
    const auto& findings = check.findings();
    for (const Finding& finding : findings)
        print(line(finding));
    print(QStringLiteral("%1 files, %2 of them notes; %3 findings\n")
              .arg(check.fileCount())
              .arg(check.noteCount())
              .arg(findings.size()));
    return std::any_of(findings.begin(), findings.end(),
               [](const Finding& finding) { return finding.isWrong(); })
        ? Failed
        : Done;
}

} // namespace nmnote
