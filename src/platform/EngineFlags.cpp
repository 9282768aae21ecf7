#include "platform/EngineFlags.h"

#include <QStringList>
#include <QtGlobal>

namespace {

constexpr auto variable = "QTWEBENGINE_CHROMIUM_FLAGS";
constexpr QLatin1StringView enable("--enable-blink-features=");
constexpr QLatin1StringView disable("--disable-blink-features=");
constexpr QLatin1StringView feature("HighlightAPI");

[[maybe_unused]] const bool atLoad = [] {
    EnableEngineFeatures();
    return true;
}();

bool names(const QString& flag, QLatin1StringView option)
{
    return flag.startsWith(option) && flag.mid(option.size()).split(u',').contains(feature);
}

} // namespace

QString WithEngineFeatures(const QString& flags)
{
    QStringList list = flags.split(u' ', Qt::SkipEmptyParts);
    QString* enabled = nullptr;
    for (QString& flag : list) {
        if (names(flag, enable) || names(flag, disable))
            return flags;
        // Of two flags with one name the engine takes the last.
        if (flag.startsWith(enable))
            enabled = &flag;
    }
    if (enabled)
        enabled->append(u',').append(feature);
    else
        list.append(QString(enable) + feature);
    return list.join(u' ');
}

void EnableEngineFeatures()
{
    const QString flags = qEnvironmentVariable(variable);
    const QString wanted = WithEngineFeatures(flags);
    if (wanted != flags)
        qputenv(variable, wanted.toLocal8Bit());
}
