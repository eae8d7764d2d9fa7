// SPDX-License-Identifier: MIT
#include "platform/graphics/GraphicsContext.h"

#include "platform/graphics/Geometry.h"
#include "platform/image/ImageFilter.h"

#include <QPaintDevice>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace pintalux {

namespace {

/// While it lives, the painter's user space is the pixels of its device. The painter may carry a device pixel
/// ratio or a redirection that its world transform does not show.
class InDevicePixels {
public:
    explicit InDevicePixels(QPainter& painter)
        : painter(painter)
        , world(painter.worldTransform())
    {
        const auto hidden = world.inverted() * painter.deviceTransform();
        const bool isIdentity = hidden.type() == QTransform::TxNone; // but for the rounding
        painter.setWorldTransform(isIdentity ? QTransform() : hidden.inverted());
    }
    ~InDevicePixels() { painter.setWorldTransform(world); }
    InDevicePixels(const InDevicePixels&) = delete;
    InDevicePixels& operator=(const InDevicePixels&) = delete;

private:
    QPainter& painter;
    QTransform world;
};

void fillOutline(QPainter& on, const Outline& outline, QBrush brush)
{
    const auto toDevice = on.deviceTransform();
    if (brush.style() != Qt::SolidPattern)
        brush.setTransform(brush.transform() * toDevice);
    const InDevicePixels space(on);
    on.fillPath(outline.onDevice(toDevice), brush);
}

// How far a stroke can reach beyond its path: a mitred join by its width, a square cap by √2 of half of it.
QRectF strokedBounds(const QPainterPath& path, double width)
{
    const double reach = width + 1;
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

constexpr int mostReduced = 32;

/// Device pixels per mask pixel. A blurred mask has no detail, so it is made smaller by the largest power of
/// two that keeps the error of enlarging it again below one level of a drop shadow.
int maskReduction(double sigma)
{
    int reduction = 1;
    while (sigma / (2 * reduction) >= 1.75 && reduction < mostReduced)
        reduction *= 2;
    return reduction;
}

/// The blur that is left to do on the reduced mask: averaging into its pixels and interpolating between them
/// blur by a box and a triangle already, whose variances (1/12 and 1/6 of a pixel) add up.
double reducedSigma(double sigma, int reduction)
{
    return reduction == 1 ? sigma : std::sqrt(sigma * sigma / (reduction * reduction) - 0.25);
}

/// How far a shadow leaves its caster's place, in device pixels.
int shadowReach(const Shadow& shadow) { return int(std::ceil(3.5 * shadow.blur / 2)) + 1; }

/// All whole pixels that `rect` touches by more than a hair.
QRect aligned(const QRectF& rect)
{
    constexpr double hair = 1e-3;
    return rect.adjusted(hair, hair, -hair, -hair).toAlignedRect();
}

/// `value` or the next lower number that is a multiple of `step` away from `anchor`.
int onGrid(int value, int anchor, int step)
{
    const int beyond = (value - anchor) % step;
    return value - (beyond < 0 ? beyond + step : beyond);
}

/// The rows from `first` on, `count` of them, of `source` enlarged to `size`: always whole ones, as the
/// toolkit rounds its way along each.
QImage enlargedRows(const QImage& image, const QRectF& source, QSize size, int first, int count)
{
    QImage rows(size.width(), count, QImage::Format_ARGB32_Premultiplied);
    rows.fill(Qt::transparent);
    QPainter on(&rows);
    on.setRenderHint(QPainter::SmoothPixmapTransform);
    on.drawImage(QRectF(QPointF(0, -first), QSizeF(size)), image, source);
    return rows;
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

void GraphicsContext::clip(const QPainterPath& path)
{
    const auto outline = Outline::ofFill(path, tolerance()).onDevice(painter.deviceTransform());
    const InDevicePixels space(painter);
    painter.setClipPath(outline, Qt::IntersectClip);
}

double GraphicsContext::tolerance() const
{
    constexpr double devicePixels = 0.005; // with what the rasteriser's grid adds, a hundredth
    return devicePixels / deviceScale();
}

void GraphicsContext::fill(const QPainterPath& path, const QBrush& brush)
{
    paint(path.controlPointRect(),
        [&](QPainter& on, double within) { fillOutline(on, Outline::ofFill(path, within), brush); });
}

void GraphicsContext::fillWithin(const QRectF& rect, const QPainterPath& path, const QBrush& brush)
{
    fillOutline(painter, Outline::ofFill(path, tolerance()).within(rect), brush);
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

void GraphicsContext::fillRows(const QRectF& rect, std::span<const QBrush> brushes)
{
    QPainterPath path;
    path.addRect(rect);
    const auto paintAll = [&](GraphicsContext& on) {
        const Saved saved(on);
        on.clearShadow();
        for (const auto& brush : brushes)
            on.fill(path, brush);
    };
    const auto toDevice = painter.deviceTransform();
    const auto whole = aligned(toDevice.mapRect(rect));
    const auto visible = whole & visibleDevicePixels();
    if (visible.left() == whole.left() || visible.isEmpty())
        return paintAll(*this);
    QImage rows(whole.width(), visible.height(), QImage::Format_ARGB32_Premultiplied);
    rows.fill(Qt::transparent);
    QPainter on(&rows);
    on.setTransform(toDevice * QTransform::fromTranslate(-whole.left(), -visible.top()));
    GraphicsContext context(on);
    paintAll(context);
    on.end();
    drawInDevicePixels(
        rows, {whole.left(), visible.top(), whole.width(), visible.height()}, painter.opacity());
}

QRectF GraphicsContext::pixelAligned(const QRectF& rect) const
{
    const auto toDevice = painter.deviceTransform();
    return toDevice.inverted().mapRect(QRectF(toDevice.mapRect(rect).toRect()));
}

bool GraphicsContext::isPixelAligned(const QRectF& rect) const
{
    const auto device = painter.deviceTransform().mapRect(rect);
    return isWhole(device.left()) && isWhole(device.top()) && isWhole(device.right())
        && isWhole(device.bottom());
}

void GraphicsContext::stroke(const QPainterPath& path, const Stroke& stroke)
{
    const auto reachable = reachableUserSpace();
    paint(strokedBounds(path, stroke.width), [&](QPainter& on, double within) {
        fillOutline(on, Outline::ofStroke(path, stroke, within, reachable), stroke.color);
    });
}

void GraphicsContext::fillAndStroke(const QPainterPath& path, const QBrush& brush, const Stroke& stroke)
{
    const auto reachable = reachableUserSpace();
    paint(strokedBounds(path, stroke.width), [&](QPainter& on, double within) {
        fillOutline(on, Outline::ofFill(path, within), brush);
        fillOutline(on, Outline::ofStroke(path, stroke, within, reachable), stroke.color);
    });
}

void GraphicsContext::draw(const TextBlock& text, QPointF topLeft)
{
    // Slanted or swashed glyphs may leave their line boxes by a good part of their size.
    const double reach = text.fontSize();
    const auto bounds = QRectF(topLeft, text.size()).adjusted(-reach, -reach, reach, reach);
    paint(bounds, [&](QPainter& on, double) { text.draw(on, topLeft); });
}

void GraphicsContext::paint(const QRectF& userBounds, const Painting& painting)
{
    if (shadow && shadow->color.alpha() > 0)
        castShadow(userBounds, painting);
    painting(painter, tolerance());
}

void GraphicsContext::castShadow(const QRectF& userBounds, const Painting& painting)
{
    const double sigma = shadow->blur / 2;
    const int reach = shadowReach(*shadow);
    const auto grown = [](const QRect& rect, int by) { return rect.adjusted(-by, -by, by, by); };

    const auto toDevice = painter.deviceTransform();
    const auto caster = aligned(toDevice.mapRect(userBounds).translated(shadow->offset));
    const auto whole = grown(caster, reach);
    const auto visible = whole & visibleDevicePixels();
    if (visible.isEmpty())
        return;

    // Only what can reach a visible pixel is rasterised and blurred. The mask's pixels stand on a grid that
    // belongs to user space, so that a partial repaint gives the same shadow, and a stroke that grows too.
    const int reduction = maskReduction(sigma);
    const QPointF origin = toDevice.map(QPointF());
    auto area = whole & grown(visible, reach + 2 * reduction);
    area.setLeft(onGrid(area.left(), int(std::lround(origin.x())), reduction));
    area.setTop(onGrid(area.top(), int(std::lround(origin.y())), reduction));
    const QSize size((area.width() + reduction - 1) / reduction, (area.height() + reduction - 1) / reduction);

    QImage mask(size, QImage::Format_Alpha8);
    mask.fill(0);
    {
        QPainter on(&mask);
        on.setRenderHints(painter.renderHints());
        on.setOpacity(painter.opacity());
        const auto moved = shadow->offset - QPointF(area.topLeft());
        on.setTransform(toDevice * QTransform::fromTranslate(moved.x(), moved.y())
            * QTransform::fromScale(1.0 / reduction, 1.0 / reduction));
        constexpr double blurred = 4; // no eye finds the difference under a blur
        painting(on, (sigma > 1 ? blurred : 1) * tolerance());
    }
    if (sigma > 0)
        mask = ImageFilter::blurMask(mask, reducedSigma(sigma, reduction));
    // The mask has the opacity already.
    drawInDevicePixels(tinted(mask, shadow->color), QRect(area.topLeft(), size * reduction), 1);
}

void GraphicsContext::drawInDevicePixels(const QImage& image, const QRect& devicePixels, double opacity)
{
    const InDevicePixels space(painter);
    const double former = painter.opacity();
    painter.setOpacity(opacity);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, image.size() != devicePixels.size());
    painter.drawImage(devicePixels, image);
    painter.setOpacity(former);
}

/// Where what is painted can show, by its shadow at least, in user space.
QRectF GraphicsContext::reachableUserSpace() const
{
    QRectF pixels(visibleDevicePixels());
    if (shadow) {
        const double reach = shadowReach(*shadow) + 3 * mostReduced;
        pixels
            = expanded(pixels, reach + std::max(std::abs(shadow->offset.x()), std::abs(shadow->offset.y())));
    }
    return painter.deviceTransform().inverted().mapRect(pixels);
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
    if (!smooth || !upright) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
        painter.drawImage(rect, image, source);
        return;
    }
    if (const auto made = stretched(image, rect, source))
        drawInDevicePixels(made->image, made->place, painter.opacity());
}

void GraphicsContext::drawImage(const QImage& image, const QRectF& rect, const QPainterPath& shape)
{
    const auto made = stretched(image, rect, QRectF(image.rect()));
    if (!made)
        return;
    QBrush brush(made->image);
    brush.setTransform(QTransform::fromTranslate(made->place.x(), made->place.y()));
    const auto outline = Outline::ofFill(shape, tolerance()).onDevice(painter.deviceTransform());
    const InDevicePixels space(painter);
    painter.fillPath(outline, brush);
}

/// What shows of an image stretched into `rect`, by full device pixels; none when nothing does.
auto GraphicsContext::stretched(const QImage& image, const QRectF& rect, const QRectF& source) const
    -> std::optional<Placed>
{
    // Outward to whole device pixels: a mean put between two of them would be blurred once more.
    const auto whole = aligned(painter.deviceTransform().mapRect(rect));
    const auto visible = whole & visibleDevicePixels();
    if (visible.isEmpty())
        return std::nullopt;
    if (whole.width() < source.width() || whole.height() < source.height()) {
        const auto part = source == QRectF(image.rect()) ? image : image.copy(source.toAlignedRect());
        return Placed{part.scaled(whole.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation), whole};
    }
    return Placed{enlargedRows(image, source, whole.size(), visible.top() - whole.top(), visible.height()),
        {whole.left(), visible.top(), whole.width(), visible.height()}};
}

void GraphicsContext::drawPixels(const QRect& rect, const QPainterPath& shape, const PixelSource& source)
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
    const auto outline = Outline::ofFill(shape, tolerance()).onDevice(toDevice);
    const int rowsPerBand = std::max(1, pixelsPerBand / device.width());
    for (int first = 0; first < device.height(); first += rowsPerBand) {
        const int count = std::min(rowsPerBand, device.height() - first);
        const auto band = source(columns, std::span(rows).subspan(std::size_t(first), std::size_t(count)));
        if (band.isNull())
            continue;
        const Saved saved(*this);
        const QRect place(device.left(), device.top() + first, device.width(), count);
        QBrush brush(band);
        brush.setTransform(QTransform::fromTranslate(place.x(), place.y()));
        const InDevicePixels space(painter);
        painter.setClipRect(place, Qt::IntersectClip);
        painter.fillPath(outline, brush);
    }
}

} // namespace pintalux
