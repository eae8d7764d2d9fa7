// SPDX-License-Identifier: MIT
#include "editor/state/StyleActions.h"

#include <utility>

namespace pintalux {

namespace {

void restyle(EditorModel& model, AnnotationKind kind, const EditorModel::AnnotationChange& change)
{
    const auto* mark = model.selected();
    if (mark && mark->kind == kind)
        model.restyleSelected(change);
}

} // namespace

namespace StyleActions {

void chooseColor(EditorModel& model, const QColor& color)
{
    model.setColor(color);
    model.restyleSelected([&](Annotation& mark) { mark.color = color; });
}

void chooseWidth(EditorModel& model, double points)
{
    model.setStrokeWidth(points);
    model.restyleSelected([&](Annotation& mark) { mark.lineWidth = model.lineWidth(); });
}

void chooseArrowStyle(EditorModel& model, ArrowStyle style)
{
    model.setArrowStyle(style);
    model.restyleSelected([&](Annotation& mark) { mark.arrowStyle = style; });
}

void chooseBlurStyle(EditorModel& model, BlurStyle style)
{
    model.setBlurStyle(style);
    restyle(model, AnnotationKind::blur, [&](Annotation& mark) { mark.blurStyle = style; });
}

void toggleFilled(EditorModel& model)
{
    model.setFilled(!model.shownStyle().filled);
    model.restyleSelected([&](Annotation& mark) { mark.filled = model.filled(); });
}

void toggleHandwritten(EditorModel& model)
{
    model.setHandwritten(!model.shownStyle().handwritten);
    restyle(model, AnnotationKind::text, [&](Annotation& mark) { mark.handwritten = model.handwritten(); });
}

void toggleCallout(EditorModel& model)
{
    model.setCalloutText(!model.shownStyle().calloutText);
    restyle(model, AnnotationKind::text, [&](Annotation& mark) {
        mark.filled = model.filled() || model.calloutText();
        if (!model.calloutText())
            mark.pointer.reset();
        else if (!mark.pointer)
            mark.pointer = mark.suggestedPointer();
    });
}

} // namespace StyleActions

void WidthGesture::begin()
{
    before = model.doc();
    hold.emplace(model.preferences());
}

void WidthGesture::change(double points)
{
    model.setStrokeWidth(points);
    if (model.selected())
        model.updateWithoutUndo(
            *model.selectedID(), [&](Annotation& mark) { mark.lineWidth = model.lineWidth(); });
}

void WidthGesture::end()
{
    hold.reset();
    auto snapshot = std::exchange(before, std::nullopt);
    if (snapshot && snapshot->annotations != model.doc().annotations)
        model.pushUndoCheckpoint(*std::move(snapshot));
}

} // namespace pintalux
