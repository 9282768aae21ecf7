#include "capture/SaveImageDialog.h"

#include "platform/FileDialog.h"

#include <QFileDialog>

namespace {

// Kept: the last pattern has a bracket too many; hosts that read the text know it so.
const QString filterPairs =
    QStringLiteral("PNG(*.png)|*.png|BMP(*.bmp)|*.bmp|JPG(*.jpg;*.jpeg)|*.jpg;*.jpeg)|||");
const QString defaultExtension = QStringLiteral(".png");
const QString suggestedName = QStringLiteral("截图未命名");
const QString title = QStringLiteral("另存为图片文件");

} // namespace

SaveImageDialog::~SaveImageDialog() = default;

QStringList NameFiltersOf(const QString& pairs)
{
    const QStringList parts = pairs.split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size() && !parts[i].isEmpty(); i += 2) {
        QString patterns = parts[i + 1];
        patterns.remove(QLatin1Char('(')).remove(QLatin1Char(')'));
        patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
        filters.append(parts[i].section(QLatin1Char('('), 0, 0) + QLatin1Char('(') + patterns
            + QLatin1Char(')'));
    }
    return filters;
}

bool DesktopSaveImageDialog::choose(QString& path)
{
    QStringList chosen;
    const auto prepare = [](QFileDialog& dialog) {
        dialog.setWindowTitle(title);
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setNameFilters(NameFiltersOf(filterPairs));
        dialog.setDefaultSuffix(defaultExtension);
        dialog.selectFile(suggestedName);
    };
    if (!RunFileDialog(prepare, chosen))
        return false;
    path = chosen.first();
    return true;
}
