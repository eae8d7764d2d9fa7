// SPDX-License-Identifier: MIT
#pragma once

#include "platform/wayland/Connection.h"

#include <QImage>
#include <QSize>
#include <QString>

#include <memory>
#include <vector>

namespace pintalux::wayland {

/// An output of the compositor, as one connection knows it.
struct Output {
    Handle<wl_output, endOutput> object;
    QString name; ///< of the connector; empty where the compositor does not tell it
    QSize mode;   ///< pixels of the device, before it is turned
    int transform = WL_OUTPUT_TRANSFORM_NORMAL; ///< how the desktop is turned to be shown on it

    /// The pixels as people see them: upright.
    QSize nativeSize() const;
    /// A picture of the device's pixels, upright.
    QImage upright(const QImage& devicePixels) const;
};

using Outputs = std::vector<std::unique_ptr<Output>>;

/// All of them now. Throws as the connection does.
Outputs readOutputs(const Connection& connection);

} // namespace pintalux::wayland
