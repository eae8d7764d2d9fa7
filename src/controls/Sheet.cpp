// SPDX-License-Identifier: MIT
#include "controls/Sheet.h"

#include "platform/graphics/Draw.h"

#include <QBitmap>
#include <QEvent>
#include <QPainter>
#include <QWidget>
#include <QWindow>

namespace pintalux {

Sheet::Sheet(QWidget& owner, WindowRole ownersRole, const Form& ownersForm)
    : window(owner)
    , role(ownersRole)
    , form(ownersForm)
{
    // Even without a compositor now, for the window keeps the kind of pixels that it is made with.
    window.setAttribute(Qt::WA_TranslucentBackground);
    const auto& system = WindowSystem::current();
    system.prepare(window, role);
    window.installEventFilter(this);
    connect(&system, &WindowSystem::compositorChanged, this, [this] {
        if (window.internalWinId())
            shapeWindow();
        window.update();
        Q_EMIT changed();
    });
}

QRect Sheet::rect() const
{
    return window.rect().adjusted(form.margin, form.margin, -form.margin, -form.margin);
}

void Sheet::paint(Elevation::Level level, QColor ground, QPainter& painter) const
{
    const auto& theme = Theme::of(window.palette());
    const QRectF sheet(rect());
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isTranslucent()) {
        ground.setAlpha(255);
        painter.fillRect(sheet, ground);
        return Elevation::drawInnerEdge(sheet, radius(), theme, painter);
    }
    Elevation::drawShadow(level, sheet, radius(), theme, painter);
    painter.fillPath(Draw::roundedRect(sheet, radius()), ground);
    Elevation::drawEdge(sheet, radius(), theme, painter);
}

bool Sheet::eventFilter(QObject* watched, QEvent* event)
{
    const auto type = event->type();
    if (type == QEvent::Show && role == WindowRole::pin)
        window.windowHandle()->installEventFilter(this);
    // At the first exposure the window manager has taken a managed window into its care.
    const bool isFirstExposure
        = type == QEvent::Expose && watched != &window && !std::exchange(exposed, true);
    const bool isResized = type == QEvent::Resize && watched == &window && window.internalWinId();
    if (isResized || isFirstExposure || (type == QEvent::Show && watched == &window))
        shapeWindow();
    if (isFirstExposure)
        WindowSystem::current().settle(window, role);
    return false;
}

void Sheet::shapeWindow()
{
    if (isTranslucent())
        window.clearMask();
    else
        window.setMask(outline());
    WindowSystem::current().describe(window, role, rect());
}

QRegion Sheet::outline() const
{
    if (radius() == 0)
        return rect();
    QBitmap mask(window.size());
    mask.clear();
    QPainter(&mask).fillPath(Draw::roundedRect(rect(), radius()), Qt::color1);
    return mask;
}

} // namespace pintalux
