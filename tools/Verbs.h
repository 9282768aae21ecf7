#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// What nmnote can do. A verb prints its result to the standard output and complaints to the
/// standard error stream, and returns the exit code.
namespace nmnote {

enum ExitCode { Done = 0, Failed = 1, BadUse = 2 };

/// The arguments behind the verb, taken apart and checked: a verb sees only options that it takes,
/// and all that it must have.
struct Arguments {
    QStringList operands;
    QString guid; ///< --guid
    QString note; ///< --note
    QString attachment; ///< --attachment
    QString orig; ///< --orig
    QString classValue; ///< --class
    QString srcValue; ///< --src
    std::optional<int> version; ///< --version
    bool embed = false; ///< --embed
};

int parseVerb(const Arguments& arguments);
int namesVerb(const Arguments& arguments);
int readVerb(const Arguments& arguments);
int textVerb(const Arguments& arguments);
int rewriteVerb(const Arguments& arguments);
int saveVerb(const Arguments& arguments);
int importVerb(const Arguments& arguments);
int cardVerb(const Arguments& arguments);
int syncVerb(const Arguments& arguments);
int upgradeVerb(const Arguments& arguments);
int mhtVerb(const Arguments& arguments);
int clipVerb(const Arguments& arguments);
int filesVerb(const Arguments& arguments);
int md5Verb(const Arguments& arguments);
int checkVerb(const Arguments& arguments);

} // namespace nmnote
