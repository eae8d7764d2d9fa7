// SPDX-License-Identifier: MIT
#include "editor/state/CanvasGesture.h"

#include "editor/state/DocumentEditing.h"
#include "platform/graphics/Geometry.h"

#include <QCoreApplication>

#include <cmath>
#include <utility>

namespace pintalux {

const Annotation* topAnnotation(const Document& document, QPointF at, double pointScale)
{
    const auto& marks = document.annotations;
    for (auto mark = marks.crbegin(); mark != marks.crend(); ++mark)
        if (mark->hitTest(at, hitTolerance * pointScale))
            return &*mark;
    return nullptr;
}

namespace {

using Pointer = CanvasGesture::Pointer;

/// A gesture that changes marks of the document: the document before it becomes one undo step.
class ChangingGesture : public CanvasGesture {
public:
    explicit ChangingGesture(EditorModel& model, bool ownUndoStep = true)
        : CanvasGesture(model)
    {
        if (ownUndoStep)
            before = model.doc();
    }

    void release() override
    {
        if (before && *before != model.doc())
            model.pushUndoCheckpoint(*std::exchange(before, std::nullopt));
    }

    void cancel() override
    {
        if (before && *before != model.doc())
            model.updateWithoutUndo([this](Document& document) { document = *before; });
    }

private:
    std::optional<Document> before;
};

class NodeDrag final : public ChangingGesture {
public:
    NodeDrag(EditorModel& model, const CanvasNode& dragged, bool ownUndoStep)
        : ChangingGesture(model, ownUndoStep)
        , handle(dragged)
        , mark(model.selectedID())
    {
        // The anchor stays where it was at the press: taken anew for each event it would walk when the
        // pointer crosses it.
        if (handle.kind == CanvasNode::Kind::corner && model.selected())
            anchor = model.selected()->imageCorners()[std::size_t(3 - handle.index)];
    }

    void drag(const Pointer& pointer) override
    {
        if (!pointer.moved || !mark || model.selectedID() != mark)
            return;
        hasMoved = true;
        model.updateWithoutUndo(*mark, [&](Annotation& changed) {
            CanvasNodes::drag(changed, handle, {pointer.at, pointer.shift, model.doc().pixelScale, anchor});
        });
    }

    std::optional<CanvasNode> node() const override { return handle; }
    std::optional<QUuid> moving() const override { return hasMoved ? mark : std::nullopt; }

private:
    CanvasNode handle;
    std::optional<QUuid> mark;
    QPointF anchor;
    bool hasMoved = false;
};

class Move final : public ChangingGesture {
public:
    Move(EditorModel& model, QPointF start, bool asBody)
        : ChangingGesture(model)
        , mark(model.selectedID())
        , last(start)
        , body(asBody)
    {
    }

    void drag(const Pointer& pointer) override
    {
        if (!pointer.moved || !mark || model.selectedID() != mark)
            return;
        hasMoved = true;
        const auto by = pointer.at - std::exchange(last, pointer.at);
        model.updateWithoutUndo(*mark, [by](Annotation& moved) { moved.offset(by); });
    }

    bool movesBody() const override { return body; }
    std::optional<QUuid> moving() const override { return hasMoved ? mark : std::nullopt; }

private:
    std::optional<QUuid> mark;
    QPointF last;
    bool body;
    bool hasMoved = false;
};

/// A gesture that draws one mark, kept at the release if it is large enough.
class Drafting : public CanvasGesture {
public:
    Drafting(EditorModel& model, AnnotationKind kind, QPointF at)
        : CanvasGesture(model)
        , start(at)
        , mark(Annotation{
              .kind = kind, .start = at, .end = at, .color = model.color(), .lineWidth = model.lineWidth()})
    {
    }

    const Annotation* draft() const override { return &mark; }

protected:
    QPointF start;
    Annotation mark;
};

class ShapeDraft final : public Drafting {
public:
    ShapeDraft(EditorModel& model, AnnotationKind kind, QPointF at)
        : Drafting(model, kind, at)
    {
        mark.filled = model.filled();
        mark.blurStyle = model.blurStyle();
        mark.arrowStyle = model.arrowStyle();
    }

    void drag(const Pointer& pointer) override
    {
        if (!pointer.shift)
            mark.end = pointer.at;
        else if (mark.isCurvable())
            mark.end = CanvasNodes::snappedTo45(pointer.at, start);
        else
            mark.end = CanvasNodes::squared(pointer.at, start);
    }

    void release() override
    {
        const double least = 3 * model.doc().pixelScale;
        const auto rect = mark.rect();
        if (mark.isCurvable()) {
            if (distance(mark.start, mark.end) < least)
                return;
            model.add(mark);
            model.setSelectedID(mark.id);
        } else if (rect.width() >= least && rect.height() >= least) {
            model.add(mark);
        }
    }
};

/// While one lives, every movement of the pointer is reported, also those that come faster than they are
/// handled.
class EveryMovement {
public:
    EveryMovement() { QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false); }
    ~EveryMovement() { QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, wasCompressed); }
    EveryMovement(const EveryMovement&) = delete;
    EveryMovement& operator=(const EveryMovement&) = delete;

private:
    bool wasCompressed = QCoreApplication::testAttribute(Qt::AA_CompressHighFrequencyEvents);
};

class FreehandDraft final : public Drafting {
public:
    FreehandDraft(EditorModel& model, AnnotationKind kind, QPointF at)
        : Drafting(model, kind, at)
    {
        mark.points = {at};
    }

    void drag(const Pointer& pointer) override
    {
        const double spacing = 1.5 * model.doc().pixelScale;
        if (mark.kind == AnnotationKind::highlighter && pointer.shift)
            mark.points = {start, CanvasNodes::snappedTo45(pointer.at, start)};
        else if (distance(pointer.at, mark.points.back()) > spacing)
            mark.points.append(pointer.at);
        mark.end = pointer.at;
    }

    void release() override { model.add(mark); }

private:
    EveryMovement everyMovement;
};

class Erase final : public ChangingGesture {
public:
    Erase(EditorModel& model, const Pointer& press)
        : ChangingGesture(model)
        , last(press.at)
    {
        eraseAt(press.at, press.pointScale);
    }

    void drag(const Pointer& pointer) override
    {
        // A quick stroke comes as few events: what lies between two of them is touched as well.
        const auto from = std::exchange(last, pointer.at);
        const double step = hitTolerance * pointer.pointScale;
        const int steps = std::max(1, int(std::ceil(distance(from, pointer.at) / step)));
        for (int i = 1; i <= steps; ++i)
            eraseAt(from + (pointer.at - from) * i / steps, pointer.pointScale);
    }

private:
    void eraseAt(QPointF at, double pointScale)
    {
        const auto* top = topAnnotation(model.doc(), at, pointScale);
        if (!top)
            return;
        model.updateWithoutUndo(
            [id = top->id](Document& document) { DocumentEditing::removeMark(document, id); });
    }

    QPointF last;
};

class Crop final : public CanvasGesture {
public:
    Crop(EditorModel& model, QPointF at)
        : CanvasGesture(model)
        , start(clamped(at))
    {
        model.setCropRect({});
    }

    void drag(const Pointer& pointer) override
    {
        auto corner = clamped(pointer.at);
        if (pointer.shift)
            corner = CanvasNodes::squared(corner, start);
        model.setCropRect(QRectF(start, corner).normalized());
    }

    void release() override
    {
        constexpr double least = 4;
        const auto& rect = model.cropRect();
        if (rect && (rect->width() < least || rect->height() < least))
            model.setCropRect({});
    }

    void cancel() override { model.setCropRect({}); }

private:
    QPointF clamped(QPointF point) const
    {
        const auto size = model.doc().imageSize();
        return {std::clamp(point.x(), 0.0, size.width()), std::clamp(point.y(), 0.0, size.height())};
    }

    QPointF start;
};

} // namespace

namespace CanvasGestures {

Gesture dragNode(EditorModel& model, const CanvasNode& node, bool ownUndoStep)
{
    return std::make_unique<NodeDrag>(model, node, ownUndoStep);
}

Gesture moveSelected(EditorModel& model, QPointF start, bool asBody)
{
    return std::make_unique<Move>(model, start, asBody);
}

Gesture drawShape(EditorModel& model, AnnotationKind kind, QPointF start)
{
    return std::make_unique<ShapeDraft>(model, kind, start);
}

Gesture drawFreehand(EditorModel& model, AnnotationKind kind, QPointF start)
{
    return std::make_unique<FreehandDraft>(model, kind, start);
}

Gesture erase(EditorModel& model, const Pointer& press) { return std::make_unique<Erase>(model, press); }

Gesture crop(EditorModel& model, QPointF start) { return std::make_unique<Crop>(model, start); }

} // namespace CanvasGestures

} // namespace pintalux
