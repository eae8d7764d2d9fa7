// SPDX-License-Identifier: MIT
#pragma once

#include "model/Annotation.h"

#include <QList>
#include <QPointF>
#include <QString>

#include <optional>

namespace pintalux {

/// A handle of a mark.
struct CanvasNode {
    enum class Kind { corner, start, end, curve, pointer, left, right };

    Kind kind;
    int index = 0; ///< of the image's corner, 0 to 3

    /// "corner(2)", "start", …
    QString name() const;
    bool operator==(const CanvasNode&) const = default;
};

/// Handles of marks: where they are and what dragging them does. Document pixels.
namespace CanvasNodes {

struct Placed {
    CanvasNode node;
    QPointF at;
};

/// In the order in which the nearer of two equally near ones is taken.
QList<Placed> of(const Annotation& mark);

/// The handle nearest to `point`, at most `reach` away.
std::optional<CanvasNode> nearest(const Annotation& mark, QPointF point, double reach);

/// How a handle is being dragged.
struct Drag {
    QPointF pointer;
    bool shift;
    double pixelScale; ///< of the document
    QPointF anchor;    ///< the opposite corner at the press, for an image's corner
};

/// Reshapes `mark` by its handle.
void drag(Annotation& mark, const CanvasNode& node, const Drag& by);

/// `point` turned around `center` to the nearest multiple of 45°, as far away as before.
QPointF snappedTo45(QPointF point, QPointF center);

/// `point` moved so that it spans a square with `corner`, as large as the longer side.
QPointF squared(QPointF point, QPointF corner);

} // namespace CanvasNodes

} // namespace pintalux
