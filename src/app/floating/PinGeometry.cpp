// SPDX-License-Identifier: MIT
#include "app/floating/PinGeometry.h"

#include <algorithm>
#include <cmath>

namespace pintalux::PinGeometry {

namespace {

constexpr double largestPart = 0.6; // of the visible screen
constexpr int edgeReach = 7;        // points within the edge
constexpr int cornerReach = 16;
constexpr int shortestSide = 32;

} // namespace

QSize sizeOnScreen(QSize pixels, double pixelScale, QSizeF visible)
{
    const QSizeF own = QSizeF(pixels) / pixelScale;
    const double scale = std::min(
        {largestPart * visible.width() / own.width(), largestPart * visible.height() / own.height(), 1.0});
    if (scale < 1)
        return (own * scale).toSize().expandedTo({1, 1});
    return {int(std::ceil(own.width())), int(std::ceil(own.height()))};
}

Qt::Edges edgesAt(QPoint point, QSize size)
{
    // A pin of a few points must have an inside too.
    const QSize edge(std::min(edgeReach, size.width() / 4), std::min(edgeReach, size.height() / 4));
    const QSize corner(std::min(cornerReach, size.width() / 3), std::min(cornerReach, size.height() / 3));
    const int toRight = size.width() - 1 - point.x(), toBottom = size.height() - 1 - point.y();
    const auto within = [&](const QSize& reach) {
        Qt::Edges edges;
        edges.setFlag(Qt::LeftEdge, point.x() < reach.width());
        edges.setFlag(Qt::RightEdge, toRight < reach.width());
        edges.setFlag(Qt::TopEdge, point.y() < reach.height());
        edges.setFlag(Qt::BottomEdge, toBottom < reach.height());
        return edges;
    };
    const auto isCorner = [](Qt::Edges edges) {
        return (edges & (Qt::LeftEdge | Qt::RightEdge)) && (edges & (Qt::TopEdge | Qt::BottomEdge));
    };
    const auto edges = within(edge);
    // Near a corner each of its two edges means the corner.
    return edges && isCorner(within(corner)) ? within(corner) : edges;
}

Qt::CursorShape cursorFor(Qt::Edges edges)
{
    if (edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge))
        return Qt::SizeFDiagCursor;
    if (edges == (Qt::RightEdge | Qt::TopEdge) || edges == (Qt::LeftEdge | Qt::BottomEdge))
        return Qt::SizeBDiagCursor;
    if (edges & (Qt::LeftEdge | Qt::RightEdge))
        return Qt::SizeHorCursor;
    return edges ? Qt::SizeVerCursor : Qt::ArrowCursor;
}

QRect resized(const QRect& start, Qt::Edges edges, QPoint delta, QSize proportions)
{
    const double ratio = double(proportions.width()) / proportions.height();
    const double outwardX = edges & Qt::LeftEdge ? -delta.x() : edges & Qt::RightEdge ? delta.x() : 0;
    const double outwardY = edges & Qt::TopEdge ? -delta.y() : edges & Qt::BottomEdge ? delta.y() : 0;
    // At a corner whichever direction went further leads.
    const double byWidth = start.width() + outwardX, byHeight = (start.height() + outwardY) * ratio;
    const bool heightLeads = std::abs(outwardY * ratio) > std::abs(outwardX);
    const double shortestWidth = shortestSide * std::max(1.0, ratio);
    const double width
        = std::max(heightLeads ? byHeight : byWidth, std::min(shortestWidth, double(start.width())));
    const QSize size(int(std::lround(width)), std::max(1, int(std::lround(width / ratio))));
    QRect result(start.topLeft(), size);
    if (edges & Qt::LeftEdge)
        result.moveRight(start.right());
    if (edges & Qt::TopEdge)
        result.moveBottom(start.bottom());
    return result;
}

QSize fitted(QSize available, QSize proportions)
{
    const auto size = proportions.scaled(available, Qt::KeepAspectRatio).expandedTo({1, 1});
    const bool isClose = available.width() - size.width() <= 1 && available.height() - size.height() <= 1;
    return isClose ? available : size;
}

} // namespace pintalux::PinGeometry
