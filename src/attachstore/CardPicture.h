#pragma once

#include <QImage>
#include <QString>

namespace attachstore {

/// The picture of a card, 48 pixels high and of the format RGB32; docs/card.md tells where
/// everything stands. It is as wide as the wider of the two texts and 58 pixels more, but at most
/// 800. The icon is not scaled: of a larger one the top left 32 by 32 pixels are shown, and a null
/// image leaves its place white.
///
/// A null image if there is not enough memory for it. Needs a QGuiApplication.
QImage PaintCard(const QImage& icon, const QString& fileName, const QString& fileInfo);

} // namespace attachstore
