#include "capture/OverlayWindow.h"

#include "platform/PanelWindow.h"

#include <QResizeEvent>
#include <QScreen>

namespace pintalux {

OverlayWindow::OverlayWindow(
    const FrozenDisplay& display, QScreen& screen, CaptureOverlayController& controller)
    : name(display.screen.name)
    , overlayView(new OverlayView(display, controller, this))
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusProxy(overlayView);
    makeScreenPanel(*this, screen);
    overlayView->setGeometry(rect());
}

void OverlayWindow::resizeEvent(QResizeEvent* event) { overlayView->resize(event->size()); }

} // namespace pintalux
