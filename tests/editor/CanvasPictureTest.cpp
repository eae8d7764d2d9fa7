// SPDX-License-Identifier: MIT
#include "editor/canvas/CanvasPicture.h"

#include "CanvasStage.h"
#include "render/export/Exporter.h"

#include <QRandomGenerator>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

/// A mark of each kind in turn, with everything that reaches beyond its bounds: heads, tails, shadows.
Annotation randomMark(AnnotationKind kind, const QImage& picture, double scale, QRandomGenerator& random)
{
    const auto point
        = [&] { return QPointF(random.bounded(picture.width()), random.bounded(picture.height())); };
    Annotation mark{.kind = kind,
        .start = point(),
        .end = point(),
        .color = Palette::annotation()[random.bounded(8)].color,
        .lineWidth = (1 + random.bounded(8)) * scale,
        .filled = random.bounded(2) == 1,
        .text = u"Ágil ¿qué?"_s,
        .fontSize = (14 + random.bounded(20)) * scale,
        .blurStyle = BlurStyle(random.bounded(2)),
        .arrowStyle = ArrowStyle(random.bounded(5)),
        .handwritten = random.bounded(2) == 1};
    if (kind == AnnotationKind::image) {
        mark.image = picture.copy(0, 0, 90, 60);
        mark.end = mark.start + QPointF(90, 60);
    }
    if (random.bounded(2) == 1)
        mark.control = point();
    if (random.bounded(2) == 1)
        mark.pointer = point();
    if (random.bounded(3) == 1)
        mark.boxWidth = 100 * scale;
    for (int i = 0; i < 12; ++i)
        mark.points << point() / 3 + mark.start / 2;
    return mark;
}

Document documentOfAllKinds(double scale, QRandomGenerator& random)
{
    Document document{CanvasStage::picture(300, 220), {}, scale};
    for (int i = 0; i < 20; ++i)
        document.annotations << randomMark(AnnotationKind(i % 10), document.image, scale, random);
    return document;
}

CanvasScene sceneOf(const Document& document, const BeautifySettings& beautify, QSize view)
{
    CanvasScene scene;
    scene.document = document;
    scene.beautify = beautify;
    scene.view = QRect(QPoint(), view);
    // At full size the toolkit's own pictures do not depend on where a clip begins.
    scene.mapping = CanvasMapping::fitted(view, {8, 8, 8, 8}, document, beautify, 1);
    scene.mapping.scale = 1;
    scene.mapping.origin = {8, 8};
    scene.surroundings = Qt::lightGray;
    scene.overlay.pointScale = 1 / scene.mapping.scale;
    return scene;
}

struct Screen {
    explicit Screen(QSize size)
        : image(size, QImage::Format_RGB32)
    {
        image.fill(Qt::magenta);
    }

    void paint(CanvasPicture& picture, const QRegion& region)
    {
        QPainter painter(&image);
        for (const QRect& part : region)
            picture.paint(painter, part);
    }

    QImage image;
};

/// Where two pictures differ by more than `slack` a channel.
QRect differingPixels(const QImage& a, const QImage& b, int slack = 0)
{
    QRect rect;
    for (int y = 0; y < a.height(); ++y) {
        const auto* p = reinterpret_cast<const QRgb*>(a.constScanLine(y));
        const auto* q = reinterpret_cast<const QRgb*>(b.constScanLine(y));
        for (int x = 0; x < a.width(); ++x) {
            const int apart = std::max({std::abs(qRed(p[x]) - qRed(q[x])),
                std::abs(qGreen(p[x]) - qGreen(q[x])), std::abs(qBlue(p[x]) - qBlue(q[x]))});
            if (apart > slack)
                rect |= QRect(x, y, 1, 1);
        }
    }
    return rect;
}

/// What one event of the editor can do to a scene.
void change(CanvasScene& scene, QRandomGenerator& random)
{
    auto& marks = scene.document.annotations;
    auto& overlay = scene.overlay;
    const auto any = marks.isEmpty() ? QUuid() : marks[random.bounded(int(marks.size()))].id;
    const auto kind = AnnotationKind(random.bounded(10));
    const auto mark = randomMark(kind, scene.document.image, scene.document.pixelScale, random);
    switch (random.bounded(9)) {
    case 0:
        marks << mark;
        break;
    case 1:
        marks.removeIf([&](const auto& each) { return each.id == any; });
        break;
    case 2:
    case 3:
        scene.moving = any;
        for (auto& each : marks)
            if (each.id == any)
                each.offset({double(random.bounded(41) - 20), double(random.bounded(41) - 20)});
        break;
    case 4:
        scene.moving.reset();
        overlay.draft.reset();
        overlay.hiddenID.reset();
        break;
    case 5:
        if (overlay.draft && overlay.draft->kind == AnnotationKind::pen)
            overlay.draft->points << mark.points.back();
        else
            overlay.draft = mark;
        break;
    case 6:
        overlay.hiddenID = any;
        break;
    case 7:
        overlay.nodesFor = any;
        overlay.selectedID = mark.filled ? std::optional(any) : std::nullopt;
        break;
    case 8:
        overlay.crop = QRectF(mark.start, mark.end).normalized();
        if (mark.filled)
            overlay.crop.reset();
        break;
    }
}

} // namespace

// A damage rectangle too small, a layer out of date, a mark painted twice or in the wrong order.
TEST(CanvasPicture, RepaintingTheDamageGivesTheWholePicture)
{
    QRandomGenerator random(3);
    const QSize view(460, 380);
    constexpr int rounding = 8; // of shadows and soft edges where a clip begins
    for (int round = 0; round < 4; ++round) {
        const BeautifySettings beautify{.enabled = round % 2 == 1, .border = true};
        auto scene = sceneOf(documentOfAllKinds(round < 2 ? 1 : 2, random), beautify, view);
        EffectCache cache;
        CanvasPicture picture(cache);
        Screen screen(view);
        screen.paint(picture, picture.show(scene));
        for (int step = 0; step < 25; ++step) {
            change(scene, random);
            screen.paint(picture, picture.show(scene));

            CanvasPicture fresh(cache);
            Screen wanted(view);
            wanted.paint(fresh, fresh.show(scene));
            ASSERT_EQ(differingPixels(screen.image, wanted.image, rounding), QRect())
                << "round " << round << " step " << step;
        }
    }
}

TEST(CanvasPicture, AtFullSizeIsWhatIsExported)
{
    QRandomGenerator random(5);
    for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        for (const bool framed : {false, true}) {
            // One document pixel a device pixel: on a screen as dense as the captured one.
            const auto document = documentOfAllKinds(scale, random);
            const BeautifySettings beautify{.enabled = framed, .border = true};
            auto scene = sceneOf(document, beautify, {900, 800});
            scene.moving = document.annotations[7].id; // and what lies above it, painted directly
            EffectCache cache;
            CanvasPicture picture(cache);
            Screen screen({900, 800});
            screen.paint(picture, picture.show(scene));

            const auto exported = Exporter::render(document, beautify, cache);
            const auto shown = screen.image.copy(QRect(QPoint(8, 8), exported.size()));
            EXPECT_EQ(differingPixels(shown, exported), QRect()) << "scale " << scale << " framed " << framed;
        }
    }
}

TEST(CanvasPicture, NothingShinesThroughTheRedactionOfATransparentPicture)
{
    QImage writing(300, 220, QImage::Format_ARGB32_Premultiplied);
    writing.fill(Qt::transparent);
    QPainter painter(&writing);
    for (int y = 12; y < 220; y += 14)
        painter.drawText(4, y, u"4539 1488 0343 6467 4539 1488 0343 6467"_s);
    painter.end();
    const QSize view(460, 380);
    for (const auto& beautify : {BeautifySettings{}, BeautifySettings{.enabled = true, .gradient = -1}}) {
        EffectCache cache;
        Document redacted{writing, {{.kind = AnnotationKind::blur, .start = {-9, -9}, .end = {309, 229}}}, 1};
        const Document hidden{cache.image(BlurStyle::pixelate, writing, 1), {}, 1};
        CanvasPicture first(cache), second(cache);
        Screen screen(view), wanted(view);
        screen.paint(first, first.show(sceneOf(redacted, beautify, view)));
        wanted.paint(second, second.show(sceneOf(hidden, beautify, view)));
        EXPECT_EQ(differingPixels(screen.image, wanted.image, 1), QRect());
    }
}
