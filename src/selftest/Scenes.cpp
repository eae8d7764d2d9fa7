// SPDX-License-Identifier: MIT
#include "selftest/Scenes.h"

#include "app/icon/AppIcon.h"
#include "model/Palette.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"

#include <QColorSpace>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace pintalux::SelfTest {

namespace {

constexpr double width = 4 * sampleScale;

QColor swatch(int index) { return Palette::annotation()[index].color; }
QColor hex(QStringView text) { return colorFromHex(text).value(); }

enum SwatchIndex { red, tangerine, lemon, mint, sky, lavender, graphite, snow };

/// A stable identity: the scenes look the same on every run.
QUuid identity(int number) { return QUuid::createUuidV5(QUuid(), QByteArray::number(number)); }

Annotation shape(AnnotationKind kind, QPointF start, QPointF end, const QColor& color)
{
    Annotation mark{.kind = kind, .start = start, .end = end, .color = color, .lineWidth = width};
    return mark;
}

Annotation arrow(ArrowStyle style, QPointF start, QPointF end, const QColor& color,
    std::optional<QPointF> middle = std::nullopt)
{
    auto mark = shape(AnnotationKind::arrow, start, end, color);
    mark.arrowStyle = style;
    if (middle)
        mark.setCurveMidpoint(*middle);
    return mark;
}

Annotation text(const QString& words, QPointF origin, const QColor& color, double fontSize)
{
    auto mark = shape(AnnotationKind::text, origin, origin, color);
    mark.text = words;
    mark.fontSize = fontSize;
    return mark;
}

Annotation callout(const QString& words, QPointF origin, const QColor& color, std::optional<QPointF> tip,
    double fontSize = 36)
{
    auto mark = text(words, origin, color, fontSize);
    mark.filled = true;
    mark.pointer = tip;
    return mark;
}

Annotation step(int number, QPointF center, const QColor& color, std::optional<QPointF> tip = std::nullopt)
{
    auto mark = shape(AnnotationKind::step, center, center, color);
    mark.number = number;
    mark.fontSize = 44;
    mark.pointer = tip;
    return mark;
}

Annotation stroke(AnnotationKind kind, const QList<QPointF>& points, const QColor& color)
{
    auto mark = shape(kind, points.front(), points.back(), color);
    mark.points = points;
    return mark;
}

QList<QPointF> wave(QPointF from, double length, double height, int samples)
{
    QList<QPointF> points;
    for (int i = 0; i <= samples; ++i) {
        const double t = double(i) / samples;
        points << from + QPointF(t * length, height * std::sin(t * 18) * (1 - 0.4 * t));
    }
    return points;
}

Document scene(const QImage& capture, QList<Annotation> marks)
{
    int number = 100;
    for (auto& mark : marks)
        mark.id = identity(number++);
    return {capture, marks, sampleScale};
}

} // namespace

QImage sampleImage()
{
    QImage image(1400, 900, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return {};
    image.setColorSpace(QColorSpace::SRgb);
    image.fill(hex(u"#F7F7FA"));
    QPainter painter(&image);
    GraphicsContext graphics(painter);
    graphics.fill(Draw::roundedRect({0, 0, 1400, 96}, 0), hex(u"#E6E8F0"));

    struct Card {
        double left;
        QStringView color;
    };
    for (const auto& card : {Card{120, u"#3A86FF"}, Card{530, u"#2BD67B"}, Card{940, u"#FF9F1C"}})
        graphics.fill(Draw::roundedRect({card.left, 570, 360, 280}, 24), hex(card.color));

    const auto line
        = [&graphics](const QString& words, double size, FontWeight weight, QStringView color, double y) {
              graphics.draw(TextBlock(words, {Draw::systemFont(size, weight), hex(color)}), {120, y});
          };
    line(u"Hola desde Pintalux"_s, 72, FontWeight::bold, u"#1F2328", 168);
    line(u"Capturas elegantes con anotaciones en español"_s, 34, FontWeight::regular, u"#57606A", 272);
    return image;
}

QList<Annotation> sampleAnnotations()
{
    QList<Annotation> marks;
    marks << stroke(AnnotationKind::highlighter, {{128, 294}, {420, 294}}, swatch(lemon));
    marks << stroke(AnnotationKind::pen, wave({124, 352}, 300, 9, 60), swatch(lavender));
    marks << text(u"ESTA ES UNA PRUEBA"_s, {120, 420}, swatch(red), 52);
    marks << shape(AnnotationKind::rectangle, {520, 560}, {900, 860}, swatch(red));
    marks << arrow(ArrowStyle::filled, {1090, 470}, {720, 548}, swatch(red), QPointF(880, 470));
    marks << callout(u"¡Todo en un clic!"_s, {1004, 330}, swatch(lavender), QPointF(930, 240));
    marks << shape(AnnotationKind::ellipse, {1150, 590}, {1290, 730}, swatch(snow));
    marks << arrow(ArrowStyle::outline, {960, 820}, {1140, 700}, swatch(sky));
    auto redaction = shape(AnnotationKind::blur, {640, 268}, {906, 326}, swatch(graphite));
    marks << redaction;
    redaction.blurStyle = BlurStyle::blur;
    redaction.start = {1000, 780};
    redaction.end = {1330, 880};
    marks << redaction;
    marks << shape(AnnotationKind::line, {560, 800}, {860, 800}, swatch(graphite));
    marks << step(1, {530, 566}, swatch(sky)) << step(2, {700, 690}, swatch(graphite), QPointF(800, 796));
    auto picture = shape(AnnotationKind::image, {170, 620}, {350, 800}, swatch(snow));
    picture.image = AppIcon::render(360);
    marks << picture;
    return scene({}, marks).annotations;
}

Document calloutScene(const QImage& capture)
{
    auto wide = callout(u"Un globo con ancho fijo reparte el texto en varias líneas"_s, {1010, 400},
        swatch(snow), QPointF(1230, 640), 30);
    wide.boxWidth = 330;
    auto handwritten = callout(u"escrito a mano"_s, {170, 620}, swatch(lemon), QPointF(250, 790), 40);
    handwritten.handwritten = true;
    return scene(capture,
        {callout(u"Arriba"_s, {180, 410}, swatch(red), QPointF(290, 330)), handwritten,
            callout(u"A la derecha"_s, {550, 430}, swatch(sky), QPointF(900, 462)),
            callout(u"Sin punta"_s, {610, 690}, swatch(graphite), std::nullopt), wide,
            callout(u"Menta"_s, {980, 196}, swatch(mint), QPointF(850, 220))});
}

Document stepScene(const QImage& capture)
{
    QList<Annotation> marks;
    for (int i = 0; i < 8; ++i)
        marks << step(i + 1, QPointF(180 + 150 * i, 440), swatch(i));
    marks << step(9, {300, 700}, swatch(graphite), QPointF(420, 620))
          << step(10, {710, 710}, swatch(red), QPointF(710, 540))
          << step(128, {1120, 700}, swatch(lavender), QPointF(960, 800));
    return scene(capture, marks);
}

Document sketchScene(const QImage& capture)
{
    auto note = text(u"nota a mano"_s, {850, 470}, swatch(red), 56);
    note.handwritten = true;
    return scene(capture,
        {arrow(ArrowStyle::sketch, {200, 560}, {950, 860}, swatch(red), QPointF(520, 820)),
            arrow(ArrowStyle::sketch, {950, 860}, {1150, 300}, swatch(graphite), QPointF(1240, 600)),
            arrow(ArrowStyle::sketch, {1150, 300}, {850, 216}, swatch(sky)),
            arrow(ArrowStyle::line, {160, 420}, {460, 380}, swatch(tangerine)),
            arrow(ArrowStyle::double_, {560, 470}, {900, 420}, swatch(lavender), QPointF(730, 380)), note});
}

} // namespace pintalux::SelfTest
