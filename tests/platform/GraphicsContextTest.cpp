// SPDX-License-Identifier: MIT
#include "platform/graphics/GraphicsContext.h"

#include "Pictures.h"
#include "platform/image/LargeImage.h"

namespace {

QImage canvas(int width, int height, const QColor& color = Qt::white)
{
    return test::plain({width, height}, color, QImage::Format_ARGB32_Premultiplied);
}

QPainterPath box(const QRectF& rect)
{
    QPainterPath path;
    path.addRect(rect);
    return path;
}

/// Darkness of a column or row of a white picture, as weights of their positions.
double centreOfDarkness(const QImage& image, bool vertical)
{
    double sum = 0;
    double moment = 0;
    test::countPixels(image, [&](int x, int y) {
        const double darkness = 255 - qGray(image.pixel(x, y));
        sum += darkness;
        moment += darkness * ((vertical ? y : x) + 0.5);
        return true;
    });
    return moment / sum;
}

} // namespace

TEST(GraphicsContextShadow, FallsDownByItsOffsetAtAnyScale)
{
    for (const double scale : {1.0, 2.0, 0.5}) {
        auto image = canvas(200, 200);
        QPainter painter(&image);
        GraphicsContext context(painter);
        context.scale(scale);
        context.clip(QRectF(0, 0, 400, 400));
        context.setShadow({QColor(0, 0, 0, 255), {0, 7.5}, 8});
        context.fill(box({80 / scale, 80 / scale, 40 / scale, 40 / scale}), QColor(Qt::white));
        painter.end();
        // The white caster hides 32.5 of the shadow's 40 rows; what shows balances around its lower edge.
        EXPECT_NEAR(centreOfDarkness(image, false), 100, 0.1) << scale;
        EXPECT_EQ(qGray(image.pixel(100, 100)), 255);
        EXPECT_LT(qGray(image.pixel(100, 122)), 90) << scale;
        EXPECT_GT(qGray(image.pixel(100, 76)), 200) << scale;
    }
}

TEST(GraphicsContextShadow, IsAGaussianOfHalfTheBlur)
{
    auto image = canvas(400, 60);
    QPainter painter(&image);
    GraphicsContext context(painter);
    context.setShadow({QColor(0, 0, 0), {0, 0}, 40});              // sigma 20
    context.fill(box({-300, -300, 500, 600}), QColor(0, 0, 0, 0)); // casts nothing: it has no coverage
    context.fill(box({-300, -300, 500, 600}), QColor(Qt::white));
    painter.end();
    // Beyond the straight edge at x = 200 the coverage is the normal distribution's tail.
    for (const int beyond : {10, 20, 40}) {
        const double expected = 0.5 * std::erfc(beyond / 20.0 / std::sqrt(2.0));
        EXPECT_NEAR((255 - qGray(image.pixel(200 + beyond, 30))) / 255.0, expected, 0.02) << beyond;
    }
}

TEST(GraphicsContextState, EverythingComesBackAtTheEndOfTheBlock)
{
    auto image = canvas(40, 40);
    QPainter painter(&image);
    GraphicsContext context(painter);
    {
        const GraphicsContext::Saved saved(context);
        context.translate({20, 20});
        context.setAlpha(0.1);
        context.setBlendMode(QPainter::CompositionMode_Multiply);
        context.setShadow({QColor(Qt::black), {5, 5}, 0});
        context.clip(QRectF(0, 0, 1, 1));
    }
    context.fill(box({0, 0, 10, 10}), QColor(Qt::blue));
    painter.end();
    EXPECT_EQ(image.pixel(5, 5), qRgb(0, 0, 255));
    EXPECT_EQ(image.pixel(12, 12), qRgb(255, 255, 255)); // no shadow
}

TEST(GraphicsContextImage, ReducingAveragesInsteadOfSkippingPixels)
{
    auto stripes = canvas(400, 400);
    for (int x = 0; x < 400; x += 5)
        QPainter(&stripes).fillRect(x, 0, 1, 400, Qt::black);
    auto image = canvas(80, 80, Qt::red);
    QPainter painter(&image);
    GraphicsContext context(painter);
    context.drawImage(stripes, {0, 0, 80, 80});
    painter.end();
    for (int x = 2; x < 78; ++x)
        EXPECT_NEAR(qGray(image.pixel(x, 40)), 204, 2) << x;
}

TEST(GraphicsContextStroke, ACurveOfShortLinesHasNoNotchAtItsCrest)
{
    // The toolkit's round joins turn the wrong way round where a path passes from 359 to 1 degree.
    const QPointF from(10.3, 90.2);
    const QPointF over(61.1, -30.7);
    const QPointF to(110.6, 90.9);
    QPainterPath curve(from);
    curve.quadTo(over, to);
    QPainterPath lines(from);
    for (double t = 1 / 48.0; t < 1 + 1e-9; t += 1 / 48.0)
        lines.lineTo((1 - t) * (1 - t) * from + 2 * t * (1 - t) * over + t * t * to);
    for (const double turn : {0.0, 90.0, 180.0, 270.0}) {
        for (const bool reversed : {false, true}) {
            const auto about = QTransform().translate(60, 60).rotate(turn).translate(-60, -60);
            const auto stroked = [&](const QPainterPath& path) {
                auto image = canvas(120, 120);
                QPainter painter(&image);
                GraphicsContext context(painter);
                const auto turned = about.map(path);
                context.stroke(reversed ? turned.toReversed() : turned, {Qt::black, 3.2});
                return image;
            };
            const auto expected = stroked(curve);
            const auto image = stroked(lines);
            EXPECT_EQ(test::difference(image, expected, 70), QRect())
                << turn << (reversed ? " reversed" : "");
        }
    }
}

TEST(GraphicsContextImage, PixelsMadeForTheDeviceAreThoseUnderItsMiddles)
{
    const auto named = [](std::span<const int> columns, std::span<const int> rows) {
        QImage made(int(columns.size()), int(rows.size()), QImage::Format_RGB32);
        for (int y = 0; y < made.height(); ++y)
            for (int x = 0; x < made.width(); ++x)
                made.setPixel(x, y, qRgb(columns[std::size_t(x)], rows[std::size_t(y)], 7));
        return made;
    };
    for (const double scale : {0.5, 1.0, 1.5, 3.0}) {
        auto image = canvas(120, 100);
        QPainter painter(&image);
        GraphicsContext context(painter);
        context.clip(QRectF(10, 0, 100, 90));
        context.translate({4, 8});
        context.scale(scale);
        context.drawPixels({2, 3, 30, 25}, box({0, 0, 60, 60}), named);
        painter.end();
        const auto covered = QRectF(4 + 2 * scale, 8 + 3 * scale, 30 * scale, 25 * scale).toAlignedRect()
            & QRect(10, 0, 100, 90);
        for (int y = 0; y < 100; ++y)
            for (int x = 0; x < 120; ++x) {
                const auto under = [&](double at, int least, int most) {
                    return std::clamp(int(std::floor(at / scale + 1e-6)), least, most);
                };
                const auto wanted = covered.contains(x, y)
                    ? qRgb(under(x - 3.5, 2, 31), under(y - 7.5, 3, 27), 7)
                    : qRgb(255, 255, 255);
                ASSERT_EQ(image.pixel(x, y), wanted) << x << ',' << y << " scale " << scale;
            }
    }
}

TEST(GraphicsContextShadow, OfAChildWidgetFallsAtItsPlaceInTheWindow)
{
    struct Child : QWidget {
        using QWidget::QWidget;
        void paintEvent(QPaintEvent*) override
        {
            QPainter painter(this);
            GraphicsContext context(painter);
            context.setShadow({Qt::black, {0, 10}, 0});
            QPainterPath path;
            path.addRect(10, 10, 20, 20);
            context.fill(path, QColor(Qt::white));
        }
    };
    QWidget window;
    window.resize(200, 200);
    window.setStyleSheet(u"background: white"_s);
    Child child(&window);
    child.setGeometry(120, 140, 40, 50);
    const auto image = window.grab().toImage();
    const double ratio = image.devicePixelRatio();
    EXPECT_EQ(qGray(image.pixel(QPointF(140 * ratio, 175 * ratio).toPoint())), 0);
    EXPECT_EQ(qGray(image.pixel(QPointF(140 * ratio, 155 * ratio).toPoint())), 255);
}

TEST(ClearedImage, IsAnOrdinaryWritableImageOfZeros)
{
    for (const QSize size : {QSize(3, 2), QSize(2001, 1003)}) {
        for (const auto format : {QImage::Format_ARGB32_Premultiplied, QImage::Format_Alpha8}) {
            auto image = clearedImage(size, format);
            ASSERT_EQ(image.size(), size);
            QImage expected(size, format);
            expected.fill(0);
            EXPECT_EQ(image, expected);
            const auto copy = image;
            QPainter(&image).fillRect(0, 0, 1, 1, Qt::red);
            EXPECT_NE(image, copy);
            EXPECT_EQ(copy, expected);
        }
    }
    EXPECT_TRUE(clearedImage({0, 5}, QImage::Format_RGB32).isNull());
}
