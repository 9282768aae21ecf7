#include "capture/IconFile.h"

#include "capture/IconDirectory.h"

#include <QGuiApplication>

using capture::PackedIcon;

QImage LoadIconFile(const QString& resName)
{
    const std::vector<PackedIcon> icons =
        capture::ReadIconDirectory(resName, capture::IconKind::Icon);
    if (icons.empty())
        return {};
    const int width = icons.front().size.width();
    const auto isEnough = [enough = width * qGuiApp->devicePixelRatio()](
                              const PackedIcon& icon) { return icon.size.width() >= enough; };
    const PackedIcon* best = &icons.front();
    for (const PackedIcon& icon : icons) {
        const int more = icon.size.width() - best->size.width();
        if (isEnough(icon) ? !isEnough(*best) || more < 0 : !isEnough(*best) && more > 0)
            best = &icon;
    }
    QImage image = UnpackIcon(*best);
    if (!image.isNull())
        image.setDevicePixelRatio(qreal(best->size.width()) / width);
    return image;
}
