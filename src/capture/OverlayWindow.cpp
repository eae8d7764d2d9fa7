#include "capture/OverlayWindow.h"

#include "platform/PanelWindow.h"

#include <QScreen>

namespace pintalux {

OverlayWindow::OverlayWindow(
    const FrozenDisplay& display, QScreen& screen, CaptureOverlayController& controller)
    : OverlayView(display, controller)
    , name(display.screen.name)
{
    makeScreenPanel(*this, screen, display.screen.frame.toAlignedRect());
    surface = makeDirectSurface(*this);
    setAttribute(Qt::WA_PaintOnScreen, surface != nullptr);
    paintThrough(surface.get());
}

QPaintEngine* OverlayWindow::paintEngine() const { return surface ? nullptr : OverlayView::paintEngine(); }

} // namespace pintalux
