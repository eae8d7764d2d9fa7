// SPDX-License-Identifier: MIT
#include "Pictures.h"
#include "capture/text/TextRecognizerContrast.h"

namespace {

/// Strokes of a letter's width, two pixels in eight, over an area.
void write(QImage& image, const QRect& area, const QColor& ink)
{
    QPainter painter(&image);
    for (int x = area.left(); x + 2 < area.right(); x += 8)
        painter.fillRect(x, area.top(), 2, area.height(), ink);
}

struct Levels {
    int ink;   ///< the darkest
    int paper; ///< the least light beside the strokes
};

/// What the page shows of an area of strokes in the picture.
Levels levelsIn(const QImage& page, const QImage& picture, const QRect& area)
{
    const int scale = page.width() / picture.width();
    Levels levels{255, 255};
    for (int y = area.top() + 2; y < area.bottom() - 2; ++y)
        for (int x = area.left(); x + 8 < area.right(); x += 8) {
            levels.ink = std::min(levels.ink, qGray(page.pixel(QPoint(x, y) * scale + QPoint(scale, 0))));
            levels.paper = std::min(levels.paper, qGray(page.pixel(QPoint(x + 5, y) * scale)));
        }
    return levels;
}

} // namespace

TEST(Contrast, WhateverTheColoursTextBecomesDarkOnWhite)
{
    const struct {
        const char* what;
        QColor paper, badge, ink;
    } rows[]{
        {"black on white", Qt::white, Qt::white, Qt::black},
        {"light on dark", QColor(30, 30, 36), QColor(30, 30, 36), QColor(220, 220, 220)},
        {"faint on white", Qt::white, Qt::white, QColor(205, 205, 205)},
        {"white on a badge", Qt::white, QColor(60, 90, 200), Qt::white},
        {"dark on a badge in the dark", QColor(20, 20, 20), QColor(240, 180, 40), QColor(60, 40, 0)},
    };
    for (const auto& [what, paper, badge, ink] : rows) {
        auto picture = test::plain({320, 160}, paper);
        QPainter(&picture).fillRect(60, 40, 200, 80, badge);
        const QRect text(80, 70, 160, 12);
        write(picture, text, ink);
        const auto page = preparedForReading(picture);
        const auto levels = levelsIn(page, picture, text);
        EXPECT_LT(levels.ink, 60) << what;
        EXPECT_GT(levels.paper, 230) << what;
        EXPECT_GT(qGray(page.pixel(10, 10)), 230) << what;
    }
}

// The commonest grey alone would leave half of such paper as a veil of ink.
TEST(Contrast, PaperThatIsNotOneGreyStaysWhite)
{
    auto picture = test::plain({320, 160});
    for (int y = 0; y < 160; ++y)
        for (int x = 0; x < 320; ++x)
            picture.setPixelColor(x, y, (x + y) % 2 ? QColor(131, 131, 131) : QColor(126, 126, 126));
    const QRect text(80, 70, 160, 12);
    write(picture, text, Qt::black);
    const auto page = preparedForReading(picture);
    EXPECT_LT(levelsIn(page, picture, text).ink, 60);
    EXPECT_EQ(test::countPixels(
                  page, [&](int x, int y) { return y < page.height() / 4 && qGray(page.pixel(x, y)) < 250; }),
        0);
}

TEST(Contrast, SmallPicturesAreEnlargedAndHugeOnesWithLargeLettersAreNot)
{
    EXPECT_EQ(preparedForReading(test::plain({50, 30})).size(), QSize(100, 60));
    auto huge = test::plain({2600, 1600});
    write(huge, {100, 100, 2000, 30}, Qt::black);
    EXPECT_EQ(preparedForReading(huge).size(), huge.size());
}
