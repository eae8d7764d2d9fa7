// SPDX-License-Identifier: MIT
#include "editor/canvas/CanvasView.h"
#include "platform/desktop/PointerPosition.h"
#include "platform/graphics/Geometry.h"

#include <QContextMenuEvent>
#include <QMouseEvent>

#include <utility>

namespace pintalux {

// ---- Events

void CanvasView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        press(documentPoint(exactPosition(*event)), Clicks::one);
}

void CanvasView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        press(documentPoint(exactPosition(*event)), Clicks::two);
}

void CanvasView::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons().testFlag(Qt::LeftButton))
        dragTo(documentPoint(exactPosition(*event)), event->modifiers().testFlag(Qt::ShiftModifier));
    else if (isActiveWindow())
        hoverAt(exactPosition(*event));
}

void CanvasView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        release();
}

void CanvasView::contextMenuEvent(QContextMenuEvent* event)
{
    event->ignore();
    if (gesture)
        return;
    finishText();
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const auto* mark = byKey
        ? model.selected()
        : pintalux::topAnnotation(model.doc(), documentPoint(QPointF(event->pos())), 1 / viewScale());
    if (!mark)
        return;
    const auto place = byKey ? viewPoint(mark->bounds().center()).toPoint() : event->pos();
    selectVisibly(*mark);
    event->accept();
    Q_EMIT markMenuRequested(mapToGlobal(place));
}

/// Selects a mark, with the tool `select` where the current one would not show it.
void CanvasView::selectVisibly(const Annotation& mark)
{
    const auto id = mark.id;
    if (!reshapesMarks(model.tool()) || !mark.hasNodes())
        model.setTool(Tool::select);
    model.setSelectedID(id);
}

// ---- Press, drag, release

void CanvasView::press(QPointF at, Clicks clicks)
{
    release(); // whatever a lost release has left
    if (textField) {
        setFocus();
        finishText();
    }
    lastTool = model.tool(); // what begins here is not finished by a change of tool before it
    pressedAt = at;
    pointer = {.at = at, .pointScale = 1 / viewScale()};
    if (!pressNode(at, clicks)) {
        switch (model.tool()) {
        case Tool::select:
            pressSelect(at, clicks);
            break;
        case Tool::arrow:
            pressCurvable(at, AnnotationKind::arrow);
            break;
        case Tool::line:
            pressCurvable(at, AnnotationKind::line);
            break;
        case Tool::rectangle:
            pressShape(at, AnnotationKind::rectangle);
            break;
        case Tool::ellipse:
            pressShape(at, AnnotationKind::ellipse);
            break;
        case Tool::blur:
            pressShape(at, AnnotationKind::blur);
            break;
        case Tool::pen:
            gesture = CanvasGestures::drawFreehand(model, AnnotationKind::pen, at);
            break;
        case Tool::highlighter:
            gesture = CanvasGestures::drawFreehand(model, AnnotationKind::highlighter, at);
            break;
        case Tool::step:
            pressStep(at);
            break;
        case Tool::text:
            pressText(at, clicks);
            break;
        case Tool::eraser:
            gesture = CanvasGestures::erase(model, pointer);
            break;
        case Tool::crop:
            pressCrop(at, clicks);
            break;
        }
    }
    refresh();
}

void CanvasView::dragTo(QPointF at, bool shift)
{
    constexpr double jitter = 2; // view points
    if (!gesture)
        return;
    pointer.at = at;
    pointer.shift = shift;
    pointer.pointScale = 1 / viewScale();
    pointer.moved = pointer.moved || distance(at, pressedAt) > jitter * pointer.pointScale;
    gesture->drag(pointer);
    refresh();
}

void CanvasView::release()
{
    if (const auto ended = std::exchange(gesture, nullptr)) {
        ended->release();
        refresh();
    }
}

// ---- What a press begins

const Annotation* CanvasView::topAnnotation(QPointF at) const
{
    return pintalux::topAnnotation(model.doc(), at, pointer.pointScale);
}

bool CanvasView::pressNode(QPointF at, Clicks clicks)
{
    const auto shown = overlay().nodesFor;
    const auto* mark = shown ? model.selected() : nullptr;
    const auto node = mark ? CanvasNodes::nearest(*mark, at, nodeReach * pointer.pointScale) : std::nullopt;
    if (!node)
        return false;

    if (clicks == Clicks::two && node->kind == CanvasNode::Kind::curve)
        restyleSelected([](Annotation& straightened) { straightened.control.reset(); });
    else if (clicks == Clicks::two && node->kind == CanvasNode::Kind::pointer)
        restyleSelected([](Annotation& tailless) { tailless.pointer.reset(); });
    else
        gesture = CanvasGestures::dragNode(model, *node);
    return true;
}

void CanvasView::pressSelect(QPointF at, Clicks clicks)
{
    const auto* top = topAnnotation(at);
    if (!top) {
        model.setSelectedID({});
    } else if (top->kind == AnnotationKind::text && clicks == Clicks::two) {
        editText(*top);
    } else {
        model.setSelectedID(top->id);
        gesture = CanvasGestures::moveSelected(model, at, false);
    }
}

void CanvasView::moveBody(const QUuid& id, QPointF at)
{
    model.setSelectedID(id);
    gesture = CanvasGestures::moveSelected(model, at, true);
}

void CanvasView::pressCurvable(QPointF at, AnnotationKind kind)
{
    const auto* top = topAnnotation(at);
    if (top && top->isCurvable())
        moveBody(top->id, at);
    else
        pressShape(at, kind);
}

void CanvasView::pressShape(QPointF at, AnnotationKind kind)
{
    model.setSelectedID({});
    gesture = CanvasGestures::drawShape(model, kind, at);
}

void CanvasView::pressStep(QPointF at)
{
    const auto* top = topAnnotation(at);
    if (top && top->kind == AnnotationKind::step)
        return moveBody(top->id, at);

    const Annotation step{.kind = AnnotationKind::step,
        .start = at,
        .end = at,
        .color = model.color(),
        .lineWidth = model.lineWidth(),
        .fontSize = model.fontSize(),
        .number = model.nextStepNumber()};
    model.add(step);
    model.setSelectedID(step.id);
    // Dragging on pulls the pointer out, which belongs to the step that placed the marker.
    gesture = CanvasGestures::dragNode(model, {CanvasNode::Kind::pointer}, false);
}

void CanvasView::pressText(QPointF at, Clicks clicks)
{
    const auto* top = topAnnotation(at);
    if (!top || top->kind != AnnotationKind::text)
        beginNewText(at);
    else if (top->filled && clicks == Clicks::one)
        moveBody(top->id, at);
    else
        editText(*top);
}

void CanvasView::pressCrop(QPointF at, Clicks clicks)
{
    // The first click of a double click has taken the rectangle away.
    if (clicks == Clicks::two && !model.cropRect())
        model.setCropRect(clickedCrop);
    clickedCrop = model.cropRect();
    if (clicks == Clicks::two && clickedCrop && containsPoint(*clickedCrop, at))
        model.applyCrop();
    else
        gesture = CanvasGestures::crop(model, at);
}

} // namespace pintalux
