// SPDX-License-Identifier: MIT
#include "platform/graphics/GraphicsContext.h"

#include "platform/graphics/RoundJoins.h"
#include "platform/image/ImageFilter.h"

#include <QPaintDevice>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace pintalux {

namespace {

QPen penFor(const Stroke& stroke)
{
    QPen pen(stroke.color, stroke.width, Qt::SolidLine, stroke.cap, stroke.join);
    if (!stroke.dashes.isEmpty() && stroke.width > 0) {
        QList<qreal> inWidths; // the toolkit counts dashes in pen widths
        for (const double length : stroke.dashes)
            inWidths << length / stroke.width;
        pen.setDashPattern(inWidths);
    }
    return pen;
}

/// A path as the toolkit's stroker draws it best.
class Outline {
public:
    Outline(const QPainterPath& path, const Stroke& stroke)
        : pen(penFor(stroke))
        , turn(stroke.join == Qt::RoundJoin ? turnForRoundJoins(path) : 0)
        , turned(turn == 0 ? path : QTransform().rotate(turn).map(path))
    {
    }

    void draw(QPainter& on) const
    {
        if (turn == 0)
            return on.strokePath(turned, pen);
        const auto world = on.worldTransform();
        on.rotate(-turn);
        on.strokePath(turned, pen);
        on.setWorldTransform(world);
    }

private:
    QPen pen;
    double turn;
    QPainterPath turned;
};

// How far a stroke can reach beyond its path: a mitred right angle reaches √2 of half the width, a square cap
// too.
QRectF strokedBounds(const QPainterPath& path, double width)
{
    const double reach = width * 0.75 + 1;
    return path.controlPointRect().adjusted(-reach, -reach, reach, reach);
}

/// The mask's coverage as pixels of `color`.
QImage tinted(const QImage& mask, const QColor& color)
{
    std::array<QRgb, 256> shades{};
    for (int coverage = 0; coverage < 256; ++coverage) {
        QColor shade = color;
        shade.setAlphaF(float(color.alphaF() * coverage / 255));
        shades[std::size_t(coverage)] = qPremultiply(shade.rgba());
    }
    QImage image(mask.size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < mask.height(); ++y) {
        const auto* from = mask.constScanLine(y);
        auto* to = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < mask.width(); ++x)
            to[x] = shades[from[x]];
    }
    return image;
}

/// Device pixels per mask pixel. A blurred mask has no detail, so it is made smaller by the largest power of
/// two that keeps the error of enlarging it again below one level of a drop shadow.
int maskReduction(double sigma)
{
    int reduction = 1;
    while (sigma / (2 * reduction) >= 1.75 && reduction < 32)
        reduction *= 2;
    return reduction;
}

/// The blur that is left to do on the reduced mask: averaging into its pixels and interpolating between them
/// blur by a box and a triangle already, whose variances (1/12 and 1/6 of a pixel) add up.
double reducedSigma(double sigma, int reduction)
{
    return reduction == 1 ? sigma : std::sqrt(sigma * sigma / (reduction * reduction) - 0.25);
}

bool isWhole(double value) { return std::abs(value - std::round(value)) < 1e-3; }

/// The pixels from `least` to `most` under the middles of `count` device pixels from `first` on, where device
/// pixel x lies at `scale` · x + `offset`.
std::vector<int> pixelsUnder(int first, int count, double scale, double offset, int least, int most)
{
    // A middle that falls between two pixels shall not be tossed about by the arithmetic.
    constexpr double hair = 1e-6;
    std::vector<int> pixels;
    pixels.reserve(std::size_t(count));
    for (int x = first; x < first + count; ++x)
        pixels.push_back(std::clamp(int(std::floor((x + 0.5) * scale + offset + hair)), least, most));
    return pixels;
}

} // namespace

GraphicsContext::GraphicsContext(QPainter& target)
    : painter(target)
{
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
}

GraphicsContext::Saved::Saved(GraphicsContext& saved)
    : context(saved)
    , shadow(saved.shadow)
    , interpolation(saved.interpolation)
{
    context.painter.save();
}

GraphicsContext::Saved::~Saved()
{
    context.painter.restore();
    context.shadow = shadow;
    context.interpolation = interpolation;
}

double GraphicsContext::deviceScale() const
{
    const auto transform = painter.deviceTransform();
    return std::max(0.01, std::hypot(transform.m11(), transform.m12()));
}

void GraphicsContext::fill(const QPainterPath& path, const QBrush& brush)
{
    paint(path.controlPointRect(), [&](QPainter& on) { on.fillPath(path, brush); });
}

void GraphicsContext::fill(const QRectF& rect, const QColor& color)
{
    // The toolkit shares a blend of many rows out to other threads. For a thin strip handing over takes
    // longer than blending, so it is filled in parts, cut between device pixels.
    constexpr double thin = 64;
    constexpr int rowsPerPart = 64;
    const auto toDevice = painter.deviceTransform();
    const auto device = toDevice.mapRect(rect);
    if (device.width() > thin || toDevice.type() > QTransform::TxScale)
        return painter.fillRect(rect, color);
    const auto toUser = toDevice.inverted();
    double top = device.top();
    while (top < device.bottom()) {
        const double bottom = std::min(std::floor(top) + rowsPerPart, device.bottom());
        painter.fillRect(
            toUser.mapRect(QRectF(QPointF(device.left(), top), QPointF(device.right(), bottom))), color);
        top = bottom;
    }
}

bool GraphicsContext::isPixelAligned(const QRectF& rect) const
{
    const auto device = painter.deviceTransform().mapRect(rect);
    return isWhole(device.left()) && isWhole(device.top()) && isWhole(device.right())
        && isWhole(device.bottom());
}

void GraphicsContext::stroke(const QPainterPath& path, const Stroke& stroke)
{
    const Outline outline(path, stroke);
    paint(strokedBounds(path, stroke.width), [&](QPainter& on) { outline.draw(on); });
}

void GraphicsContext::fillAndStroke(const QPainterPath& path, const QBrush& brush, const Stroke& stroke)
{
    const Outline outline(path, stroke);
    paint(strokedBounds(path, stroke.width), [&](QPainter& on) {
        on.fillPath(path, brush);
        outline.draw(on);
    });
}

void GraphicsContext::draw(const TextBlock& text, QPointF topLeft)
{
    // Slanted or swashed glyphs may leave their line boxes by a good part of their size.
    const double reach = text.fontSize();
    const auto bounds = QRectF(topLeft, text.size()).adjusted(-reach, -reach, reach, reach);
    paint(bounds, [&](QPainter& on) { text.draw(on, topLeft); });
}

void GraphicsContext::paint(const QRectF& userBounds, const Painting& painting)
{
    if (shadow && shadow->color.alpha() > 0)
        castShadow(userBounds, painting);
    painting(painter);
}

void GraphicsContext::castShadow(const QRectF& userBounds, const Painting& painting)
{
    const double sigma = shadow->blur / 2;
    const int reach = int(std::ceil(3.5 * sigma)) + 1;
    const auto grown = [](const QRect& rect, int by) { return rect.adjusted(-by, -by, by, by); };

    const auto toDevice = painter.deviceTransform();
    const auto caster = toDevice.mapRect(userBounds).translated(shadow->offset).toAlignedRect();
    const auto visible = grown(caster, reach) & visibleDevicePixels();
    if (visible.isEmpty())
        return;

    // Only what can reach a visible pixel is rasterised and blurred. The mask's pixels stand on a grid that
    // belongs to the caster, so that a partial repaint gives the same shadow.
    const int reduction = maskReduction(sigma);
    const auto whole = grown(caster, reach);
    auto area = whole & grown(visible, reach);
    area.setLeft(area.left() - (area.left() - whole.left()) % reduction);
    area.setTop(area.top() - (area.top() - whole.top()) % reduction);
    const QSize size((area.width() + reduction - 1) / reduction, (area.height() + reduction - 1) / reduction);

    QImage mask(size, QImage::Format_Alpha8);
    mask.fill(0);
    {
        QPainter on(&mask);
        on.setRenderHints(painter.renderHints());
        on.setOpacity(painter.opacity());
        const auto origin = shadow->offset - QPointF(area.topLeft());
        on.setTransform(toDevice * QTransform::fromTranslate(origin.x(), origin.y())
            * QTransform::fromScale(1.0 / reduction, 1.0 / reduction));
        painting(on);
    }
    if (sigma > 0)
        mask = ImageFilter::blurMask(mask, reducedSigma(sigma, reduction));
    drawInDevicePixels(tinted(mask, shadow->color), QRect(area.topLeft(), size * reduction));
}

void GraphicsContext::drawInDevicePixels(const QImage& image, const QRect& devicePixels)
{
    // The painter may carry a device pixel ratio or a redirection that its world transform does not show.
    const auto world = painter.worldTransform();
    const auto hidden = world.inverted() * painter.deviceTransform();
    const double opacity = painter.opacity();
    painter.setWorldTransform(hidden.inverted());
    painter.setOpacity(1); // the mask has it already
    painter.setRenderHint(QPainter::SmoothPixmapTransform, image.size() != devicePixels.size());
    painter.drawImage(devicePixels, image);
    painter.setOpacity(opacity);
    painter.setWorldTransform(world);
}

QRect GraphicsContext::visibleDevicePixels() const
{
    const auto* device = painter.device();
    QRectF visible(0, 0, device->width(), device->height());
    // A widget paints into the pixels of its window, at its place there.
    if (device->devType() == QInternal::Widget)
        visible = (painter.worldTransform().inverted() * painter.deviceTransform()).mapRect(visible);
    if (painter.hasClipping())
        visible &= painter.deviceTransform().mapRect(painter.clipBoundingRect());
    return visible.toAlignedRect();
}

void GraphicsContext::drawImage(const QImage& image, const QRectF& rect, const QRectF& source)
{
    if (image.isNull() || rect.isEmpty() || source.isEmpty())
        return;
    const auto toDevice = painter.deviceTransform();
    const auto device = toDevice.mapRect(rect);
    const bool upright = toDevice.type() <= QTransform::TxScale;
    const bool unscaled = std::abs(device.width() - source.width()) < 1e-3
        && std::abs(device.height() - source.height()) < 1e-3;
    if (upright && unscaled && isWhole(device.x()) && isWhole(device.y())) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
        painter.drawImage(rect, image, source);
        return;
    }

    const bool smooth = interpolation == Interpolation::high;
    const bool reduced = device.width() < source.width() || device.height() < source.height();
    painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
    if (!smooth || !reduced || !upright) {
        painter.drawImage(rect, image, source);
        return;
    }
    // Outward to whole device pixels: an area mean put between two of them would be blurred once more.
    constexpr double hair = 1e-3;
    const auto whole = device.adjusted(hair, hair, -hair, -hair).toAlignedRect();
    const auto part = source == QRectF(image.rect()) ? image : image.copy(source.toAlignedRect());
    painter.drawImage(toDevice.inverted().mapRect(QRectF(whole)),
        part.scaled(whole.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

void GraphicsContext::drawPixels(const QRect& rect, const PixelSource& source)
{
    constexpr int pixelsPerBand = 1 << 20; // small enough to be painted before it leaves the caches
    const auto toDevice = painter.deviceTransform();
    const auto device = toDevice.mapRect(QRectF(rect)).toAlignedRect() & visibleDevicePixels();
    if (device.isEmpty())
        return;
    const auto toUser = toDevice.inverted();
    const auto columns
        = pixelsUnder(device.left(), device.width(), toUser.m11(), toUser.dx(), rect.left(), rect.right());
    const auto rows
        = pixelsUnder(device.top(), device.height(), toUser.m22(), toUser.dy(), rect.top(), rect.bottom());
    const int rowsPerBand = std::max(1, pixelsPerBand / device.width());
    for (int first = 0; first < device.height(); first += rowsPerBand) {
        const int count = std::min(rowsPerBand, device.height() - first);
        const auto band = source(columns, std::span(rows).subspan(std::size_t(first), std::size_t(count)));
        if (!band.isNull())
            drawInDevicePixels(band, QRect(device.left(), device.top() + first, device.width(), count));
    }
}

} // namespace pintalux
