// SPDX-License-Identifier: MIT
#include "platform/image/ImageFilter.h"

#include "Pixels.h"

namespace pintalux {
namespace {

using namespace testing_pixels;

QImage noiseMask(QSize size) { return noise(size, QImage::Format_Grayscale8); }

/// Bars of `width` samples, covered or not, with the mask's edge inside one of them.
QImage bars(QSize size, int width)
{
    QImage mask(size, QImage::Format_Grayscale8);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            mask.scanLine(y)[x] = ((x + 3) / width + y / (2 * width)) % 2 ? 255 : 0;
    return mask;
}

TEST(BlurMask, FollowsATrueGaussianOnNoiseAndEdges)
{
    for (const double sigma : {0.3, 0.7, 1.0, 2.0, 3.9, 4.0, 5.3, 8.0, 12.0, 18.0, 24.0, 31.0})
        for (const QImage& mask :
            {noiseMask({157, 101}), bars({160, 90}, 37), bars({83, 121}, 8), bars({120, 64}, 1)}) {
            const Plane expected = referenceBlur(channelOf(mask, 0, 1), mask.size(), sigma, false);
            const QImage result = ImageFilter::blurMask(mask, sigma);
            EXPECT_LE(largestDifference(channelOf(result, 0, 1), expected), 1.3) << "sigma " << sigma;
        }
}

TEST(BlurMask, StripesThatMatchTheReductionGridLeaveNoBeat)
{
    for (const double sigma : {8.0, 24.0}) {
        const int factor = static_cast<int>(sigma / 2);
        for (int period = factor - 1; period <= factor + 2; ++period) {
            QImage stripes(300, 40, QImage::Format_Grayscale8);
            for (int y = 0; y < stripes.height(); ++y)
                for (int x = 0; x < stripes.width(); ++x)
                    stripes.scanLine(y)[x] = x % period < period / 2 ? 255 : 0;
            const Plane expected = referenceBlur(channelOf(stripes, 0, 1), stripes.size(), sigma, false);
            const Plane result = channelOf(ImageFilter::blurMask(stripes, sigma), 0, 1);
            EXPECT_LE(largestDifference(result, expected), 2) << "sigma " << sigma << " period " << period;
        }
    }
}

TEST(BlurMask, SpreadsAPointEvenlyAndAsWideAsAsked)
{
    for (const double sigma : {1.0, 3.0, 4.0, 6.0, 10.0}) {
        QImage mask(181, 181, QImage::Format_Alpha8);
        mask.fill(0);
        // A square rather than one pixel, so that eight bits show the far slopes too.
        QPainter(&mask).fillRect(QRect(70, 70, 41, 41), Qt::black);
        const QImage blurred = ImageFilter::blurMask(mask, sigma);
        double sum = 0, spread = 0;
        for (int y = 0; y < 181; ++y)
            for (int x = 0; x < 181; ++x) {
                const int value = blurred.constScanLine(y)[x];
                EXPECT_NEAR(value, blurred.constScanLine(y)[180 - x], 1)
                    << x << ',' << y << " sigma " << sigma;
                EXPECT_NEAR(value, blurred.constScanLine(x)[y], 1) << x << ',' << y << " sigma " << sigma;
                sum += value;
                spread += value * (x - 90.) * (x - 90.);
            }
        EXPECT_NEAR(sum / (255. * 41 * 41), 1, 0.003) << "sigma " << sigma;
        const double square = (41 * 41 - 1) / 12.; // the square's own variance
        EXPECT_NEAR(std::sqrt(spread / sum - square), sigma, 0.03 * sigma) << "sigma " << sigma;
    }
}

TEST(BlurMask, FollowsATrueGaussianWithNothingCoveredOutside)
{
    for (const QSize size : {QSize(100, 100), QSize(37, 5), QSize(1, 1), QSize(211, 90)})
        for (const double sigma : {0.5, 1.0, 3.0, 4.0, 7.5, 20.0, 50.0}) {
            QImage mask(size, QImage::Format_Alpha8);
            mask.fill(0);
            QPainter painter(&mask);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setBrush(Qt::black);
            painter.drawEllipse(QRectF(mask.rect()).adjusted(size.width() / 4., -9, 9, -size.height() / 4.));
            painter.end();
            const Plane expected = referenceBlur(channelOf(mask, 0, 1), size, sigma, false);
            const QImage result = ImageFilter::blurMask(mask, sigma);
            ASSERT_EQ(result.format(), QImage::Format_Alpha8);
            EXPECT_LE(largestDifference(channelOf(result, 0, 1), expected), 1.2)
                << size.width() << " sigma " << sigma;
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

TEST(BlurMask, MeaninglessParametersLeaveTheMaskAsItIs)
{
    auto mask = noiseMask({30, 20});
    for (const double sigma : {std::nan(""), -3.0, 0.0})
        EXPECT_EQ(channelOf(ImageFilter::blurMask(mask, sigma), 0, 1), channelOf(mask, 0, 1));
    EXPECT_TRUE(ImageFilter::blurMask({}, 9).isNull());
}

} // namespace
} // namespace pintalux
