// SPDX-License-Identifier: MIT
#pragma once

#include <QRegion>

#include <functional>

class QPainter;

namespace pintalux {

/// Paints a window that is as large as a screen through a buffer of a few of its rows.
///
/// The toolkit keeps a picture of every window that it paints. Made anew for each window, the memory of one
/// as large as a screen costs more time than all that is drawn into it; a small buffer that is filled again
/// and again never leaves the processor's cache.
class DirectSurface {
public:
    /// Paints a part of the window, in its points; the painter is clipped to it.
    using Paint = std::function<void(QPainter& painter, const QRectF& part)>;

    virtual ~DirectSurface() = default;

    /// Paints `region`, in points of the window, from top to bottom; what is left of it does not matter once
    /// the display server is gone.
    virtual void paint(const QRegion& region, const Paint& paint) = 0;
};

} // namespace pintalux
