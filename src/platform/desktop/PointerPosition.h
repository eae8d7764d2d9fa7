// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QSinglePointEvent>

namespace pintalux {

/// Where the pointer is in the widget that gets the event.
///
/// The toolkit gives it in whole points, which on a dense screen names every second pixel only.
/// What it dropped is still in the place in the window.
inline QPointF exactPosition(const QSinglePointEvent& event)
{
    const auto given = event.position();
    const auto inWindow = event.scenePosition();
    const auto dropped = inWindow - QPointF(inWindow.toPoint());
    const auto isWhole = [](double place) { return place == double(qRound(place)); };
    return given + QPointF(isWhole(given.x()) ? dropped.x() : 0, isWhole(given.y()) ? dropped.y() : 0);
}

} // namespace pintalux
