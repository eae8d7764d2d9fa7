#include "editor/CanvasView.h"

#include "render/Renderer.h"

namespace pintalux {

CanvasView::CanvasView(EditorModel& edited, QWidget* parent)
    : QWidget(parent)
    , model(edited)
{
}

CanvasView::~CanvasView() = default;

void CanvasView::setInsets(const QMargins& viewPoints)
{
    freeMargins = viewPoints;
    update();
}

double CanvasView::viewScale() const
{
    const auto& doc = model.doc();
    const auto whole = Renderer::compositionSize(doc.image, model.beautify(), doc.pixelScale);
    const auto free = QRectF(rect()).marginsRemoved(freeMargins);
    return std::min({std::max(free.width(), 10.0) / whole.width(),
        std::max(free.height(), 10.0) / whole.height(), 1 / doc.pixelScale});
}

QPointF CanvasView::viewOrigin() const
{
    const auto& doc = model.doc();
    const auto whole = Renderer::compositionSize(doc.image, model.beautify(), doc.pixelScale) * viewScale();
    const auto free = QRectF(rect()).marginsRemoved(freeMargins);
    return {std::round(free.x() + (free.width() - whole.width()) / 2),
        std::round(free.y() + (free.height() - whole.height()) / 2)};
}

QPointF CanvasView::documentPoint(QPointF viewPoint) const
{
    const auto& doc = model.doc();
    const auto image = Renderer::imageRect(doc.image, model.beautify(), doc.pixelScale);
    return (viewPoint - viewOrigin()) / viewScale() - image.topLeft();
}

QPointF CanvasView::viewPoint(QPointF documentPoint) const
{
    const auto& doc = model.doc();
    const auto image = Renderer::imageRect(doc.image, model.beautify(), doc.pixelScale);
    return viewOrigin() + viewScale() * (documentPoint + image.topLeft());
}

QPointF CanvasView::visibleImageCenter() const
{
    return documentPoint({width() / 2.0, (height() + freeMargins.top() - freeMargins.bottom()) / 2.0});
}

void CanvasView::commitText() { }

void CanvasView::paste() { }

void CanvasView::copyHoverColor() { }

} // namespace pintalux
