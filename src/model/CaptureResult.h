// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>

#include <optional>

namespace pintalux {

/// A captured picture, ready for delivery.
struct CaptureResult {
    QImage image;                         ///< the captured pixels, sRGB
    double pixelScale = 1;                ///< image pixels per screen point
    std::optional<QString> suggestedName; ///< proposed for the saved file; a captured window's title
};

} // namespace pintalux
