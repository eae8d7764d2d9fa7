// SPDX-License-Identifier: MIT
#include "platform/windowing/VisibleFrame.h"

#include "platform/x11/Struts.h"
#include "platform/x11/Toolkit.h"

#include <QGuiApplication>
#include <QScreen>

#include <cmath>

namespace pintalux {

QRect visibleFrame(const QScreen& screen)
{
    const auto whole = screen.geometry();
    auto* connection = x11::toolkitConnection();
    if (!connection || QGuiApplication::screens().size() < 2)
        return screen.availableGeometry();
    // The toolkit keeps a screen's corner where the server has it and scales what lies within.
    const double scale = screen.devicePixelRatio();
    const QRect native(whole.topLeft(), (QSizeF(whole.size()) * scale).toSize());
    const auto free = x11::freeOfStruts(connection, native).translated(-native.topLeft());
    const QPoint topLeft(int(std::ceil(free.x() / scale)), int(std::ceil(free.y() / scale)));
    const QPoint end(int((free.x() + free.width()) / scale), int((free.y() + free.height()) / scale));
    const QRect visible(topLeft, QSize(end.x() - topLeft.x(), end.y() - topLeft.y()));
    return free.size() == native.size() || visible.isEmpty() ? whole : visible.translated(whole.topLeft());
}

} // namespace pintalux
