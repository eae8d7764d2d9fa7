// SPDX-License-Identifier: MIT
#include "app/floating/PinGeometry.h"

TEST(PinGeometry, ANewPinHasItsOwnSizeAndAtMostThreeFifthsOfTheScreen)
{
    EXPECT_EQ(PinGeometry::sizeOnScreen({4000, 3000}, 1, {1440, 875}), QSize(700, 525));
    EXPECT_EQ(PinGeometry::sizeOnScreen({200, 100}, 2, {1440, 875}), QSize(100, 50));
    EXPECT_EQ(PinGeometry::sizeOnScreen({301, 77}, 2, {1440, 875}), QSize(151, 39)) << "no pixel is missing";
    EXPECT_EQ(PinGeometry::sizeOnScreen({20000, 3}, 1, {1000, 800}), QSize(600, 1)) << "never without a side";
}

TEST(PinGeometry, EveryEdgeAndCornerKeepsTheProportionsAndTheOppositeSide)
{
    const QRect start(100, 200, 400, 300);
    const Qt::Edges left = Qt::LeftEdge, right = Qt::RightEdge, top = Qt::TopEdge, bottom = Qt::BottomEdge;
    for (const auto edges :
        {left, right, top, bottom, left | top, left | bottom, right | top, right | bottom})
        for (const auto delta : {QPoint(60, 45), QPoint(-60, -45), QPoint(90, -10), QPoint(-5, 70)}) {
            const auto after = PinGeometry::resized(start, edges, delta, start.size());
            EXPECT_NEAR(after.width() * 3, after.height() * 4, 2)
                << "edges " << int(edges) << ", by " << delta.x() << ' ' << delta.y();
            EXPECT_EQ(
                edges & left ? after.right() : after.left(), edges & left ? start.right() : start.left());
            EXPECT_EQ(edges & top ? after.bottom() : after.top(), edges & top ? start.bottom() : start.top());
        }
    EXPECT_EQ(PinGeometry::resized(start, right | bottom, {80, 60}, start.size()).size(), QSize(480, 360));
    EXPECT_EQ(PinGeometry::resized(start, left | top, {80, 60}, start.size()).size(), QSize(320, 240));
}

TEST(PinGeometry, APinCannotShrinkOutOfReachAndASmallOneHasAnInside)
{
    const auto tiny = PinGeometry::resized({0, 0, 400, 300}, Qt::RightEdge, {-5000, 0}, {400, 300});
    EXPECT_GE(tiny.height(), 30);
    EXPECT_EQ(PinGeometry::resized({0, 0, 12, 9}, Qt::RightEdge, {0, 0}, {12, 9}).size(), QSize(12, 9));
    for (const auto size : {QSize(12, 9), QSize(400, 300), QSize(900, 20)}) {
        EXPECT_FALSE(PinGeometry::edgesAt({size.width() / 2, size.height() / 2}, size));
        EXPECT_EQ(PinGeometry::edgesAt({0, 0}, size), Qt::LeftEdge | Qt::TopEdge);
        EXPECT_EQ(PinGeometry::edgesAt({size.width() - 1, size.height() / 2}, size), Qt::RightEdge);
    }
}
