// SPDX-License-Identifier: MIT
#include "platform/image/RedactionCells.h"

#include "Pictures.h"
#include "Pixels.h"
#include "platform/image/CellMeans.h"

namespace pintalux {
namespace {

using namespace testing_pixels;
using test::noise;

std::vector<int> upTo(int count)
{
    std::vector<int> all(std::size_t(count), 0);
    std::iota(all.begin(), all.end(), 0);
    return all;
}

QImage pixellated(const QImage& source, double side)
{
    return RedactionCells(source, side).pixellated(upTo(source.width()), upTo(source.height()));
}

QImage blurred(const QImage& source, double side, double sigma)
{
    return RedactionBlur(RedactionCells(source, side), sigma)
        .pixels(upTo(source.width()), upTo(source.height()));
}

TEST(CellMeans, AreThoseOfTheirPixelsAlsoWhereTheEdgeCutsThem)
{
    for (const auto& [size, side] : {std::pair{QSize(64, 48), 9}, {{7, 5}, 6}, {{31, 2}, 14}, {{40, 33}, 11},
             {{20, 11}, 1}, {{1, 300}, 299}, {{1200, 700}, 18}}) {
        const QImage source = noise(size, QImage::Format_ARGB32_Premultiplied);
        const QImage means = cellMeans(source, side);
        ASSERT_EQ(means.size(), QSize((size.width() - 1) / side + 1, (size.height() - 1) / side + 1));
        for (int channel = 0; channel < 4; ++channel) {
            const Plane in = channelOf(source, channel, 4);
            Plane expected;
            for (int y = 0; y < size.height(); y += side)
                for (int x = 0; x < size.width(); x += side) {
                    double sum = 0;
                    int count = 0;
                    for (int v = y; v < std::min(y + side, size.height()); ++v)
                        for (int u = x; u < std::min(x + side, size.width()); ++u, ++count)
                            sum += in[std::size_t(v * size.width() + u)];
                    expected.push_back(sum / count);
                }
            EXPECT_LE(largestDifference(channelOf(means, channel, 4), expected), 0.5)
                << size.width() << " cell " << side;
        }
    }
}

TEST(CellMeans, SumsOfWhiteDoNotOverflowInHugeCells)
{
    QImage white(3000, 2000, QImage::Format_RGB32);
    white.fill(Qt::white);
    for (const int side : {200, 2500})
        EXPECT_EQ(cellMeans(white, side).pixel(0, 0), 0xFFFFFFFF);
}

TEST(RedactionCells, PlainPicturesStayAsTheyAre)
{
    for (const QRgb color : {0xFFFFFFFFU, 0xFF123456U, 0x80402010U, 0x00000000U})
        for (const double side : {6.0, 18.0})
            for (const QSize size : {QSize(1, 1), QSize(2, 90), QSize(130, 3), QSize(401, 267)}) {
                QImage flat(size, QImage::Format_ARGB32_Premultiplied);
                for (int y = 0; y < size.height(); ++y)
                    std::fill_n(reinterpret_cast<QRgb*>(flat.scanLine(y)), size.width(), color);
                EXPECT_EQ(pixellated(flat, side), flat) << color << ' ' << size.width();
                EXPECT_EQ(blurred(flat, side, side * 4 / 3), flat) << color << ' ' << size.width();
            }
}

TEST(RedactionCells, AreSquaresOnAGridFromTheTopLeftCorner)
{
    const QImage source = noise({90, 70}, QImage::Format_RGB32);
    for (const auto& [asked, side] : {std::pair{9., 9}, {13.5, 14}, {11.25, 11}, {1000., 90}, {0.2, 1}}) {
        const RedactionCells cells(source, asked);
        EXPECT_EQ(cells.side(), side);
        const auto shown = cells.pixellated(upTo(90), upTo(70));
        for (int y = 0; y < 70; ++y)
            for (int x = 0; x < 90; ++x)
                ASSERT_EQ(shown.pixel(x, y), shown.pixel(x - x % side, y - y % side)) << x << ',' << y;
    }
}

TEST(RedactionCells, NoPixelsColourReachesTheCells)
{
    // One pixel among many moves a cell's mean, which is what guesses are compared with.
    QImage source(300, 300, QImage::Format_RGB32);
    source.fill(Qt::white);
    for (int y = 0; y < 300; ++y)
        for (int x = 0; x < 300; x += 3)
            source.setPixel(x, y, (x * y) % 7 < 3 ? 0xFF000000 : 0xFF909090);
    auto other = source;
    for (int i = 100; i < 112; ++i)
        other.setPixel(i, 150, other.pixel(i, 150) ^ 0x00FFFFFF);
    EXPECT_NE(cellMeans(source, 9), cellMeans(other, 9));
    EXPECT_EQ(pixellated(source, 9), pixellated(other, 9));
    EXPECT_EQ(blurred(source, 9, 12), blurred(other, 9, 12));
}

TEST(RedactionCells, TheSamePictureGivesTheSameCellsWhateverTheThreads)
{
    // The first is large enough to be shared out; its upper half alone is not.
    const QImage whole = noise({1152, 1440}, QImage::Format_RGB32);
    const auto again = whole.copy();
    EXPECT_EQ(pixellated(whole, 9), pixellated(again, 9));
    const auto top = whole.copy(0, 0, 1152, 216);
    EXPECT_EQ(pixellated(whole, 9).copy(0, 0, 1152, 72), pixellated(top, 9).copy(0, 0, 1152, 72));
    EXPECT_EQ(blurred(whole, 9, 12).copy(0, 0, 1152, 20), blurred(top, 9, 12).copy(0, 0, 1152, 20));
}

TEST(RedactionCells, PixelsOfSomeColumnsAndRowsAreThoseOfTheWhole)
{
    const QImage source = noise({203, 151}, QImage::Format_ARGB32_Premultiplied);
    const RedactionCells cells(source, 9);
    const RedactionBlur blur(cells, 12);
    const std::vector<int> columns{3, 4, 5, 50, 50, 120, 202}, rows{0, 1, 8, 9, 77, 150};
    const auto squares = cells.pixellated(columns, rows);
    const auto soft = blur.pixels(columns, rows);
    for (int y = 0; y < int(rows.size()); ++y)
        for (int x = 0; x < int(columns.size()); ++x) {
            const QPoint at(columns[std::size_t(x)], rows[std::size_t(y)]);
            EXPECT_EQ(squares.pixel(x, y), pixellated(source, 9).pixel(at));
            EXPECT_EQ(soft.pixel(x, y), blurred(source, 9, 12).pixel(at));
        }
}

TEST(RedactionCells, TakePicturesOfAnyFormat)
{
    for (const auto& [given, made] : {std::pair{QImage::Format_RGB32, QImage::Format_RGB32},
             {QImage::Format_ARGB32_Premultiplied, QImage::Format_ARGB32_Premultiplied},
             {QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied},
             {QImage::Format_RGB888, QImage::Format_RGB32},
             {QImage::Format_Grayscale8, QImage::Format_RGB32}}) {
        const QImage source = noise({50, 40}, given);
        for (const QImage& result : {pixellated(source, 9), blurred(source, 9, 12)}) {
            EXPECT_EQ(result.format(), made);
            EXPECT_EQ(result.size(), source.size());
            EXPECT_TRUE(result.convertToFormat(QImage::Format_ARGB32).convertToFormat(made) == result)
                << "a colour above its alpha";
        }
    }
    EXPECT_TRUE(RedactionCells({}, 9).isNull());
    EXPECT_TRUE(RedactionBlur({}, 9).isNull());
}

TEST(RedactionBlur, FollowsATrueGaussianOfThePixellatedPicture)
{
    struct Case {
        int side;
        double sigma;
        double most; ///< levels
    };
    // The last one is that of a coarse screen, where cells are large beside the blur.
    for (const auto& [side, sigma, most] :
        {Case{9, 12, 3}, {18, 24, 3}, {14, 18, 3}, {27, 36, 3}, {6, 6, 5}}) {
        const QImage source = noise({187, 141}, QImage::Format_RGB32);
        const QImage mosaic = pixellated(source, side);
        const Plane expected = referenceBlur(channelOf(mosaic, 1, 4), source.size(), sigma, true);
        EXPECT_LE(largestDifference(channelOf(blurred(source, side, sigma), 1, 4), expected), most)
            << "cell " << side;
    }
}

} // namespace
} // namespace pintalux
