#include "capture/OverlayWindow.h"

#include "platform/PanelWindow.h"

#include <QCoreApplication>
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
    setMouseTracking(true);
    setCursor(Qt::CrossCursor);
    makeScreenPanel(*this, screen, display.screen.frame.toAlignedRect());
    overlayView->setGeometry(rect());
}

// The toolkit looks for the child under the pointer at whole points: on a dense screen it finds none at the
// last pixels. So the window takes all that the pointer does.
bool OverlayWindow::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
        return QCoreApplication::sendEvent(overlayView, event);
    default:
        return QWidget::event(event);
    }
}

void OverlayWindow::resizeEvent(QResizeEvent* event) { overlayView->resize(event->size()); }

} // namespace pintalux
