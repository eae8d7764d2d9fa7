// SPDX-License-Identifier: MIT
#pragma once

#include "editor/state/CanvasNodes.h"
#include "editor/state/EditorModel.h"

#include <memory>
#include <optional>

namespace pintalux {

/// What one press, drag and release of the pointer does to the document.
///
/// A gesture is made at the press. It leaves at most one undo step, and none when nothing changed.
class CanvasGesture {
public:
    /// The pointer while the button is down.
    struct Pointer {
        QPointF at; ///< document point
        bool shift = false;
        bool moved = false;    ///< it has travelled more than 2 view points since the press
        double pointScale = 1; ///< document pixels per view point
    };

    explicit CanvasGesture(EditorModel& model)
        : model(model)
    {
    }
    CanvasGesture(const CanvasGesture&) = delete;
    CanvasGesture& operator=(const CanvasGesture&) = delete;
    virtual ~CanvasGesture() = default;

    virtual void drag(const Pointer& pointer) = 0;
    virtual void release() = 0;
    /// Ends it without a trace, in place of a release.
    virtual void cancel() { }

    /// The mark being drawn, which is not in the document yet.
    virtual const Annotation* draft() const { return nullptr; }
    /// The handle being dragged.
    virtual std::optional<CanvasNode> node() const { return std::nullopt; }
    /// Whether a tool other than `select` is moving a whole mark.
    virtual bool movesBody() const { return false; }
    /// The mark of the document that every drag changes.
    virtual std::optional<QUuid> moving() const { return std::nullopt; }

protected:
    EditorModel& model;
};

/// Hit slack around marks, in view points.
inline constexpr double hitTolerance = 6;
/// Hit radius of handles, in view points.
inline constexpr double nodeReach = 10;

/// The topmost mark under a document point; null for none.
const Annotation* topAnnotation(const Document& document, QPointF at, double pointScale);

namespace CanvasGestures {

using Gesture = std::unique_ptr<CanvasGesture>;

/// Drags a handle of the selected mark. Without an undo step of its own it belongs to the step that placed
/// the mark.
Gesture dragNode(EditorModel& model, const CanvasNode& node, bool ownUndoStep = true);
/// Moves the selected mark, pressed at `start`.
Gesture moveSelected(EditorModel& model, QPointF start, bool asBody);
/// Draws an arrow, a line, a rectangle, an ellipse or a redaction.
Gesture drawShape(EditorModel& model, AnnotationKind kind, QPointF start);
/// Draws with the pen or the highlighter.
Gesture drawFreehand(EditorModel& model, AnnotationKind kind, QPointF start);
/// Removes the marks that the pointer touches.
Gesture erase(EditorModel& model, const CanvasGesture::Pointer& press);
/// Spans the crop rectangle.
Gesture crop(EditorModel& model, QPointF start);

} // namespace CanvasGestures

} // namespace pintalux
