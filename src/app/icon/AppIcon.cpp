// SPDX-License-Identifier: MIT
#include "app/icon/AppIcon.h"

#include "model/Palette.h"
#include "platform/base/Error.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/PathData.h"
#include "platform/graphics/VectorIcon.h"
#include "render/Renderer.h"
#include "render/export/Exporter.h"

#include <QColorSpace>
#include <QDir>
#include <QIconEngine>
#include <QLinearGradient>
#include <QPainter>

#include <array>

using namespace Qt::StringLiterals;

namespace pintalux::AppIcon {

namespace {

struct IconsetRow {
    QStringView fileName;
    int pixels;
};

constexpr std::array<IconsetRow, 10> iconset{{
    {u"icon_16x16", 16},
    {u"icon_16x16@2x", 32},
    {u"icon_32x32", 32},
    {u"icon_32x32@2x", 64},
    {u"icon_128x128", 128},
    {u"icon_128x128@2x", 256},
    {u"icon_256x256", 256},
    {u"icon_256x256@2x", 512},
    {u"icon_512x512", 512},
    {u"icon_512x512@2x", 1024},
}};

/// The board: shadow, gradient, gloss and wooden frame.
void drawTile(const QRectF& tile, double size, GraphicsContext& graphics)
{
    const auto shape = Draw::roundedRect(tile, 0.225 * tile.width());
    {
        const GraphicsContext::Saved saved(graphics);
        graphics.setShadow({withAlpha(Qt::black, 0.35), {0, 0.012 * size}, 0.03 * size});
        graphics.fill(shape, QColor(Qt::black));
    }
    {
        const GraphicsContext::Saved saved(graphics);
        graphics.clip(shape);
        Renderer::drawGradient(Palette::gradients().constFirst(), tile, graphics);
        QLinearGradient gloss(QPointF(tile.center().x(), tile.top()), tile.center());
        gloss.setColorAt(0, withAlpha(Qt::white, 0.28));
        gloss.setColorAt(1, withAlpha(Qt::white, 0));
        graphics.fill(Draw::roundedRect(tile, 0), gloss);
    }
    const auto edge = expanded(tile, -0.5);
    graphics.stroke(Draw::roundedRect(edge, 0.225 * tile.width() - 0.5),
        {Palette::boardWood, std::max(1.0, 0.006 * size)});
}

/// Four corner brackets around a chalk curve that ends in a dot. `mark` is the square the brackets stand on.
void drawMark(const QRectF& mark, double lineWidth, GraphicsContext& graphics)
{
    const auto at = [&mark](double x, double y) { return mark.topLeft() + QPointF(x, y) * mark.width(); };
    constexpr double arm = 0.24;
    const Stroke chalk{withAlpha(Palette::chalkWhite, 0.92), lineWidth};
    for (const double x : {0.0, 1.0}) {
        for (const double y : {0.0, 1.0}) {
            const double armX = x > 0 ? x - arm : arm;
            const double armY = y > 0 ? y - arm : arm;
            graphics.stroke(Draw::polyline({at(x, armY), at(x, y), at(armX, y)}), chalk);
        }
    }
    QPainterPath curve(at(0.20, 0.72));
    curve.cubicTo(at(0.40, 0.02), at(0.60, 0.98), at(0.80, 0.28));
    graphics.stroke(curve, chalk);
    const QRectF center(at(0.80, 0.28), QSizeF(0, 0));
    graphics.fill(Draw::ellipse(expanded(center, 0.07 * mark.width())), Palette::chalkYellow);
}

// Points of a square of 18.
constexpr double statusSide = 18;
constexpr QStringView statusBrackets = u"M2 6V2H6M12 2H16V6M16 12V16H12M6 16H2V12";
constexpr QStringView statusCurve = u"M5.5 12C8 4.5 9.5 14 12.5 6";

class StatusImage : public VectorIcon {
public:
    explicit StatusImage(const QColor& ink)
        : color(ink)
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override
    {
        const double scale = std::min(rect.width(), rect.height()) / statusSide;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(QRectF(rect).center() - QPointF(statusSide, statusSide) * scale / 2);
        painter->scale(scale, scale);
        painter->setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->drawPath(pathFromData(statusBrackets));
        painter->setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->drawPath(pathFromData(statusCurve));
        painter->restore();
    }

    // Those that are handed to the host of a StatusNotifier item.
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        QList<QSize> sizes;
        for (const int side : {16, 18, 22, 24, 32, 36, 44, 48, 64})
            sizes.append({side, side});
        return sizes;
    }

    QIconEngine* clone() const override { return new StatusImage(*this); }

private:
    QColor color;
};

} // namespace

QIcon statusBarImage(const QColor& color) { return QIcon(new StatusImage(color)); }

QImage render(int size)
{
    if (size < 1)
        return {};
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setColorSpace(QColorSpace::SRgb);
    QPainter painter(&image);
    GraphicsContext graphics(painter);
    const auto tile = expanded(QRectF(0, 0, size, size), -0.098 * size);
    drawTile(tile, size, graphics);
    drawMark(expanded(tile, -0.17 * tile.width()), 0.038 * size, graphics);
    return image;
}

const QIcon& windowIcon()
{
    static const QIcon icon = [] {
        QIcon made;
        for (const int size : {16, 32, 48, 128})
            made.addPixmap(QPixmap::fromImage(render(size)));
        return made;
    }();
    return icon;
}

void writeIconset(const QString& directory)
{
    QDir().mkpath(directory);
    for (const auto& row : iconset) {
        try {
            Exporter::write(
                render(row.pixels), 1, QDir(directory).filePath(row.fileName.toString() + u".png"_s));
        } catch (const Error&) {
            continue; // a set with a gap is still of use
        }
    }
}

} // namespace pintalux::AppIcon
