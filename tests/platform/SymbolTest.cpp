// SPDX-License-Identifier: MIT
#include "platform/graphics/Symbol.h"

#include "model/CaptureAction.h"
#include "model/Command.h"
#include "model/Tool.h"
#include "platform/graphics/PathData.h"

namespace {

QImage drawn(const QString& name, int side, const QBrush& brush)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    Symbol::draw(name, image.rect(), brush, painter);
    return image;
}

double coverage(const QImage& image)
{
    double sum = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            sum += qAlpha(image.pixel(x, y)) / 255.0;
    return sum / image.width() / image.height();
}

} // namespace

// Where the font does not join a name into one glyph, the path stays empty.
TEST(Symbol, EveryNameIsOneGlyphWithinItsSquare)
{
    QHash<QByteArray, QString> seen;
    for (const auto& name : Symbol::allNames()) {
        const auto outline = Symbol::path(name, 20).boundingRect();
        EXPECT_FALSE(outline.isEmpty()) << name.toStdString();
        EXPECT_TRUE(QRectF(-0.01, -0.01, 20.02, 20.02).contains(outline)) << name.toStdString();
        EXPECT_GE(std::max(outline.width(), outline.height()), 20 * 0.38) << name.toStdString();

        const auto image = drawn(name, 48, Qt::black);
        EXPECT_GT(coverage(image), 0.03) << name.toStdString();
        EXPECT_LT(coverage(image), 0.75) << name.toStdString();
        const QByteArray pixels(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
        EXPECT_TRUE(!seen.contains(pixels) || name == u"pin.fill")
            << name.toStdString() << " looks like " << seen[pixels].toStdString();
        seen.insert(pixels, name);
    }
    EXPECT_FALSE(Symbol::exists(u"near_me")) << "ligatures are no names of ours";
    EXPECT_TRUE(Symbol::path(u"no.such.symbol", 20).isEmpty());
}

TEST(Symbol, EverySymbolOfTheTablesExists)
{
    const auto expectExisting = [](const auto& table) {
        for (const auto& row : table)
            EXPECT_TRUE(row.symbol.isEmpty() || Symbol::exists(row.symbol))
                << row.symbol.toString().toStdString();
    };
    expectExisting(toolTable);
    expectExisting(captureActionTable);
    expectExisting(commandTable);
}

TEST(Symbol, IconsAreDrawnForTheDevicePixelRatioAndInTheColourOfTheirState)
{
    const auto icon = Symbol::icon(u"folder", Symbol::IconColors{Qt::black, Qt::gray, Qt::white});
    const auto twice = icon.pixmap(QSize(17, 17), 2, QIcon::Normal).toImage();
    const auto expected = drawn(u"folder"_s, 34, Qt::black);
    EXPECT_EQ(twice.convertToFormat(expected.format()), expected) << "not an enlarged small picture";
    const auto active = icon.pixmap(QSize(17, 17), 1, QIcon::Active).toImage();
    EXPECT_EQ(active.convertToFormat(expected.format()), drawn(u"folder"_s, 17, Qt::white));
}

TEST(PathData, ReadsTheShortNotation)
{
    const auto box = pathFromData(u"M2 3h4v5h-4Z");
    EXPECT_EQ(box.boundingRect(), QRectF(2, 3, 4, 5));
    EXPECT_EQ(pathFromData(u"M5.5 18.5 18.5 5.5").boundingRect(), QRectF(5.5, 5.5, 13, 13));
    EXPECT_EQ(pathFromData(u"M.5-1 1.5.5").boundingRect(), QRectF(0.5, -1, 1, 1.5))
        << "numbers without spaces";
    // A smooth continuation mirrors the control point before it.
    EXPECT_EQ(pathFromData(u"M0 0C0 10 10 10 10 0S20-10 20 0"),
        pathFromData(u"M0 0C0 10 10 10 10 0C10-10 20-10 20 0"));
    EXPECT_EQ(pathFromData(u"M1 1c1 0 2 1 2 2q1 1 2 0"), pathFromData(u"M1 1C2 1 3 2 3 3Q4 4 5 3"));
    EXPECT_EQ(pathFromData(u"M1 1 2 X 5 5").elementCount(), 1) << "ends at the mistake";
}
