// SPDX-License-Identifier: MIT
#include "platform/image/ImageFilter.h"

#include "Pictures.h"
#include "Pixels.h"

namespace pintalux {
namespace {

using namespace testing_pixels;

QImage noiseMask(QSize size) { return test::noise(size, QImage::Format_Grayscale8); }

/// Bars of `width` samples, covered or not, with the mask's edge inside one of them.
QImage bars(QSize size, int width)
{
    QImage mask(size, QImage::Format_Grayscale8);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            mask.scanLine(y)[x] = ((x + 3) / width + y / (2 * width)) % 2 ? 255 : 0;
    return mask;
}

/// A soft edge that the mask cuts.
QImage ellipse(QSize size)
{
    QImage mask(size, QImage::Format_Alpha8);
    mask.fill(0);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::black);
    painter.drawEllipse(QRectF(mask.rect()).adjusted(size.width() / 4., -9, 9, -size.height() / 4.));
    return mask;
}

// Bars of three to six samples are the beat of the reduction that large blurs work on.
TEST(BlurMask, FollowsATrueGaussianWithNothingCoveredOutside)
{
    for (const double sigma : {0.3, 1.0, 2.0, 3.9, 4.0, 8.0, 12.0, 24.0, 50.0})
        for (const QImage& mask :
            {noiseMask({157, 101}), bars({160, 90}, 37), bars({120, 64}, 1), bars({150, 40}, 3),
                bars({150, 40}, 6), ellipse({100, 100}), ellipse({37, 5}), ellipse({1, 1})}) {
            const Plane expected = referenceBlur(channelOf(mask, 0, 1), mask.size(), sigma, false);
            const QImage result = ImageFilter::blurMask(mask, sigma);
            ASSERT_EQ(result.format(), QImage::Format_Alpha8);
            EXPECT_LE(largestDifference(channelOf(result, 0, 1), expected), 1.3)
                << "sigma " << sigma << ' ' << mask.width();
        }
}

TEST(BlurMask, WorkSharedBetweenThreadsGivesTheSameCoverage)
{
    // Large enough to be shared out; its top rows alone are not.
    const QImage whole = noiseMask({1800, 1200});
    for (const double sigma : {2.0, 12.0}) {
        const int kept = 60, needed = kept + static_cast<int>(6 * sigma) / 6 * 6;
        const QImage part = ImageFilter::blurMask(whole.copy(0, 0, 1800, needed), sigma);
        EXPECT_EQ(part.copy(0, 0, 1800, kept), ImageFilter::blurMask(whole, sigma).copy(0, 0, 1800, kept));
    }
}

} // namespace
} // namespace pintalux
