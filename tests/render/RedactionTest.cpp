// SPDX-License-Identifier: MIT
#include "Scene.h"
#include "render/export/Exporter.h"

namespace pintalux {
namespace {

using namespace testing_scene;

Annotation redaction(BlurStyle style, QPointF start, QPointF end)
{
    auto made = mark(AnnotationKind::blur, start, end);
    made.blurStyle = style;
    return made;
}

/// How many pixels of `area` are not what the redacted copy of `capture` shows.
int strangePixels(const QImage& image, const QImage& filtered, const QRect& area)
{
    return int(test::differingPixels(image.copy(area), filtered.copy(area)));
}

TEST(Redaction, LeavesNothingInsideAndChangesNothingAround)
{
    const auto capture = noise(300, 200);
    for (const double scale : {0.5, 1.0, 1.25, 1.5, 2.0, 3.0}) {
        for (const auto style : allCases<BlurStyle>()) {
            EffectCache cache;
            const auto filtered = cache.image(style, capture, scale);
            // Of all sizes, with edges between pixels, at the picture's border.
            for (const QRectF& rect : {QRectF(40, 30, 160, 120), QRectF(40.4, 30.6, 160.1, 119.6),
                     QRectF(100, 100, 5, 5), QRectF(100, 100, 2, 60), QRectF(80.5, 80.5, 1.5, 1.5),
                     QRectF(60, 60, 60, 40), QRectF(60, 60, 30, 9), QRectF(0, 0, 90, 50),
                     QRectF(250, 160, 50, 40), QRectF(0, 100, 4, 4), QRectF(-20, -20, 400, 400)}) {
                const auto image
                    = drawn(capture, {redaction(style, rect.topLeft(), rect.bottomRight())}, scale);
                EXPECT_EQ(strangePixels(image, filtered, rect.toAlignedRect() & capture.rect()), 0)
                    << rect.width() << " x " << rect.height() << " at " << rect.x() << " scale " << scale;
                const int margin = int(std::ceil(1.2 * scale));
                const auto most = rect.toAlignedRect().adjusted(-margin, -margin, margin, margin);
                EXPECT_TRUE(most.contains(difference(image, capture))) << rect.width() << " scale " << scale;
            }
        }
    }
}

/// Letters on nothing, as in a logo.
QImage transparentWriting()
{
    auto image = plain(300, 200, Qt::transparent);
    QPainter painter(&image);
    painter.setPen(Qt::black);
    for (int y = 12; y < 200; y += 14)
        painter.drawText(4, y, QStringLiteral("4539 1488 0343 6467 4539 1488 0343 6467"));
    return image;
}

TEST(Redaction, NothingOfTheOriginalIsLeftBeneathItUnderAFrameOrWhereThePictureIsTransparent)
{
    for (const auto& capture :
        {noise(300, 200).convertToFormat(QImage::Format_RGB32), transparentWriting()}) {
        for (const auto style : allCases<BlurStyle>()) {
            for (const auto& beautify : {BeautifySettings{}, BeautifySettings{.enabled = true},
                     BeautifySettings{.enabled = true, .gradient = -1}}) {
                EffectCache cache;
                // As if the picture had never been another one.
                const Document hidden{cache.image(style, capture, 1), {}, 1};
                const Document redacted{capture, {redaction(style, {-9, -9}, {309, 209})}, 1};
                EXPECT_EQ(difference(drawn(redacted, {}, beautify), drawn(hidden, {}, beautify), 1), QRect())
                    << "alpha " << capture.hasAlphaChannel() << " framed " << beautify.enabled;
            }
        }
    }
}

TEST(Redaction, ShowsTheSameCellsInEveryCrop)
{
    const auto capture = noise(400, 300);
    for (const auto style : allCases<BlurStyle>()) {
        const Document whole{capture, {redaction(style, {120, 90}, {330, 260})}, 1};
        const auto expected = drawn(whole);
        const auto once = *whole.cropped({37, 41, 341, 247});
        const auto twice = *once.cropped({50, 20, 200, 180});
        EXPECT_EQ(drawn(once), expected.copy(37, 41, 341, 247));
        EXPECT_EQ(drawn(twice), expected.copy(87, 61, 200, 180));
        EXPECT_EQ(twice.image, capture.copy(87, 61, 200, 180));
        EXPECT_EQ(twice.capture().cacheKey(), capture.cacheKey()) << "the pixels were copied";
    }
}

TEST(Redaction, WhatMayBeReadOfADocumentHasItsRedactionsAndNoOtherMark)
{
    const auto capture = noise(200, 120);
    EffectCache cache;
    Document document{capture, {mark(AnnotationKind::rectangle, {10, 10}, {60, 60})}, 1};
    EXPECT_EQ(Exporter::redacted(document, cache), capture);
    const auto hidden = redaction(BlurStyle::pixelate, {80, 20}, {160, 90});
    document.annotations << hidden;
    EXPECT_EQ(Exporter::redacted(document, cache), drawn(capture, {hidden}));
}

TEST(Redaction, TheColourOfThePictureIsThatOfItsRedaction)
{
    const auto capture = noise(200, 120);
    EffectCache cache;
    const Document whole{capture,
        {redaction(BlurStyle::blur, {20, 20}, {160, 100}),
            redaction(BlurStyle::pixelate, {60, 40}, {120, 90}),
            mark(AnnotationKind::rectangle, {5, 5}, {180, 110})},
        1};
    const auto cropped = *whole.cropped({7, 5, 170, 110});
    for (const QPoint& at : {QPoint(10, 10), QPoint(30, 30), QPoint(80, 60), QPoint(150, 95)}) {
        const auto shown = Exporter::redacted(whole, cache).pixelColor(at);
        EXPECT_EQ(Renderer::pictureColor(whole, at, cache), shown) << at.x();
        EXPECT_EQ(Renderer::pictureColor(cropped, at - QPoint(7, 5), cache), shown) << at.x();
    }
    EXPECT_FALSE(Renderer::pictureColor(whole, {200, 60}, cache));
}

TEST(EffectCache, CellsAreNinePointsAndNeverBelowSixPixels)
{
    for (const auto& [scale, cell] : {std::pair(1.0, 9), std::pair(2.0, 18), std::pair(0.5, 6)}) {
        EffectCache cache;
        const auto image = cache.image(BlurStyle::pixelate, noise(90, 90), scale);
        for (int x = 1; x < 90; ++x)
            EXPECT_EQ(image.pixel(x, 0) != image.pixel(x - 1, 0), x % cell == 0) << scale << " at " << x;
    }
}

} // namespace
} // namespace pintalux
