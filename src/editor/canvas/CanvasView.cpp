// SPDX-License-Identifier: MIT
#include "editor/canvas/CanvasView.h"

#include "app/messages/HUD.h"
#include "controls/theme/Theme.h"
#include "editor/canvas/CanvasTextField.h"
#include "editor/state/DocumentEditing.h"
#include "render/Renderer.h"
#include "render/export/Clipboard.h"

#include <QAccessibleWidget>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

/// Tells assistive technology that this is a drawing surface.
QAccessibleInterface* accessibleCanvas(const QString&, QObject* object)
{
    auto* canvas = qobject_cast<CanvasView*>(object);
    return canvas ? new QAccessibleWidget(canvas, QAccessible::Canvas) : nullptr;
}

} // namespace

CanvasView::CanvasView(EditorModel& edited, QWidget* parent)
    : QWidget(parent)
    , model(edited)
    , picture(edited.cache())
    , lastTool(edited.tool())
{
    static const bool installed = [] {
        QAccessible::installFactory(accessibleCanvas);
        return true;
    }();
    Q_UNUSED(installed)
    setAccessibleName(u"Lienzo de la captura"_s);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAcceptDrops(true);
    showCursor();
    connect(&model, &EditorModel::changed, this, &CanvasView::modelChanged);
}

CanvasView::~CanvasView() = default;

// ---- Where things are

CanvasMapping CanvasView::mapping() const
{
    return CanvasMapping::fitted(size(), freeMargins, model.doc(), model.beautify(), devicePixelRatioF());
}

QPointF CanvasView::visibleImageCenter() const
{
    return documentPoint({width() / 2.0, (height() + freeMargins.top() - freeMargins.bottom()) / 2.0});
}

int CanvasView::zoom() const { return int(std::round(viewScale() * model.doc().pixelScale * 100)); }

void CanvasView::setInsets(const QMargins& viewPoints)
{
    freeMargins = viewPoints;
    refresh();
}

// ---- What is shown

Renderer::Overlay CanvasView::overlay() const
{
    const bool reshapes = reshapesMarks(model.tool());
    const auto* selected = model.selected();

    Renderer::Overlay shown;
    if (gesture && gesture->draft())
        shown.draft = *gesture->draft();
    else if ((shown.draft = textPreview()))
        shown.glyphlessID = shown.draft->id;
    shown.hiddenID = editingID;
    if (selected && selected->hasNodes() && reshapes && !(gesture && gesture->draft()))
        shown.nodesFor = selected->id;
    if (selected && !selected->hasNodes() && model.tool() == Tool::select)
        shown.selectedID = selected->id;
    shown.pointScale = 1 / viewScale();
    if (model.tool() == Tool::crop)
        shown.crop = model.cropRect();
    return shown;
}

CanvasScene CanvasView::scene() const
{
    return {.mapping = mapping(),
        .document = model.doc(),
        .beautify = model.beautify(),
        .overlay = overlay(),
        .moving = gesture ? gesture->moving() : std::nullopt,
        .view = rect(),
        .devicePixelRatio = devicePixelRatioF(),
        .surroundings = Theme::current().canvas};
}

void CanvasView::modelChanged()
{
    // Once for many changes, and never inside one of them.
    if (std::exchange(refreshIsDue, true))
        return;
    const auto catchUp = [this] {
        refreshIsDue = false;
        showCursor();
        if (std::exchange(lastTool, model.tool()) != model.tool())
            finishText();
        refresh();
    };
    QMetaObject::invokeMethod(this, catchUp, Qt::QueuedConnection);
}

void CanvasView::restyleSelected(const EditorModel::AnnotationChange& change)
{
    const auto* selected = model.selected();
    if (!selected)
        return;
    auto restyled = *selected;
    change(restyled);
    if (restyled != *selected)
        model.restyleSelected(change);
}

void CanvasView::refresh()
{
    if (size().isEmpty())
        return;
    if (textField)
        layOutTextField();
    hoverInfo.setDrawn(drawn());
    const auto damage = picture.show(scene());
    if (!damage.isEmpty())
        update(damage);
}

std::optional<HoverInfo::Drawn> CanvasView::drawn() const
{
    using Drawn = HoverInfo::Drawn;
    if (const auto& crop = model.cropRect())
        return Drawn{Drawn::Kind::crop, DocumentEditing::croppedArea(model.doc(), *crop).size()};
    const auto* draft = gesture ? gesture->draft() : nullptr;
    const bool hasSize = draft
        && (draft->kind == AnnotationKind::rectangle || draft->kind == AnnotationKind::ellipse
            || draft->kind == AnnotationKind::blur);
    if (!hasSize)
        return std::nullopt;
    return Drawn{Drawn::Kind::shape, draft->rect().size().toSize()};
}

void CanvasView::paintEvent(QPaintEvent* event)
{
    // A move to a screen of another scale announces itself by this event alone; and the model may have
    // changed since the last look at it.
    if (const auto missed = picture.show(scene()) - event->region(); !missed.isEmpty())
        update(missed);
    QPainter painter(this);
    for (const QRect& part : event->region())
        picture.paint(painter, part);

    if (zoom() != hoverInfo.zoom())
        QMetaObject::invokeMethod(
            this, [this] { hoverInfo.setZoom(zoom()); }, Qt::QueuedConnection);
}

void CanvasView::resizeEvent(QResizeEvent*) { refresh(); }

void CanvasView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        refresh();
}

void CanvasView::showCursor()
{
    if (model.tool() == Tool::text)
        setCursor(Qt::IBeamCursor);
    else
        setCursor(model.tool() == Tool::select ? Qt::ArrowCursor : Qt::CrossCursor);
}

// ---- The colour under the pointer

void CanvasView::hoverAt(QPointF viewPoint)
{
    const auto at = documentPoint(viewPoint);
    const QPoint pixel(int(std::floor(at.x())), int(std::floor(at.y())));
    hoverInfo.setColor(Renderer::pictureColor(model.doc(), pixel, model.cache()));
}

void CanvasView::copyHoverColor()
{
    const auto hex = hoverInfo.hex();
    if (hex.isEmpty())
        return;
    Clipboard::copy(hex);
    HUD::show(u"Color %1 copiado"_s.arg(hex), u"eyedropper"_s, hoverInfo.color());
}

// ---- For the self-test

QString CanvasView::debugState() const
{
    const auto truth = [](bool value) { return value ? u"true"_s : u"false"_s; };
    const auto node = gesture ? gesture->node() : std::nullopt;
    return u"draft=%1 nodeDrag=%2 body=%3 editing=%4"_s.arg(truth(gesture && gesture->draft()),
        node ? node->name() : u"nil"_s, truth(gesture && gesture->movesBody()), truth(textField));
}

void CanvasView::debugDrag(QPointF from, QPointF to)
{
    press(from, Clicks::one);
    dragTo(to, false);
    release();
}

} // namespace pintalux
