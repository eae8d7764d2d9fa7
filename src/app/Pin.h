#pragma once

#include <QImage>

class QWidget;

namespace pintalux {

/// A picture pinned above all other windows.
namespace PinnedImage {

/// Shows `image` in the middle of the screen of `near` (the main screen without one), at its size in points,
/// at most 60 % of the screen. `pixelScale` is image pixels per point.
void show(const QImage& image, double pixelScale, const QWidget* near);

} // namespace PinnedImage

} // namespace pintalux
