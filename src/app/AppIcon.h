#pragma once

#include <QImage>
#include <QString>

namespace pintalux {

/// The application's icons, drawn in code: no icon file is needed at run time.
namespace AppIcon {

/// The full-colour icon, `size` × `size` pixels; null for a size below 1.
QImage render(int size);

/// Writes the icon in all its sizes as PNG files into `directory`, which is made when missing. An icon that
/// cannot be written is skipped.
void writeIconset(const QString& directory);

} // namespace AppIcon

} // namespace pintalux
