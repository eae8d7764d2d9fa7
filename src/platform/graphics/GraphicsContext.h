// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Outline.h"
#include "platform/graphics/TextBlock.h"

#include <QBrush>
#include <QImage>
#include <QList>
#include <QPainter>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>

#include <functional>
#include <optional>
#include <span>

namespace pintalux {

/// A drop shadow. Offset and blur are device pixels, whatever the transform: multiply by the device scale
/// what is meant in user units.
struct Shadow {
    QColor color;
    QPointF offset;  ///< y grows downward: (0, 2) falls two pixels down
    double blur = 0; ///< the shadow is a Gaussian of sigma blur / 2 over the coverage of what is painted

    bool operator==(const Shadow&) const = default;
};

/// The drawing context of the renderer: a painter with drop shadows, one-pass fill-and-stroke and image
/// interpolation as part of its state.
///
/// User space is y-down. The painter must stand on a raster device (an image or a widget) and outlive the
/// context.
class GraphicsContext {
public:
    enum class Interpolation {
        none, ///< each device pixel takes the nearest image pixel: cells stay crisp
        high, ///< enlarging interpolates smoothly, reducing averages areas
    };

    explicit GraphicsContext(QPainter& painter);

    /// Puts back, at the end of its block, everything that was set meanwhile.
    class Saved {
    public:
        explicit Saved(GraphicsContext& context);
        ~Saved();
        Saved(const Saved&) = delete;
        Saved& operator=(const Saved&) = delete;

    private:
        GraphicsContext& context;
        std::optional<Shadow> shadow;
        Interpolation interpolation;
    };

    /// Device pixels per user unit along x, never below 0.01. Turns user lengths into the device lengths of
    /// shadows; its inverse is one device pixel in user units.
    double deviceScale() const;

    void translate(QPointF offset) { painter.translate(offset); }
    void scale(double factor) { painter.scale(factor, factor); }
    void setShadow(const Shadow& value) { shadow = value; }
    void clearShadow() { shadow.reset(); }
    void setBlendMode(QPainter::CompositionMode mode) { painter.setCompositionMode(mode); }
    void setAlpha(double alpha) { painter.setOpacity(alpha); }
    void setInterpolation(Interpolation value) { interpolation = value; }

    /// Narrows the clip to the inside of `path` (anti-aliased), or to `rect`, snapped to device pixels.
    void clip(const QPainterPath& path);
    void clip(const QRectF& rect) { painter.setClipRect(rect, Qt::IntersectClip); }
    /// Replaces the clip by `rect`, as far as the rectangle around what it left visible.
    void clipToBounds(const QRectF& rect)
    {
        painter.setClipRect(painter.hasClipping() ? rect & painter.clipBoundingRect() : rect);
    }

    /// Paints the inside of `path` by its fill rule.
    void fill(const QPainterPath& path, const QBrush& brush);
    /// Fills the part of `path` that lies in `rect`; never casts a shadow.
    void fillWithin(const QRectF& rect, const QPainterPath& path, const QBrush& brush);
    /// Much cheaper than a path; never casts a shadow.
    void fill(const QRectF& rect, const QColor& color);
    /// Whether all edges of `rect` fall between device pixels, so that filling it covers none in part.
    bool isPixelAligned(const QRectF& rect) const;
    void stroke(const QPainterPath& path, const Stroke& stroke);
    /// Fills, then strokes over it; both together cast one shadow.
    void fillAndStroke(const QPainterPath& path, const QBrush& brush, const Stroke& stroke);
    void draw(const TextBlock& text, QPointF topLeft);
    /// Fills `rect` with one brush over the other, the same pixels whatever is clipped: the toolkit's
    /// gradients run along rows from where they are visible, and by rounding differ with it. Never casts a
    /// shadow.
    void fillRows(const QRectF& rect, std::span<const QBrush> brushes);
    /// Draws `source` (pixels of the image) upright into `rect`; never casts a shadow. A picture that is
    /// stretched smoothly covers all device pixels that `rect` touches, by less than one on each side.
    void drawImage(const QImage& image, const QRectF& rect, const QRectF& source);
    void drawImage(const QImage& image, const QRectF& rect) { drawImage(image, rect, QRectF(image.rect())); }
    /// Draws an image into `rect`, of which only what lies in `shape` shows. The toolkit's clip would do
    /// nearly the same: where each row of it is as long as the others, it forgets which of them are half
    /// covered.
    void drawImage(const QImage& image, const QRectF& rect, const QPainterPath& shape);
    /// The picture of some columns and rows of user space, one pixel where two of them cross; null when it
    /// cannot be made.
    using PixelSource = std::function<QImage(std::span<const int> columns, std::span<const int> rows)>;
    /// Fills what lies in `shape` of `rect`, whole pixels of user space, with what is made for it: each
    /// device pixel shows the user pixel under its middle. Only what is visible is made, in bands. Without
    /// turning; never casts a shadow.
    void drawPixels(const QRect& rect, const QPainterPath& shape, const PixelSource& source);
    /// The nearest rectangle whose edges fall between device pixels.
    QRectF pixelAligned(const QRectF& rect) const;

private:
    /// Paints with curves that may depart so far from the true ones, in user units.
    using Painting = std::function<void(QPainter&, double tolerance)>;
    /// A picture in device pixels.
    struct Placed {
        QImage image;
        QRect place;
    };

    double tolerance() const;
    std::optional<Placed> stretched(const QImage& image, const QRectF& rect, const QRectF& source) const;
    QRectF reachableUserSpace() const;
    void paint(const QRectF& userBounds, const Painting& painting);
    void castShadow(const QRectF& userBounds, const Painting& painting);
    void drawInDevicePixels(const QImage& image, const QRect& devicePixels, double opacity);
    QRect visibleDevicePixels() const;

    QPainter& painter;
    std::optional<Shadow> shadow;
    Interpolation interpolation = Interpolation::high;
};

} // namespace pintalux
