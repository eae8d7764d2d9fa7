// SPDX-License-Identifier: MIT
#pragma once

#include <QRegion>

#include <functional>

class QPainter;

namespace pintalux {

/// Paints a window that is as large as a screen without the toolkit's picture of it.
///
/// The toolkit keeps a picture of every window that it paints. Made anew for each window, the memory of one
/// as large as a screen costs more time than all that is drawn into it, and on a screen of a fractional scale
/// it is not as large as the screen.
class DirectSurface {
public:
    /// Paints a part of the window, in its points; the painter is clipped to it.
    using Paint = std::function<void(QPainter& painter, const QRectF& part)>;

    virtual ~DirectSurface() = default;

    /// Paints `region`, in points of the window, from top to bottom, now or with the display's next frame;
    /// what is left of it does not matter once the display server is gone.
    virtual void paint(const QRegion& region, const Paint& paint) = 0;
};

} // namespace pintalux
