// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QString>

namespace pintalux {

/// The application's icons, drawn in code: no icon file is needed at run time.
namespace AppIcon {

/// The status item's image: one colour on clear ground, drawn anew for each size and device pixel ratio.
/// Whoever shows it chooses the colour that stands out from the panel.
QIcon statusBarImage(const QColor& color);

/// The full-colour icon, `size` × `size` pixels; null for a size below 1.
QImage render(int size);

/// The icon of the program's windows in title bars, task bars and window switchers.
const QIcon& windowIcon();

/// Writes the icon in all its sizes as PNG files into `directory`, which is made when missing. An icon that
/// cannot be written is skipped.
void writeIconset(const QString& directory);

} // namespace AppIcon

} // namespace pintalux
