// SPDX-License-Identifier: MIT
#include "editor/style/StrokeSample.h"

#include "controls/theme/ControlPainting.h"
#include "controls/theme/Theme.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/PathData.h"
#include "render/Renderer.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr double reduction = 0.75;
constexpr QSizeF box(100, 36); ///< the space of the curves below, in points
constexpr double closeLuminance = 0.12;
constexpr int curvePoints = 48;

QList<QPointF> curvePointsOf(const QPainterPath& curve)
{
    QList<QPointF> points;
    for (int i = 0; i <= curvePoints; ++i)
        points << curve.pointAtPercent(double(i) / curvePoints) / reduction;
    return points;
}

/// Where `stroke` paints, as if it were opaque.
QImage solidShape(const QImage& stroke)
{
    auto mask = stroke.convertToFormat(QImage::Format_Alpha8);
    int most = 1;
    for (int y = 0; y < mask.height(); ++y)
        most = std::max<int>(
            most, *std::max_element(mask.constScanLine(y), mask.constScanLine(y) + mask.width()));
    for (int y = 0; y < mask.height(); ++y)
        std::transform(mask.constScanLine(y), mask.constScanLine(y) + mask.width(), mask.scanLine(y),
            [most](uchar alpha) { return uchar(alpha * 255 / most); });
    return mask;
}

/// A line of one point around `stroke`, nothing within.
QImage contour(const QImage& stroke, const QColor& color)
{
    const auto shape = solidShape(stroke);
    auto line = stroke;
    line.fill(Qt::transparent);
    QPainter painter(&line);
    for (const QPointF shift : {QPointF(-1, 0), QPointF(1, 0), QPointF(0, -1), QPointF(0, 1)})
        painter.drawImage(shift, shape);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawImage(QPointF(), shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF({}, line.deviceIndependentSize()), color);
    return line;
}

} // namespace

StrokeSample::StrokeSample(EditorModel& shown, QWidget* parent)
    : QWidget(parent)
    , model(shown)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(u"Muestra del trazo"_s);
    connect(&model, &EditorModel::shownStyleChanged, this, [this] { update(); });
    connect(&model, &EditorModel::changed, this, [this](EditorModel::Field field) {
        if (field == EditorModel::Field::tool)
            update();
    });
}

Annotation StrokeSample::mark() const
{
    const auto style = model.shownStyle();
    Annotation mark{.id = QUuid(), .color = style.color, .lineWidth = style.strokeWidth};
    if (model.tool() == Tool::arrow) {
        mark.kind = AnnotationKind::arrow;
        mark.arrowStyle = style.arrowStyle;
        mark.start = QPointF(15, 25) / reduction;
        mark.control = QPointF(48, 9) / reduction;
        mark.end = QPointF(85, 15.5) / reduction;
        return mark;
    }
    mark.kind = model.tool() == Tool::highlighter ? AnnotationKind::highlighter : AnnotationKind::pen;
    mark.points = curvePointsOf(pathFromData(u"M16 23C28 6 38 6 47 18S68 32 84 13"));
    return mark;
}

/// On a layer of its own: the highlighter multiplies, which on a dark ground would leave nothing to see.
QImage StrokeSample::renderStroke(double ratio) const
{
    QImage layer((QSizeF(size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    layer.setDevicePixelRatio(ratio);
    layer.fill(Qt::transparent);
    QPainter painter(&layer);
    GraphicsContext context(painter);
    context.translate({(width() - box.width()) / 2, (height() - box.height()) / 2});
    context.scale(reduction);
    const Document paper;
    EffectCache unused;
    Renderer::drawAnnotation(mark(), paper, unused, context, true);
    return layer;
}

void StrokeSample::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto& theme = Theme::of(palette());
    ControlPainting::box(
        rect(), Theme::toolRadius, theme.well, theme.hair, ControlPainting::hairline(painter), painter);
    painter.setClipPath(Draw::roundedRect(rect(), Theme::toolRadius));
    const auto stroke = renderStroke(devicePixelRatioF());
    if (std::abs(luminance(model.shownStyle().color) - luminance(theme.well)) < closeLuminance)
        painter.drawImage(QPointF(), contour(stroke, withAlpha(theme.text2, 0.55)));
    painter.drawImage(QPointF(), stroke);
}

} // namespace pintalux
