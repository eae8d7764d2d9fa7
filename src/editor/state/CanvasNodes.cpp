// SPDX-License-Identifier: MIT
#include "editor/state/CanvasNodes.h"

#include "platform/graphics/Geometry.h"

#include <cmath>
#include <limits>
#include <numbers>

using namespace Qt::StringLiterals;

namespace pintalux {

using Kind = CanvasNode::Kind;

QString CanvasNode::name() const
{
    switch (kind) {
    case Kind::corner:
        return u"corner(%1)"_s.arg(index);
    case Kind::start:
        return u"start"_s;
    case Kind::end:
        return u"end"_s;
    case Kind::curve:
        return u"curve"_s;
    case Kind::pointer:
        return u"pointer"_s;
    case Kind::left:
        return u"left"_s;
    case Kind::right:
        return u"right"_s;
    }
    return {};
}

namespace CanvasNodes {

namespace {

double away(double from, double to) { return to < from ? -1 : 1; }

/// The box's least width, in font sizes.
constexpr double leastBox = 2.5;

void dragLeftEdge(Annotation& text, QPointF pointer)
{
    const double right = text.textBubble().right();
    const double width = std::max(right - pointer.x(), leastBox * text.fontSize);
    text.boxWidth = width;
    text.start.setX(right - width + text.textPadding().x());
}

void dragRightEdge(Annotation& text, QPointF pointer)
{
    text.boxWidth = std::max(pointer.x() - text.textBubble().left(), leastBox * text.fontSize);
}

void dragCorner(Annotation& image, const Drag& by)
{
    const auto rect = image.rect();
    double dx = std::abs(by.pointer.x() - by.anchor.x());
    double dy = std::abs(by.pointer.y() - by.anchor.y());
    if (!by.shift && rect.height() >= 1) {
        const double ratio = rect.width() / rect.height();
        if (ratio < dx / std::max(dy, 0.001))
            dy = dx / ratio;
        else
            dx = dy * ratio;
    }
    const double least = 12 * by.pixelScale;
    dx = std::max(dx, least);
    dy = std::max(dy, least);
    image.start = by.anchor;
    image.end = by.anchor
        + QPointF(dx * away(by.anchor.x(), by.pointer.x()), dy * away(by.anchor.y(), by.pointer.y()));
}

} // namespace

QList<Placed> of(const Annotation& mark)
{
    QList<Placed> handles;
    if (mark.kind == AnnotationKind::image) {
        const auto corners = mark.imageCorners();
        for (int i = 0; i < int(corners.size()); ++i)
            handles << Placed{{Kind::corner, i}, corners[std::size_t(i)]};
    } else if (mark.supportsPointer()) {
        handles << Placed{{Kind::pointer}, mark.pointerNode()};
        if (mark.kind == AnnotationKind::text) {
            const auto bubble = mark.textBubble();
            handles << Placed{{Kind::left}, {bubble.left(), bubble.center().y()}}
                    << Placed{{Kind::right}, {bubble.right(), bubble.center().y()}};
        }
    } else if (mark.isCurvable()) {
        handles << Placed{{Kind::curve}, mark.curveMidpoint()} << Placed{{Kind::end}, mark.end}
                << Placed{{Kind::start}, mark.start};
    }
    return handles;
}

std::optional<CanvasNode> nearest(const Annotation& mark, QPointF point, double reach)
{
    std::optional<CanvasNode> found;
    double least = std::numeric_limits<double>::infinity();
    for (const auto& [node, at] : of(mark)) {
        const double far = distance(at, point);
        if (far <= reach && far < least) {
            found = node;
            least = far;
        }
    }
    return found;
}

void drag(Annotation& mark, const CanvasNode& node, const Drag& by)
{
    const bool snaps = by.shift && !mark.control;
    switch (node.kind) {
    case Kind::start:
        mark.start = snaps ? snappedTo45(by.pointer, mark.end) : by.pointer;
        break;
    case Kind::end:
        mark.end = snaps ? snappedTo45(by.pointer, mark.start) : by.pointer;
        break;
    case Kind::curve:
        mark.setCurveMidpoint(by.pointer);
        break;
    case Kind::pointer:
        mark.pointer = by.pointer;
        break;
    case Kind::left:
        dragLeftEdge(mark, by.pointer);
        break;
    case Kind::right:
        dragRightEdge(mark, by.pointer);
        break;
    case Kind::corner:
        dragCorner(mark, by);
        break;
    }
}

QPointF snappedTo45(QPointF point, QPointF center)
{
    constexpr double eighth = std::numbers::pi / 4;
    const auto arm = point - center;
    return center + polar(std::round(direction(arm) / eighth) * eighth, length(arm));
}

QPointF squared(QPointF point, QPointF corner)
{
    const auto arm = point - corner;
    const double side = std::max(std::abs(arm.x()), std::abs(arm.y()));
    return corner + QPointF(arm.x() < 0 ? -side : side, arm.y() < 0 ? -side : side);
}

} // namespace CanvasNodes

} // namespace pintalux
