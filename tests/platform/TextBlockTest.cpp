// SPDX-License-Identifier: MIT
#include "platform/graphics/TextBlock.h"

#include <QFontDatabase>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

const QString sample = u"Configuración guardada: ¡Ñandú, pingüino!\nWAVE 0123456789"_s;

TextAttributes rounded(double size)
{
    return {Draw::roundedFont(size, FontWeight::semibold), Qt::black, 1.05};
}

QRect inkedArea(const TextBlock& block, QPointF at, QSize canvas)
{
    QImage image(canvas, QImage::Format_Grayscale8);
    image.fill(255);
    {
        QPainter painter(&image);
        block.draw(painter, at);
    }
    QRect inked;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.constScanLine(y)[x] < 200)
                inked |= QRect(x, y, 1, 1);
    return inked;
}

} // namespace

TEST(TextBlock, TwiceTheSizeMeasuresTwiceAsMuch)
{
    for (const double size : {8.8, 13.2, 17.6, 33.3}) {
        const auto once = TextBlock(sample, rounded(size)).size();
        const auto twice = TextBlock(sample, rounded(2 * size)).size();
        EXPECT_NEAR(twice.width(), 2 * once.width(), 1e-6) << size;
        EXPECT_NEAR(twice.height(), 2 * once.height(), 1e-6) << size;
        const auto wrapped = TextBlock(sample, rounded(size), 9 * size).size();
        EXPECT_NEAR(
            TextBlock(sample, rounded(2 * size), 18 * size).size().height(), 2 * wrapped.height(), 1e-6);
        EXPECT_LE(wrapped.width(), 9 * size + 1e-6);
        EXPECT_GT(wrapped.height(), once.height());
    }
}

TEST(TextBlock, DrawsWhereItMeasures)
{
    const TextBlock block(u"HHHH\nHHHH"_s, rounded(40.5));
    const auto size = block.size();
    const auto inked = inkedArea(block, {20, 10}, {400, 200});
    EXPECT_GE(inked.left(), 20);
    EXPECT_NEAR(inked.right(), 20 + size.width(), 6); // the last letter's side bearing
    EXPECT_GE(inked.top(), 10);
    EXPECT_LE(inked.bottom(), 10 + size.height());
    EXPECT_GT(inked.height(), size.height() / 2);
}

TEST(TextBlock, LineHeightMultipleSpacesTheLines)
{
    auto loose = rounded(30);
    auto tight = loose;
    tight.lineHeightMultiple = 1;
    const QString lines = u"a\nb\nc\nd"_s;
    EXPECT_NEAR(
        TextBlock(lines, loose).size().height() / TextBlock(lines, tight).size().height(), 1.05, 0.001);
}

TEST(TextBlock, AWordWiderThanTheBoxIsBroken)
{
    const auto size = TextBlock(u"Desoxirribonucleico"_s, rounded(20), 60).size();
    EXPECT_LE(size.width(), 60);
    EXPECT_GT(size.height(), 60);
}

TEST(TextBlock, SymbolsAndEmojiComeFromOtherFonts)
{
    // A missing glyph is drawn as the same box for every character.
    const auto picture = [](const QString& text) {
        QImage image(80, 60, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        TextBlock(text, rounded(32)).draw(painter, {4, 4});
        return image;
    };
    const auto missing = picture(QString(QChar(0xE123)));
    for (const auto& text : {u"↩"_s, u"⌘"_s, u"✓"_s, u"😀"_s, u"👍🏽"_s}) {
        EXPECT_NE(picture(text), missing) << text.toStdString();
        EXPECT_NE(picture(text), picture(u" "_s)) << text.toStdString();
    }
    const auto emoji = picture(u"😀"_s);
    bool coloured = false;
    for (int y = 0; y < emoji.height() && !coloured; ++y)
        for (int x = 0; x < emoji.width() && !coloured; ++x)
            coloured = QColor(emoji.pixel(x, y)).saturation() > 120;
    EXPECT_TRUE(coloured) << "the emoji is not drawn in colour";
}

TEST(Font, TheFamiliesOfTheDesignAreInstalled)
{
    const auto installed = QFontDatabase::families();
    EXPECT_TRUE(installed.contains(Draw::roundedFont(10, FontWeight::bold).families.constFirst()));
    EXPECT_TRUE(installed.contains(Draw::handwrittenFont(10).families.constFirst()));
    EXPECT_TRUE(installed.contains(Draw::systemFont(10, FontWeight::bold).families.constFirst()));
}
