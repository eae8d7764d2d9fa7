// SPDX-License-Identifier: MIT
#pragma once

#include "model/BeautifySettings.h"
#include "model/Document.h"
#include "model/Palette.h"
#include "platform/graphics/GraphicsContext.h"
#include "render/EffectCache.h"

#include <QRegion>
#include <QUuid>

#include <functional>
#include <optional>
#include <span>

namespace pintalux {

/// Draws documents. Stateless: the same function serves the screen, the preview and the file.
namespace Renderer {

/// What the editor shows over a document. Exports use the default: nothing.
struct Overlay {
    std::optional<Annotation> draft{};  ///< a mark that is being drawn, painted above all others
    std::optional<QUuid> hiddenID{};    ///< this mark is not painted: it is shown another way
    std::optional<QUuid> selectedID{};  ///< this mark gets the dashed selection frame
    std::optional<QRectF> crop{};       ///< crop rectangle in document pixels: mask, guides and frame
    std::optional<QUuid> glyphlessID{}; ///< a draft with this identity is painted without its letters
    std::optional<QUuid> nodesFor{};    ///< this mark gets its drag handles
    double pointScale = 1; ///< document pixels per point on screen: keeps handles the same size at any zoom
};

/// Paints the whole composition: frame, image, marks and overlay.
/// User space: origin at the composition's top-left corner, y down, one unit per output pixel.
void draw(const Document& document, const BeautifySettings& beautify, EffectCache& cache,
    const Overlay& overlay, GraphicsContext& context);

/// The parts of `draw`, for a view that keeps what does not change; all in the user space of `draw`. First
/// the frame's background and the picture, then the marks (`drawAnnotation` after `enterPicture`), then what
/// `overlay` shows over them and the frame's border.
void drawPicture(const Document& document, const BeautifySettings& beautify, GraphicsContext& context);
/// Turns user space into document pixels, clipped to the picture's outline; who saved the context undoes it.
void enterPicture(const Document& document, const BeautifySettings& beautify, GraphicsContext& context);
void drawOverlay(const Document& document, const BeautifySettings& beautify, const Overlay& overlay,
    GraphicsContext& context);

/// What painting a mark can touch, in document pixels: its shape with head, halo and shadow. `devicePixel` is
/// one pixel of the target in document pixels.
QRectF paintedBounds(const Annotation& annotation, double pixelScale, double devicePixel);
/// The same for the selection frame, or for the handles at `pointScale`.
QRectF selectionBounds(const Annotation& annotation, double devicePixel);
QRectF nodeBounds(const Annotation& annotation, double pointScale);
/// What a redaction covers, in whole document pixels: more than its rectangle, of which no pixel shall be
/// seen, not even at a rounded corner.
QRect redactedRegion(const Annotation& mark, double pixelScale);

/// What lies behind the picture where that lets something through: where it is transparent, and at the soft
/// edge of rounded corners. There a redaction is painted on it instead of the original.
struct Backdrop {
    QRegion where{};                               ///< document pixels
    std::function<void(GraphicsContext&)> paint{}; ///< user space: document pixels
};
/// `behind` paints what lies behind the composition, in the user space of `draw`.
Backdrop backdrop(const Document& document, const BeautifySettings& beautify,
    const std::function<void(GraphicsContext&)>& behind);

/// Paints one mark; user space is document pixels. `drawText` false leaves out the letters of text marks, not
/// their bubbles and shadows.
void drawAnnotation(const Annotation& annotation, const Document& document, EffectCache& cache,
    GraphicsContext& context, bool drawText, const Backdrop& backdrop = {});

/// The picture's colour at a document pixel, of its redaction where there is one; none outside of it. Other
/// marks do not count.
std::optional<QColor> pictureColor(const Document& document, QPoint pixel, EffectCache& cache);

/// The margin around the image in output pixels: whole, 0 without a frame.
double padding(const BeautifySettings& beautify, double scale);
/// Size of image and margin, in output pixels.
QSizeF compositionSize(const QImage& image, const BeautifySettings& beautify, double scale);
/// Where the image lies in the composition, always at its own pixel size.
QRectF imageRect(const QImage& image, const BeautifySettings& beautify, double scale);
/// Background of the frame: the gradient along the diagonal of `rect` with a soft highlight near its top
/// left.
void drawGradient(const Palette::Gradient& gradient, const QRectF& rect, GraphicsContext& context);

/// A line through `points`, each corner rounded off by a quadratic curve. Points that are all the same give a
/// dot.
QPainterPath smoothPath(std::span<const QPointF> points);
/// Closed outline of a tapered arrow along `points` with a swept-back head. None up to a length of 2.
std::optional<QPainterPath> arrowPath(std::span<const QPointF> points, double width);
/// A polyline with an open head at its end, or at both. None for a length of 2 or less.
std::optional<QPainterPath> lineArrowPath(std::span<const QPointF> points, double width, bool doubleHead);
/// Two overlapping strokes that look drawn by hand, always the same ones for the same `seed`.
QList<QPainterPath> sketchArrowPaths(
    std::span<const QPointF> points, double width, double scale, const QUuid& seed);

/// A disc with a tail that points at `tip`; the disc alone when the tip is too near.
QPainterPath calloutPath(QPointF center, double radius, QPointF tip);
/// The tail of a callout bubble, sunk a little into it.
QPainterPath bubbleTail(const QRectF& bubble, QPointF tip, double fontSize);
/// A callout bubble, united with its tail when it has a tip.
QPainterPath calloutShape(const QRectF& bubble, std::optional<QPointF> tip, double fontSize);

} // namespace Renderer

} // namespace pintalux
