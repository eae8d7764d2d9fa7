// SPDX-License-Identifier: MIT
#pragma once

#include "controls/theme/Elevation.h"
#include "platform/desktop/WindowSystem.h"

namespace pintalux {

/// Makes a window a rounded sheet that floats on the desktop: messages, tool tips, popovers, menus, the
/// thumbnail, pins.
///
/// The window has room around the sheet for its shadow. Under a compositor that room shows what is below;
/// without one, where it would be black, the window is cut to the sheet. The sheet follows a compositor that
/// comes or goes while the window lives.
class Sheet : public QObject {
    Q_OBJECT

public:
    struct Form {
        double radius;
        int margin = 0;         ///< room on every side of the sheet; points
        bool cutSquare = false; ///< without a compositor the corners are square
    };

    /// Before the window is first shown; its flags and attributes are set.
    Sheet(QWidget& window, WindowRole role, const Form& form);

    /// Within the window; points.
    QRect rect() const;
    /// True while what is below can be seen through the window.
    bool isTranslucent() const { return WindowSystem::current().hasCompositor(); }
    /// Of the corners, as they are now.
    double radius() const { return form.cutSquare && !isTranslucent() ? 0 : form.radius; }

    /// Paints the sheet with its shadow and its edge, in the theme of the window. Without a compositor
    /// nothing shines through `ground`.
    void paint(Elevation::Level level, QColor ground, QPainter& painter) const;

Q_SIGNALS:
    /// A compositor came or went; the window is painted anew.
    void changed();

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void shapeWindow();
    QRegion outline() const;

    QWidget& window;
    WindowRole role;
    Form form;
    bool exposed = false; ///< has been on the screen
};

} // namespace pintalux
