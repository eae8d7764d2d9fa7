// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QRectF>
#include <QString>

class QScreen;

namespace pintalux {

/// A screen as the toolkit knows it: where it lies in points and how dense it is.
struct ToolkitScreen {
    QString name;          ///< of the output; unique among the screens
    QRectF frame;          ///< points, origin top-left of the desktop
    double pixelScale = 1; ///< device pixels per point
};

/// The toolkit's screens now, the primary one first. Main thread only.
QList<ToolkitScreen> toolkitScreens();

/// The toolkit's screen of a display; null when it is gone.
QScreen* screenNamed(const QString& name);

/// The screen where the person is: the one under the pointer, else the main one. Null without any.
QScreen* screenUnderPointer();

} // namespace pintalux
