// SPDX-License-Identifier: MIT
#include "editor/window/EditorWindowLayout.h"

#include <algorithm>
#include <utility>

namespace pintalux::EditorWindowLayout {

namespace {

/// Around a capture that fits its window.
constexpr QSizeF room{80, 52 + 120};
constexpr QSizeF leastContent{1380, 620};
constexpr QSizeF mostOfVisible{0.94, 0.9};
constexpr int cascadeStep = 28;

constexpr int outerGap = 14;   ///< between palette and window
constexpr int betweenGap = 10; ///< between palette, arrow options and bar
constexpr QMargins air{28, 18, 28, 22};

int centredStart(int start, int length, int part) { return start + (length - part) / 2; }

} // namespace

QSize contentSize(QSizeF capture, QSize visible)
{
    const auto wanted = (capture + room).expandedTo(leastContent);
    const QSizeF most(visible.width() * mostOfVisible.width(), visible.height() * mostOfVisible.height());
    return wanted.boundedTo(most).toSize().expandedTo(minimumSize);
}

QSize framed(QSize window)
{
    constexpr int titleBar = 32;
    return window + QSize(0, titleBar);
}

QPoint windowPosition(QSize window, const QRect& visible, const QList<QPoint>& taken)
{
    const QPoint centred(
        std::max(visible.left(), centredStart(visible.left(), visible.width(), window.width())),
        std::max(visible.top(), centredStart(visible.top(), visible.height(), window.height())));
    const auto isTaken = [&](QPoint corner) {
        return std::ranges::any_of(
            taken, [&](QPoint other) { return (other - corner).manhattanLength() < cascadeStep; });
    };
    auto corner = centred;
    // A cascade that has left the screen begins anew at its top left; where all is taken, the middle will do.
    for (int tries = 0; tries < 100; ++tries) {
        if (!isTaken(corner))
            return corner;
        corner += QPoint(cascadeStep, cascadeStep);
        if (corner.y() + window.height() > visible.bottom() + 1)
            corner.setY(visible.top());
        if (corner.x() + window.width() > visible.right() + 1)
            corner.setX(visible.left());
    }
    return centred;
}

Panels panels(PaletteEdge edge, const QRect& canvas, QSize palette, QSize arrowOptions)
{
    QRect paletteRect({}, palette);
    QRect optionsRect(
        {centredStart(canvas.left(), canvas.width(), arrowOptions.width()), canvas.top() + betweenGap},
        arrowOptions);
    const int middleX = centredStart(canvas.left(), canvas.width(), palette.width());
    const int middleY = centredStart(canvas.top(), canvas.height(), palette.height());
    switch (edge) {
    case PaletteEdge::bottom:
        paletteRect.moveTo(middleX, canvas.top() + canvas.height() - outerGap - palette.height());
        optionsRect.moveTop(paletteRect.top() - betweenGap - arrowOptions.height());
        break;
    case PaletteEdge::top:
        paletteRect.moveTo(middleX, canvas.top() + betweenGap);
        optionsRect.moveTop(paletteRect.top() + palette.height() + betweenGap);
        break;
    case PaletteEdge::left:
        paletteRect.moveTo(canvas.left() + outerGap, middleY);
        break;
    case PaletteEdge::right:
        paletteRect.moveTo(canvas.left() + canvas.width() - outerGap - palette.width(), middleY);
        break;
    }
    return {paletteRect, optionsRect};
}

QMargins canvasInsets(PaletteEdge edge, bool hidden, QSize palette)
{
    auto insets = air;
    if (hidden)
        return insets;
    switch (edge) {
    case PaletteEdge::bottom:
        insets += QMargins(0, 0, 0, palette.height() + outerGap);
        break;
    case PaletteEdge::top:
        insets += QMargins(0, palette.height() + outerGap, 0, 0);
        break;
    case PaletteEdge::left:
        insets += QMargins(palette.width() + outerGap, 0, 0, 0);
        break;
    case PaletteEdge::right:
        insets += QMargins(0, 0, palette.width() + outerGap, 0);
        break;
    }
    return insets;
}

PaletteEdge nearestEdge(QPointF position, QSizeF content)
{
    // Each by one division: 1 - x would be rounded twice, and decide a tie by chance.
    const double x = position.x(), y = position.y();
    const double width = content.width(), height = content.height();
    const std::array distances{std::pair(x / width, PaletteEdge::left),
        std::pair((width - x) / width, PaletteEdge::right),
        std::pair((height - y) / height, PaletteEdge::bottom), std::pair(y / height, PaletteEdge::top)};
    return std::ranges::min_element(distances, {}, &std::pair<double, PaletteEdge>::first)->second;
}

} // namespace pintalux::EditorWindowLayout
