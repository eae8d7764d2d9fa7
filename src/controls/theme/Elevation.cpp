// SPDX-License-Identifier: MIT
#include "controls/theme/Elevation.h"

#include "controls/theme/ControlPainting.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/GraphicsContext.h"

#include <QCache>
#include <QPainter>

#include <array>

namespace pintalux::Elevation {

namespace {

constexpr QColor ink{0x18, 0x14, 0x30};

/// One of the layers of a level; points.
struct Layer {
    double drop;
    double blur;
    double lightAlpha;
    double darkAlpha;
    double darkDrop;
    double darkBlur;
};

using Layers = std::array<Layer, 2>;

const Layers& layersOf(Level level)
{
    static constexpr Layers raised{{{1, 2, .16, .40, 1, 2}, {}}};
    static constexpr Layers popover{{{1, 3, .08, .35, 1, 3}, {10, 32, .18, .50, 12, 36}}};
    static constexpr Layers floating{{{1, 3, .10, .40, 1, 3}, {10, 30, .16, .46, 12, 32}}};
    switch (level) {
    case Level::raised:
        return raised;
    case Level::popover:
        return popover;
    case Level::floating:
        break;
    }
    return floating;
}

/// All that the picture of a shadow depends on.
struct Key {
    Level level;
    bool dark;
    double radius;
    double ratio;
    QSizeF sheet; ///< of the sheet in the picture, points

    bool operator==(const Key&) const = default;
};

size_t qHash(const Key& key, size_t seed)
{
    return qHashMulti(
        seed, int(key.level), key.dark, key.radius, key.ratio, key.sheet.width(), key.sheet.height());
}

double marginOf(Level level) { return level == Level::raised ? 4 : Theme::shadowMargin; }

QImage renderShadow(const Key& key)
{
    const double margin = marginOf(key.level);
    const QRectF sheet(QPointF(margin, margin), key.sheet);
    const auto size = expanded(sheet, margin).size() * key.ratio;
    QImage image(
        int(std::ceil(size.width())), int(std::ceil(size.height())), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(key.ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    GraphicsContext context(painter);
    // The sheet itself stands beside the picture; only its shadow falls into it.
    const double away = image.width() / key.ratio;
    const auto caster = Draw::roundedRect(sheet.translated(away, 0), key.radius);
    for (const auto& layer : layersOf(key.level)) {
        const double drop = key.dark ? layer.darkDrop : layer.drop;
        const double blur = key.dark ? layer.darkBlur : layer.blur;
        const GraphicsContext::Saved saved(context);
        context.setShadow(
            {key.dark ? withAlpha(Qt::black, layer.darkAlpha) : withAlpha(ink, layer.lightAlpha),
                QPointF(-away, drop) * key.ratio, blur * key.ratio});
        context.fill(caster, QColor(Qt::black));
    }
    // Sheets let a little shine through. What their smooth edge covers in part stays.
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.fillPath(Draw::roundedRect(expanded(sheet, -1), std::max(0.0, key.radius - 1)), Qt::black);
    return image;
}

const QImage& shadowImage(const Key& key)
{
    constexpr int imagesKept = 24;
    static QCache<Key, QImage> cache(imagesKept);
    if (!cache.contains(key))
        cache.insert(key, new QImage(renderShadow(key)));
    return *cache.object(key);
}

/// How a length is made from the picture's: a start, a stretched middle, an end.
struct Span {
    double from;
    double size;
    double source;
    double sourceSize;
};

std::array<Span, 3> spans(double start, double length, double pictureLength)
{
    if (length <= pictureLength)
        return {Span{start, length, 0, length}, {}, {}};
    const double part = 2 * std::floor(pictureLength / 4); // even: a whole number of pixels at a ratio of 1.5
    return {Span{start, part, 0, part}, Span{start + part, length - 2 * part, part, pictureLength - 2 * part},
        Span{start + length - part, part, pictureLength - part, part}};
}

void strokeOutline(const QRectF& sheet, double radius, double by, const QColor& color, QPainter& painter)
{
    const double pixel = ControlPainting::hairline(painter);
    const double shift = by * pixel / 2;
    painter.setPen(QPen(color, pixel));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(Draw::roundedRect(expanded(sheet, shift), radius + shift));
}

} // namespace

void drawShadow(Level level, const QRectF& sheet, double radius, const Theme& theme, QPainter& painter)
{
    // Beyond a corner's curve and the reach of the blur all of an edge looks alike.
    const auto& layers = layersOf(level);
    const double reach = radius + 1.5 * std::max(layers[0].blur, layers[1].darkBlur);
    const double longest = 2 * std::ceil(reach) + 2;
    const Key key{level, theme.dark, radius, painter.device()->devicePixelRatioF(),
        {std::min(sheet.width(), longest), std::min(sheet.height(), longest)}};
    const auto& image = shadowImage(key);
    const double margin = marginOf(level);
    const auto columns
        = spans(sheet.left() - margin, sheet.width() + 2 * margin, key.sheet.width() + 2 * margin);
    const auto rows
        = spans(sheet.top() - margin, sheet.height() + 2 * margin, key.sheet.height() + 2 * margin);
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    for (const auto& row : rows)
        for (const auto& column : columns)
            if (row.size > 0 && column.size > 0)
                painter.drawImage(QRectF(column.from, row.from, column.size, row.size), image,
                    QRectF(QPointF(column.source, row.source) * key.ratio,
                        QSizeF(column.sourceSize, row.sourceSize) * key.ratio));
    painter.restore();
}

void drawEdge(const QRectF& sheet, double radius, const Theme& theme, QPainter& painter)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (theme.dark) {
        strokeOutline(sheet, radius, 1, withAlpha(Qt::black, 0.45), painter);
        strokeOutline(sheet, radius, -1, withAlpha(Qt::white, 0.09), painter);
    } else {
        strokeOutline(sheet, radius, 1, theme.hair, painter);
    }
    painter.restore();
}

void drawInnerEdge(const QRectF& sheet, double radius, const Theme& theme, QPainter& painter)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    strokeOutline(sheet, radius, -1, theme.dark ? withAlpha(Qt::white, 0.09) : theme.hair, painter);
    painter.restore();
}

} // namespace pintalux::Elevation
