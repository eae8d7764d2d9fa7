// SPDX-License-Identifier: MIT
#include "Scene.h"
#include "platform/graphics/Geometry.h"
#include "render/SeededRandom.h"

using namespace pintalux::testing_scene;

namespace {

QList<QPointF> straight(double length, QPointF from = {0, 0})
{
    return Annotation{.start = from, .end = from + QPointF(length, 0), .color = Qt::red}.curveSamples();
}

const QUuid someId(u"00112233-4455-6677-8899-aabbccddeeff"_s);

} // namespace

TEST(SeededRandom, FollowsTheReferenceGeneratorFromTheBytesAsTheTextShowsThem)
{
    auto hash = 0x9E3779B97F4A7C15U;
    for (unsigned byte = 0; byte < 16; ++byte)
        hash = (hash * 31) ^ (byte * 0x11);
    EXPECT_EQ(SeededRandom::fromUuid(someId).state, hash);
    // First outputs of SplitMix64 from state 0: E220A8397B1DCDAF, 6E789E6AA1B965F4, 06C45D188009454F.
    SeededRandom random{0};
    EXPECT_DOUBLE_EQ(random.next(), double(0xE220A8397B1DCDAFU >> 11) / 9007199254740992.0);
    EXPECT_DOUBLE_EQ(random.next(), double(0x6E789E6AA1B965F4U >> 11) / 9007199254740992.0);
    EXPECT_DOUBLE_EQ(random.next(), double(0x06C45D188009454FU >> 11) / 9007199254740992.0);
}

TEST(ArrowPath, HeadOfAShortArrowStaysWithinItsShaft)
{
    for (const double length : {3.0, 10.0, 40.0}) {
        const auto path = Renderer::arrowPath(straight(length), 8);
        ASSERT_TRUE(path);
        EXPECT_GE(path->boundingRect().left(), -0.18 * 8 - 0.01) << "length " << length;
        EXPECT_NEAR(path->boundingRect().right(), length, 1e-9);
        EXPECT_NEAR(path->boundingRect().height(),
            std::max(2 * 0.58 * std::min(4.2 * 8, 0.55 * length), 1.1 * 8), 1e-6);
    }
}

TEST(LineArrowPath, BarbsLieEitherSideOfTheShaft)
{
    const auto single = Renderer::lineArrowPath(straight(100), 5, false).value();
    EXPECT_EQ(single.boundingRect(), QRectF(0, -18 * std::sin(0.48), 100, 36 * std::sin(0.48)));
    const auto both = Renderer::lineArrowPath(straight(100), 5, true).value();
    EXPECT_EQ(both.toSubpathPolygons().size(), single.toSubpathPolygons().size() + 1);
    EXPECT_EQ(both.boundingRect(), single.boundingRect());
    // A head longer than the whole arrow takes its direction from the other end.
    EXPECT_NEAR(
        Renderer::lineArrowPath(straight(5), 5, false)->boundingRect().left(), 5 - 18 * std::cos(0.48), 1e-9);
}

TEST(LineArrow, TipIsAsSmoothAsADisc)
{
    // Two round ends on the same place would count the pixels of their common edge twice.
    const auto painted = [](auto painting) {
        auto image = plain(80, 60, Qt::transparent);
        QPainter painter(&image);
        GraphicsContext context(painter);
        painting(context);
        return image;
    };
    for (const bool doubleHead : {false, true}) {
        for (const double width : {5.0, 12.0, 20.0}) {
            const QPointF tip(60.3, 30.4);
            const auto path
                = Renderer::lineArrowPath(straight(150, tip - QPointF(150, 0)), width, doubleHead);
            const auto arrow = painted([&](auto& on) { on.stroke(*path, {Qt::black, width}); });
            const auto disc = painted([&](auto& on) {
                QPainterPath round;
                round.addEllipse(tip, width / 2, width / 2);
                on.fill(round, QColor(Qt::black));
            });
            const QRect front(QPoint(int(tip.x() + width * 0.35), 0), QPoint(79, 59));
            EXPECT_TRUE(difference(arrow.copy(front), disc.copy(front), 40).isNull()) << width;
        }
    }
}

TEST(Arrow, TwoPixelsAndLessDrawNothingInAnyStyle)
{
    const auto capture = plain(60, 60);
    for (const auto style : allCases<ArrowStyle>())
        for (const double length : {0.0, 2.0, 3.0}) {
            auto arrow = mark(AnnotationKind::arrow, {30, 30}, {30 + length, 30});
            arrow.arrowStyle = style;
            EXPECT_EQ(difference(drawn(capture, {arrow}), capture).isNull(), length < 3)
                << rawValue(style).toStdString() << " " << length;
        }
}

TEST(SketchArrow, TheOrderOfTheDrawsIsTheFormat)
{
    // Recomputed from the definition for one identity: first and last points of pass one and the left barb.
    const auto points = straight(200);
    const double width = 6;
    const double scale = 2;
    auto random = SeededRandom::fromUuid(someId);
    const double phase = random.next() * M_PI;
    const double frequency = random.next() * 1.3 + 1.2;
    const double bow = 200 * (random.next() - 0.5) * 0.018;
    QList<double> offsets;
    for (int i = 0; i <= 48; ++i) {
        const double t = i / 48.0;
        const double a = 0.22 * width + 0.6 * scale;
        offsets << bow * std::sin(M_PI * t) + a * 0.6 * std::sin(2 * phase + 2 * frequency * M_PI * t)
                + a * (random.next() - 0.5) * 0.25;
    }
    const double head = std::min(std::max(14 * scale, 5.6 * width), 0.45 * 200);
    const double angle = M_PI + (random.next() - 0.5) * 0.08 + 0.42;
    const double reach = head * (random.next() * 0.16 + 0.92);
    const double dx = width * (random.next() - 0.5) * 0.5;
    const double dy = width * (random.next() - 0.5) * 0.5;

    const auto path = Renderer::sketchArrowPaths(points, width, scale, someId).front();
    EXPECT_NEAR(path.elementAt(0).y, offsets.front(), 1e-9);
    qsizetype barb = 1;
    while (path.elementAt(int(barb)).type != QPainterPath::MoveToElement)
        ++barb;
    EXPECT_NEAR(path.elementAt(int(barb) - 1).y, offsets.back(), 1e-9);
    EXPECT_NEAR(path.elementAt(int(barb)).x, 200 + reach * std::cos(angle) + dx, 1e-6);
    EXPECT_NEAR(path.elementAt(int(barb)).y, reach * std::sin(angle) + dy, 1e-6);
    EXPECT_NE(path, Renderer::sketchArrowPaths(points, width, scale, QUuid::createUuid()).front());
}
