// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>

#include <optional>

class QWidget;

namespace pintalux::Exporter {

/// Asks with the desktop's own dialog where to save, beginning in `folder`, over `window` if there is one,
/// and saves there. Returns at once; what became of it is said on screen. The name gets its ending where it
/// lacks it, and a file that then stands in the way is only replaced after asking.
void savePanel(const QImage& image, double pixelScale, const QString& folder,
    const std::optional<QString>& name, QWidget* window = nullptr);

} // namespace pintalux::Exporter
