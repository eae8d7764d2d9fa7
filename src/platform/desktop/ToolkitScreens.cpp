// SPDX-License-Identifier: MIT
#include "platform/desktop/ToolkitScreens.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace pintalux {

QList<ToolkitScreen> toolkitScreens()
{
    QList<ToolkitScreen> result;
    for (const auto* screen : QGuiApplication::screens())
        result.append({screen->name(), QRectF(screen->geometry()), screen->devicePixelRatio()});
    return result;
}

QScreen* screenNamed(const QString& name)
{
    const auto screens = QGuiApplication::screens();
    const auto found = std::ranges::find(screens, name, &QScreen::name);
    return found == screens.end() ? nullptr : *found;
}

QScreen* screenUnderPointer()
{
    const auto pointer = QCursor::pos();
    if (auto* screen = QGuiApplication::screenAt(pointer))
        return screen;
    // In the last pixels of a dense screen the pointer's whole point is already beyond it.
    const auto screens = QGuiApplication::screens();
    const auto found = std::ranges::find_if(screens,
        [&](const QScreen* screen) { return screen->geometry().adjusted(0, 0, 1, 1).contains(pointer); });
    return found == screens.end() ? QGuiApplication::primaryScreen() : *found;
}

} // namespace pintalux
