// SPDX-License-Identifier: MIT
#include "platform/image/ImageFilter.h"

#include <QColorSpace>
#include <QRandomGenerator>

#include <cmath>
#include <vector>

namespace pintalux {
namespace {

QImage noise(QSize size, QImage::Format format, quint32 seed = 1)
{
    QImage image(size, QImage::Format_ARGB32);
    QRandomGenerator random(seed);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, random.generate());
    return image.convertToFormat(format);
}

/// Black and white bars of `width` pixels, with the picture's edge inside one of them.
QImage bars(QSize size, int width)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, ((x + 3) / width + y / (2 * width)) % 2 ? 0xffffffff : 0xff000000);
    return image;
}

using Plane = std::vector<double>;

/// One channel, convolved in double precision with a Gaussian cut off at six σ.
Plane referenceBlur(const Plane& source, QSize size, double sigma, bool repeatEdges)
{
    const int reach = static_cast<int>(std::ceil(6 * sigma));
    Plane weights;
    double total = 0;
    for (int offset = -reach; offset <= reach; ++offset) {
        weights.push_back(std::exp(-0.5 * offset * offset / (sigma * sigma)));
        total += weights.back();
    }
    const auto pass = [&](const Plane& from, int length, int step, int lines, int lineStep) {
        Plane to(from.size());
        for (int line = 0; line < lines; ++line)
            for (int i = 0; i < length; ++i) {
                double sum = 0;
                for (int offset = -reach; offset <= reach; ++offset) {
                    const int at = i + offset;
                    if (repeatEdges || (at >= 0 && at < length))
                        sum += weights[std::size_t(offset + reach)]
                            * from[std::size_t(line * lineStep + std::clamp(at, 0, length - 1) * step)];
                }
                to[std::size_t(line * lineStep + i * step)] = sum / total;
            }
        return to;
    };
    const int width = size.width();
    return pass(pass(source, width, 1, size.height(), width), size.height(), width, width, 1);
}

Plane channelOf(const QImage& image, int channel, int channels)
{
    Plane plane;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            plane.push_back(image.constScanLine(y)[x * channels + channel]);
    return plane;
}

double largestDifference(const Plane& a, const Plane& b)
{
    double largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        largest = std::max(largest, std::abs(a[i] - b[i]));
    return largest;
}

int differingPixels(const QImage& a, const QImage& b)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            count += a.pixel(x, y) != b.pixel(x, y);
    return count;
}

TEST(Pixellate, EveryCellIsTheMeanOfItsPixelsAlsoWhereTheEdgeCutsIt)
{
    for (const auto& [size, asked, cell] :
        {std::tuple{QSize(64, 48), 9., 9}, {{7, 5}, 6., 6}, {{31, 2}, 13.5, 14}, {{40, 33}, 11.25, 11},
            {{5, 5}, 1000., 1000}, {{20, 11}, 0.2, 1}, {{1, 300}, 299., 299}, {{1200, 700}, 18., 18}}) {
        const QImage source = noise(size, QImage::Format_ARGB32_Premultiplied);
        const QImage result = ImageFilter::pixellate(source, asked);
        ASSERT_EQ(result.size(), size);
        for (int channel = 0; channel < 4; ++channel) {
            const Plane in = channelOf(source, channel, 4);
            const Plane out = channelOf(result, channel, 4);
            Plane expected(in.size());
            for (int y = 0; y < size.height(); ++y)
                for (int x = 0; x < size.width(); ++x) {
                    if (x % cell || y % cell) {
                        expected[std::size_t(y * size.width() + x)]
                            = expected[std::size_t((y - y % cell) * size.width() + x - x % cell)];
                        continue;
                    }
                    double sum = 0;
                    int count = 0;
                    for (int v = y; v < std::min(y + cell, size.height()); ++v)
                        for (int u = x; u < std::min(x + cell, size.width()); ++u, ++count)
                            sum += in[std::size_t(v * size.width() + u)];
                    expected[std::size_t(y * size.width() + x)] = sum / count;
                }
            EXPECT_LE(largestDifference(out, expected), 0.5) << size.width() << " cell " << asked;
        }
    }
}

TEST(Pixellate, SumsOfWhiteDoNotOverflowInHugeCells)
{
    QImage white(3000, 2000, QImage::Format_RGB32);
    white.fill(Qt::white);
    EXPECT_EQ(differingPixels(ImageFilter::pixellate(white, 2500), white), 0);
}

TEST(GaussianBlur, FollowsATrueGaussianOnNoiseAndEdges)
{
    double worst = 0;
    for (const double sigma : {0.3, 0.7, 1.0, 2.0, 3.9, 4.0, 5.3, 8.0, 12.0, 18.0, 24.0, 31.0})
        for (const QImage& source : {noise({157, 101}, QImage::Format_ARGB32_Premultiplied),
                 bars({160, 90}, 37), bars({83, 121}, 8), bars({120, 64}, 1)}) {
            const QImage result = ImageFilter::gaussianBlur(source, sigma);
            for (const int channel : {0, 2}) {
                const Plane expected
                    = referenceBlur(channelOf(source, channel, 4), source.size(), sigma, true);
                const double difference = largestDifference(channelOf(result, channel, 4), expected);
                EXPECT_LE(difference, 1.3) << "sigma " << sigma;
                worst = std::max(worst, difference);
            }
        }
    RecordProperty("largestDifference", std::to_string(worst));
}

TEST(GaussianBlur, StripesThatMatchTheReductionGridLeaveNoBeat)
{
    for (const double sigma : {8.0, 24.0}) {
        const int factor = static_cast<int>(sigma / 2);
        for (int period = factor - 1; period <= factor + 2; ++period) {
            QImage stripes(300, 40, QImage::Format_RGB32);
            for (int y = 0; y < stripes.height(); ++y)
                for (int x = 0; x < stripes.width(); ++x)
                    stripes.setPixel(x, y, x % period < period / 2 ? 0xffffffff : 0xff000000);
            const Plane expected = referenceBlur(channelOf(stripes, 1, 4), stripes.size(), sigma, true);
            const Plane result = channelOf(ImageFilter::gaussianBlur(stripes, sigma), 1, 4);
            EXPECT_LE(largestDifference(result, expected), 2) << "sigma " << sigma << " period " << period;
        }
    }
}

TEST(GaussianBlur, AFlatPictureStaysFlatUpToItsEdges)
{
    for (const QRgb colour : {0xffffffffU, 0xff000000U, 0xff123456U, 0x80402010U})
        for (const double sigma : {0.3, 1.0, 3.5, 4.0, 9.0, 24.0, 44.0, 77.7, 200.0})
            for (const QSize size : {QSize(1, 1), QSize(2, 90), QSize(130, 3), QSize(101, 67)}) {
                QImage flat(size, QImage::Format_ARGB32_Premultiplied);
                for (int y = 0; y < size.height(); ++y)
                    std::fill_n(reinterpret_cast<QRgb*>(flat.scanLine(y)), size.width(), colour);
                EXPECT_EQ(ImageFilter::gaussianBlur(flat, sigma), flat) << colour << " sigma " << sigma;
            }
}

TEST(GaussianBlur, SpreadsAPointEvenlyAndAsWideAsAsked)
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

TEST(GaussianBlur, KeepsPremultipliedColoursBelowTheirAlpha)
{
    for (const double sigma : {0.8, 6.0, 24.0}) {
        const QImage result
            = ImageFilter::gaussianBlur(noise({200, 120}, QImage::Format_ARGB32_Premultiplied), sigma);
        for (int y = 0; y < result.height(); ++y) {
            const auto* line = reinterpret_cast<const QRgb*>(result.constScanLine(y));
            for (int x = 0; x < result.width(); ++x)
                ASSERT_LE(std::max({qRed(line[x]), qGreen(line[x]), qBlue(line[x])}), qAlpha(line[x]));
        }
    }
}

TEST(GaussianBlur, WorkSharedBetweenThreadsGivesTheSamePixels)
{
    // Tall enough to be shared out; its top rows alone are not.
    const QImage whole = noise({900, 1200}, QImage::Format_RGB32);
    for (const double sigma : {2.0, 12.0}) {
        const int kept = 60, needed = kept + static_cast<int>(6 * sigma) / 6 * 6;
        const QImage part = ImageFilter::gaussianBlur(whole.copy(0, 0, 900, needed), sigma);
        EXPECT_EQ(part.copy(0, 0, 900, kept), ImageFilter::gaussianBlur(whole, sigma).copy(0, 0, 900, kept));
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

TEST(Filters, KeepFormatAndColourSpaceAndDropThePixelRatio)
{
    for (const auto& [given, kept] : {std::pair{QImage::Format_RGB32, QImage::Format_RGB32},
             {QImage::Format_ARGB32_Premultiplied, QImage::Format_ARGB32_Premultiplied},
             {QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied},
             {QImage::Format_RGB888, QImage::Format_RGB32},
             {QImage::Format_Grayscale8, QImage::Format_RGB32}}) {
        QImage source = noise({50, 40}, given);
        source.setDevicePixelRatio(2);
        source.setColorSpace(QColorSpace::SRgb);
        for (const QImage& result :
            {ImageFilter::pixellate(source, 9), ImageFilter::gaussianBlur(source, 12)}) {
            EXPECT_EQ(result.format(), kept);
            EXPECT_EQ(result.size(), source.size());
            EXPECT_EQ(result.colorSpace(), QColorSpace(QColorSpace::SRgb));
            EXPECT_EQ(result.devicePixelRatio(), 1);
            EXPECT_GT(differingPixels(result, source.convertToFormat(kept)), 1900) << "the original shows";
        }
    }
    EXPECT_TRUE(ImageFilter::pixellate({}, 9).isNull());
    EXPECT_TRUE(ImageFilter::gaussianBlur({}, 9).isNull());
    EXPECT_TRUE(ImageFilter::blurMask({}, 9).isNull());
}

TEST(Filters, MeaninglessParametersLeaveThePictureAsItIs)
{
    const QImage source = noise({30, 20}, QImage::Format_RGB32);
    for (const double parameter : {std::nan(""), -3.0, 0.0}) {
        EXPECT_EQ(ImageFilter::pixellate(source, parameter), source);
        EXPECT_EQ(ImageFilter::gaussianBlur(source, parameter), source);
    }
}

} // namespace
} // namespace pintalux
