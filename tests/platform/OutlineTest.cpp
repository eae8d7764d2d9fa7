// SPDX-License-Identifier: MIT
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"

namespace {

using Painting = std::function<void(GraphicsContext&)>;

/// What `painting` covers of each pixel, as the opacity of its black ink.
QImage painted(QSize size, double scale, const QRectF& clip, const Painting& painting)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    GraphicsContext context(painter);
    if (!clip.isNull())
        context.clip(clip);
    context.scale(scale);
    painting(context);
    return image;
}

/// How much of a row at height `y`, between `left` and `right`, lies within an ellipse.
double lengthInside(double y, double left, double right, QPointF center, QSizeF radii)
{
    const double across = (y - center.y()) / radii.height();
    if (std::abs(across) >= 1 || radii.isEmpty())
        return 0;
    const double half = radii.width() * std::sqrt(1 - across * across);
    return std::max(0.0, std::min(right, center.x() + half) - std::max(left, center.x() - half));
}

/// The part of a pixel that lies within an ellipse.
double coverage(QPoint pixel, QPointF center, QSizeF radii)
{
    constexpr int rows = 200;
    double sum = 0;
    for (int i = 0; i < rows; ++i)
        sum += lengthInside(pixel.y() + (i + 0.5) / rows, pixel.x(), pixel.x() + 1, center, radii);
    return sum / rows;
}

/// The part of a pixel within a ring or, of no inner radius, a disc.
double ringCoverage(QPoint pixel, QPointF center, double inner, double outer)
{
    const double away = distance(QPointF(pixel) + QPointF(0.5, 0.5), center);
    if (away > outer + 1 || away < inner - 1)
        return 0;
    if (away < outer - 1 && away > inner + 1)
        return 1;
    return coverage(pixel, center, {outer, outer}) - coverage(pixel, center, {inner, inner});
}

/// The part of a pixel on the near side of a straight edge at a signed distance from its middle.
double halfPlaneCoverage(double distance, QPointF normal)
{
    constexpr int rows = 64;
    double sum = 0;
    for (int i = 0; i < rows; ++i) {
        const double left = -distance - ((i + 0.5) / rows - 0.5) * normal.y();
        const double width = std::max(std::abs(normal.x()), 1e-9);
        sum += std::clamp(left / width + 0.5, 0.0, 1.0);
    }
    return sum / rows;
}

/// The part of a pixel that a stroke along an ellipse covers, its edges taken as straight within the pixel.
double strokeCoverage(QPoint pixel, QPointF center, QSizeF radii, double width)
{
    const auto at = QPointF(pixel) + QPointF(0.5, 0.5) - center;
    double nearest = direction({at.x() / radii.width(), at.y() / radii.height()});
    for (double step = 0.2; step > 1e-7; step *= 0.5)
        for (const double angle : {nearest - step, nearest + step, nearest - step, nearest + step})
            if (distance(at, {radii.width() * std::cos(angle), radii.height() * std::sin(angle)})
                < distance(at, {radii.width() * std::cos(nearest), radii.height() * std::sin(nearest)}))
                nearest = angle;
    const QPointF foot(radii.width() * std::cos(nearest), radii.height() * std::sin(nearest));
    const auto normal = unit({std::cos(nearest) / radii.width(), std::sin(nearest) / radii.height()}, 1e-9);
    const double away = QPointF::dotProduct(at - foot, normal);
    return halfPlaneCoverage(away - width / 2, normal) - halfPlaneCoverage(away + width / 2, normal);
}

struct Deviation {
    double worst = 0;
    double mean = 0; ///< of the pixels at an edge, by amount
    double bias = 0; ///< of the same, by sign
};

Deviation deviation(const QImage& image, const std::function<double(QPoint)>& expected)
{
    Deviation result;
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const double wanted = expected({x, y});
            const double apart = qAlpha(image.pixel(x, y)) / 255.0 - wanted;
            result.worst = std::max(result.worst, std::abs(apart));
            if (wanted <= 0.001 || wanted >= 0.999)
                continue;
            ++count;
            result.bias += apart;
            result.mean += std::abs(apart);
        }
    }
    result.mean /= std::max(1, count);
    result.bias /= std::max(1, count);
    return result;
}

/// A hundredth of a pixel. A single corner of an outline may add the half of a step of the rasteriser's grid
/// in both directions, and its 256 levels of coverage.
void expectExact(const Deviation& found, const std::string& what)
{
    EXPECT_LT(found.worst, 0.01 + std::sqrt(2.0) / 128 + 1 / 256.0) << what;
    EXPECT_LT(found.mean, 0.005) << what;
    EXPECT_LT(std::abs(found.bias), 0.004) << what;
}

} // namespace

TEST(Outline, RingsDiscsAndArcsCoverWhatTheyShould)
{
    for (const double scale : {1.0, 1.25, 2.0}) {
        for (const double radius : {5.3, 12.0, 33.22, 75.7}) {
            const QPointF center(radius + 8.37, radius + 8.21);
            const QSize size = QSizeF(scale * (2 * radius + 17), scale * (2 * radius + 17)).toSize();
            const auto circle = expanded(QRectF(center, QSizeF(0, 0)), radius);
            const auto named = [&](const char* what) {
                return what + std::string(" of ") + std::to_string(radius) + " at " + std::to_string(scale);
            };
            for (const double width : {1.0, 6.644}) {
                const auto ring = painted(size, scale, {}, [&](auto& on) {
                    on.stroke(Draw::ellipse(circle), {Qt::black, width});
                });
                const double inner = scale * (radius - width / 2);
                const double outer = scale * (radius + width / 2);
                const auto wanted
                    = [&](QPoint pixel) { return ringCoverage(pixel, center * scale, inner, outer); };
                expectExact(deviation(ring, wanted), named("ring"));

                // The first half of the ellipse, clockwise from the right: below the middle.
                const auto half = painted(size, scale, {}, [&](auto& on) {
                    const auto whole = Draw::ellipse(circle);
                    QPainterPath arc(whole.elementAt(0));
                    for (int i = 1; i < whole.elementCount() / 2; i += 3)
                        arc.cubicTo(whole.elementAt(i), whole.elementAt(i + 1), whole.elementAt(i + 2));
                    on.stroke(arc, {Qt::black, width, Qt::FlatCap});
                });
                const int middle = int(center.y() * scale);
                expectExact(deviation(half,
                                [&](QPoint pixel) {
                                    const bool below = pixel.y() > middle;
                                    return below ? wanted(pixel)
                                                 : qAlpha(half.pixel(pixel)) / 255.0 * (pixel.y() == middle);
                                }),
                    named("arc"));
            }
            const auto disc = painted(
                size, scale, {}, [&](auto& on) { on.fill(Draw::ellipse(circle), QColor(Qt::black)); });
            const auto wanted
                = [&](QPoint pixel) { return ringCoverage(pixel, center * scale, 0, scale * radius); };
            expectExact(deviation(disc, wanted), named("disc"));
        }
    }
}

TEST(Outline, AnEllipsesStrokeIsEquallyWideAllAround)
{
    const QPointF center(70.3, 50.8);
    const QSizeF radii(60.2, 38.7);
    const auto image = painted({142, 102}, 1, {}, [&](auto& on) {
        on.stroke(
            Draw::ellipse({center - QPointF(radii.width(), radii.height()), 2 * radii}), {Qt::black, 6.644});
    });
    const auto wanted = [&](QPoint pixel) { return strokeCoverage(pixel, center, radii, 6.644); };
    expectExact(deviation(image, wanted), "ellipse");
}

// A dash that starts where a clip does changes when a part is painted again.
TEST(Outline, WhatIsPaintedInPartIsAPartOfTheWhole)
{
    const QRectF frame(6.3, 5.7, 61.2, 48.6);
    QPainterPath bend(QPointF(8, 60));
    bend.cubicTo({20, -30}, {60, 80}, {66, 8});
    const QList<Painting> paintings{
        [&](auto& on) {
            on.stroke(Draw::roundedRect(frame, 0), {Qt::black, 1.5, Qt::FlatCap, Qt::MiterJoin, {5, 4}});
        },
        [&](auto& on) {
            on.stroke(bend, {Qt::black, 1.2, Qt::FlatCap, Qt::MiterJoin, {4, 3}});
        },
        [&](auto& on) {
            on.stroke(bend, {Qt::black, 9});
        },
        [&](auto& on) {
            on.stroke(Draw::ellipse(frame), {Qt::black, 5});
        },
        [&](auto& on) {
            on.stroke(Draw::roundedRect(frame, 12), {Qt::black, 5, Qt::FlatCap, Qt::MiterJoin});
        },
        [&](auto& on) {
            on.setShadow({Qt::black, {0, 2}, 7});
            on.fillAndStroke(Draw::ellipse(frame), QColor(Qt::gray), {Qt::black, 3});
        },
    };
    for (const double scale : {1.0, 1.25, 2.0}) {
        const QSize size(int(80 * scale), int(70 * scale));
        for (qsizetype i = 0; i < paintings.size(); ++i) {
            const auto whole = painted(size, scale, {}, paintings[i]);
            for (const QRect part : {QRect(0, 0, 30, 70), QRect(11, 13, 9, 8), QRect(40, 7, 31, 22)}) {
                const auto alone = painted(size, scale, part, paintings[i]);
                EXPECT_EQ(alone.copy(part), whole.copy(part)) << "painting " << i << " at " << scale;
            }
        }
    }
}

TEST(Outline, AStrokeWiderThanItsCurveHasNoHole)
{
    const auto dot = painted({60, 60}, 1, {}, [](auto& on) {
        on.stroke(Draw::ellipse({27, 27, 6, 6}), {Qt::black, 24});
    });
    expectExact(deviation(dot, [](QPoint pixel) { return ringCoverage(pixel, {30, 30}, 0, 15); }), "dot");

    QPainterPath hairpin(QPointF(20, 70));
    hairpin.cubicTo({19, -10}, {31, -10}, {30, 70});
    const auto bend = painted({50, 80}, 1, {}, [&](auto& on) { on.stroke(hairpin, {Qt::black, 16}); });
    for (int y = 12; y < 70; ++y)
        EXPECT_EQ(qAlpha(bend.pixel(25, y)), 255) << y;
}
