// SPDX-License-Identifier: MIT
#include "platform/graphics/TextBlock.h"

#include "Pictures.h"

namespace {

const QString sample = u"Configuración guardada: ¡Ñandú, pingüino!\nWAVE 0123456789"_s;

TextAttributes rounded(double size)
{
    return {Draw::roundedFont(size, FontWeight::semibold), Qt::black, 1.05};
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

TEST(TextBlock, SymbolsAndEmojiComeFromOtherFonts)
{
    // A missing glyph is drawn as the same box for every character.
    const auto picture = [](const QString& text) {
        auto image = test::plain({80, 60});
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
    EXPECT_GT(
        test::countPixels(emoji, [&](int x, int y) { return emoji.pixelColor(x, y).saturation() > 120; }), 0)
        << "the emoji is not drawn in colour";
}
