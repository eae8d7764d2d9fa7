// SPDX-License-Identifier: MIT
#include "editor/window/EditorWindowLayout.h"

using namespace pintalux::EditorWindowLayout;

TEST(EditorWindowLayout, TheWindowFitsCaptureScreenAndControls)
{
    struct Row {
        QSizeF capture;
        QSize visible;
        QSize expected;
    };
    for (const auto& row : {
             Row{{200, 100}, {1440, 875}, {1354, 620}}, // the least content, cut by the screen's width
             Row{{200, 100}, {3840, 2160}, {1380, 620}}, Row{{1600, 900}, {3840, 2160}, {1680, 1072}},
             Row{{3840, 2160}, {1920, 1080}, {1805, 972}},
             Row{{200, 100}, {800, 480}, {900, 560}}, // never less than its controls need
         })
        EXPECT_EQ(contentSize(row.capture, row.visible), row.expected) << row.visible.width();
}

TEST(EditorWindowLayout, SeveralWindowsStandBesideOneAnotherOnTheScreen)
{
    const QRect visible(100, 50, 1200, 800);
    const QSize window(900, 560);
    QList<QPoint> taken;
    for (int i = 0; i < 40; ++i) {
        const auto corner = windowPosition(window, visible, taken);
        EXPECT_TRUE(visible.contains(QRect(corner, window))) << i;
        EXPECT_FALSE(taken.contains(corner)) << i;
        taken.append(corner);
    }
    EXPECT_EQ(taken[0], QPoint(250, 170));
    EXPECT_EQ(windowPosition({1500, 900}, visible, {}), visible.topLeft()) << "too large: its title shows";
}

TEST(EditorWindowLayout, PanelsStayInTheWindowAndApartAtTheSmallestSize)
{
    const QRect canvas(0, 68, 900, 492);
    const QSize options(541, 52);
    for (const auto edge : allCases<PaletteEdge>()) {
        const QSize palette = isVertical(edge) ? QSize(116, 377) : QSize(852, 60);
        const auto placed = panels(edge, canvas, palette, options);
        EXPECT_TRUE(canvas.contains(placed.palette)) << int(edge);
        EXPECT_TRUE(canvas.contains(placed.arrowOptions)) << int(edge);
        EXPECT_FALSE(placed.palette.intersects(placed.arrowOptions)) << int(edge);
    }
    const auto below = panels(PaletteEdge::bottom, canvas, {852, 60}, options);
    EXPECT_EQ(below.palette.bottomLeft() + QPoint(0, 1), QPoint(24, 546)) << "14 above the window's end";
    EXPECT_EQ(below.palette.top() - below.arrowOptions.bottom() - 1, 10);
}

TEST(EditorWindowLayout, TheNearestEdgeCountsByProportion)
{
    const QSizeF content(1000, 500);
    EXPECT_EQ(nearestEdge({950, 250}, content), PaletteEdge::right);
    EXPECT_EQ(nearestEdge({100, 40}, content), PaletteEdge::top) << "40 of 500 is less than 100 of 1000";
    EXPECT_EQ(nearestEdge({500, 250}, content), PaletteEdge::left) << "the middle";
    EXPECT_EQ(nearestEdge({750, 375}, content), PaletteEdge::right) << "as near to the bottom";
    EXPECT_EQ(nearestEdge({500, -20}, content), PaletteEdge::top) << "dropped outside";
}
