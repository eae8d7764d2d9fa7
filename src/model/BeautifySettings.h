// SPDX-License-Identifier: MIT
#pragma once

namespace pintalux {

/// Whether and how a capture is framed: background, margin, rounded corners, shadow and border.
struct BeautifySettings {
    bool enabled = false;
    int gradient = 0;         ///< index into `Palette::gradients()`; any other value: transparent margin
    double padding = 56;      ///< margin around the image, in points
    double cornerRadius = 14; ///< radius of the image's corners, in points
    bool shadow = true;       ///< drop shadow under the image
    bool border = true;       ///< thin light line along the image's edge

    bool operator==(const BeautifySettings&) const = default;
};

} // namespace pintalux
