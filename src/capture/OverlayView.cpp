// SPDX-License-Identifier: MIT
#include "capture/OverlayView.h"

#include "capture/OverlayDrawing.h"
#include "platform/base/Trace.h"
#include "platform/desktop/LetterKey.h"
#include "platform/desktop/PointerPosition.h"
#include "platform/desktop/WindowSystem.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Geometry.h"
#include "platform/image/PixelSampler.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QTimer>

#include <utility>

namespace pintalux {

OverlayView::OverlayView(FrozenDisplay frozen, OverlayMode mode, bool listsWindows, Actions asked)
    : display(std::move(frozen))
    , currentMode(mode)
    , listsWindows(listsWindows)
    , actions(std::move(asked))
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::CrossCursor);
}

void OverlayView::refresh()
{
    const auto former = std::exchange(shown, layOut(scene()));
    update(damage(former, shown));
}

void OverlayView::debugSimulate(const std::optional<QRectF>& selection, QPointF pointer)
{
    if (selection) {
        dragStart = selection->topLeft();
        dragCurrent = selection->bottomRight();
    }
    mouse = pointer;
    refresh();
}

// ---- What is shown

OverlayScene OverlayView::scene() const
{
    OverlayScene scene;
    scene.mode = currentMode;
    scene.listsWindows = listsWindows;
    scene.viewSize = size();
    scene.imageSize = display.image.size();
    scene.pixelScale = display.pixelScale;
    scene.mouse = mouse;
    scene.hasKeyboard = actions.keyView() == this;
    if (!selectsWindows()) {
        scene.selection = dragged();
    } else if (const auto* hovered = hoveredWindow()) {
        scene.selection = hovered->window.frameOn(display.screen).translated(-display.screen.frame.topLeft());
        scene.windowTitle = hovered->title;
    }
    return scene;
}

std::optional<QRectF> OverlayView::dragged() const
{
    if (!dragStart || !dragCurrent)
        return std::nullopt;
    return QRectF(*dragStart, *dragCurrent).normalized();
}

const WindowCandidate* OverlayView::hoveredWindow() const
{
    if (!selectsWindows() || !mouse)
        return nullptr;
    return actions.windowAt(*mouse + display.screen.frame.topLeft(), display.screen);
}

std::optional<QString> OverlayView::hexColorAt(QPointF viewPoint) const
{
    const auto pixel = pixelAt(viewPoint, display.pixelScale);
    const auto color = PixelSampler::color(display.image, pixel.x(), pixel.y());
    return color ? std::optional(hexString(*color)) : std::nullopt;
}

void OverlayView::paintThrough(std::unique_ptr<DirectSurface> direct)
{
    surface = std::move(direct);
    setAttribute(Qt::WA_PaintOnScreen, surface != nullptr);
}

QPaintEngine* OverlayView::paintEngine() const { return surface ? nullptr : QWidget::paintEngine(); }

void OverlayView::paint(QPainter& painter, const QRectF& part)
{
    GraphicsContext context(painter);
    const GraphicsContext::Saved saved(context);
    context.clip(part);
    OverlayDrawing::draw(shown, display.image, part, context);
}

void OverlayView::paintEvent(QPaintEvent* event)
{
    QPoint offset;
    if (surface && !redirected(&offset)) {
        surface->paint(
            event->region(), [this](QPainter& painter, const QRectF& part) { paint(painter, part); });
    } else {
        QPainter painter(this);
        // Rectangle by rectangle: the toolkit blends much faster inside one than through a region.
        for (const QRect& part : event->region())
            paint(painter, QRectF(part));
    }
    if (!std::exchange(isPainted, true)) // it reaches the screen when this event is over
        QTimer::singleShot(0, this, [] { Trace::mark(u"superposición pintada"); });
}

void OverlayView::resizeEvent(QResizeEvent*) { refresh(); }

// ---- The pointer

void OverlayView::enterEvent(QEnterEvent* event)
{
    mouse = exactPosition(*event);
    actions.entered(*this);
    WindowSystem::current().giveKeyboard(*window());
    setFocus();
    actions.refreshAll();
}

void OverlayView::leaveEvent(QEvent*)
{
    mouse.reset();
    refresh();
}

void OverlayView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        press(exactPosition(*event));
    else if (event->button() == Qt::RightButton)
        actions.finish(Outcome::Cancelled());
}

void OverlayView::press(QPointF viewPoint)
{
    mouse = viewPoint;
    switch (currentMode) {
    case OverlayMode::color:
        pickColorAt(viewPoint);
        break;
    case OverlayMode::window:
        if (const auto* hovered = hoveredWindow())
            actions.finish(Outcome::Window{hovered->window, hovered->title});
        if (listsWindows)
            break;
        [[fallthrough]];
    case OverlayMode::area:
    case OverlayMode::text:
        dragStart = dragCurrent = cornerAt(viewPoint);
        break;
    }
    refresh();
}

void OverlayView::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() & Qt::LeftButton) {
        drag(exactPosition(*event), event->modifiers().testFlag(Qt::ShiftModifier));
    } else if (event->buttons() == Qt::NoButton) {
        mouse = exactPosition(*event);
        actions.refreshAll();
    }
}

// The pointer stands on a pixel and cannot go beyond the desktop's last one; there it means the edge, or the
// last row and column could not be selected.
QPointF OverlayView::cornerAt(QPointF viewPoint) const
{
    const double pixel = 1 / display.pixelScale;
    const auto kept = [pixel](double place, double end) {
        constexpr double tolerance = 1e-6;
        return place > end - pixel - tolerance ? end : std::max(place, 0.0);
    };
    return {kept(viewPoint.x(), width()), kept(viewPoint.y(), height())};
}

void OverlayView::drag(QPointF viewPoint, bool square)
{
    if (!dragStart)
        return;
    auto end = cornerAt(viewPoint);
    if (square) {
        const auto way = end - *dragStart;
        const double side = std::max(std::abs(way.x()), std::abs(way.y()));
        end = *dragStart + QPointF(way.x() >= 0 ? side : -side, way.y() >= 0 ? side : -side);
    }
    dragCurrent = end;
    // Still on this screen where it only touches its edge.
    mouse = containsPoint(QRectF(rect()), viewPoint) && !square ? viewPoint : end;
    refresh();
}

void OverlayView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    constexpr double smallest = 3;
    const auto selection = dragged();
    if (selection && selection->width() >= smallest && selection->height() >= smallest)
        finishWithCrop(*selection);
    endDrag();
}

void OverlayView::endDrag()
{
    dragStart.reset();
    dragCurrent.reset();
    refresh();
}

// ---- The keys

void OverlayView::keyPressEvent(QKeyEvent* event)
{
    // A key that is held must not end the overlay after it ended the drag, nor let the modes flicker.
    if (event->isAutoRepeat())
        return;
    auto* view = actions.keyView();
    (view ? *view : *this).pressKey(*event);
}

void OverlayView::pressKey(const QKeyEvent& event)
{
    if (isLetterKey(event, 'C')) {
        if (mouse)
            pickColorAt(*mouse);
        return;
    }
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (currentMode != OverlayMode::color && !selectsWindows())
            finishWithCrop(rect());
        break;
    case Qt::Key_Space:
        actions.toggleWindowMode();
        break;
    case Qt::Key_Escape:
        escape();
        break;
    default:
        break;
    }
}

void OverlayView::escape()
{
    if (dragStart)
        endDrag();
    else
        actions.finish(Outcome::Cancelled());
}

void OverlayView::focusInEvent(QFocusEvent*) { refresh(); }
void OverlayView::focusOutEvent(QFocusEvent*) { refresh(); }

void OverlayView::closeEvent(QCloseEvent*) { actions.finish(Outcome::Cancelled()); }

// ---- Ways out

void OverlayView::pickColorAt(QPointF viewPoint)
{
    const auto hex = hexColorAt(viewPoint);
    if (hex)
        actions.finish(Outcome::Color{*hex});
}

void OverlayView::finishWithCrop(const QRectF& viewRect)
{
    const auto pixels = pixelsOf(viewRect, display.pixelScale, display.image.size());
    if (pixels.isEmpty())
        return;
    const CaptureResult result{display.image.copy(pixels), display.pixelScale, std::nullopt};
    if (result.image.isNull())
        return;
    if (currentMode == OverlayMode::text)
        actions.finish(Outcome::Text{result});
    else
        actions.finish(Outcome::Image{result});
}

} // namespace pintalux
