// SPDX-License-Identifier: MIT
#include "editor/canvas/CanvasPicture.h"

#include "controls/theme/Theme.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "platform/image/LargeImage.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace pintalux {

namespace {

/// Behind what is transparent in a picture, when no frame is.
QBrush checkerboard()
{
    static const QImage tile = [] {
        QImage image(16, 16, QImage::Format_RGB32);
        image.fill(QColor::fromRgbF(0.82F, 0.82F, 0.82F));
        QPainter painter(&image);
        const auto light = QColor::fromRgbF(0.94F, 0.94F, 0.94F);
        painter.fillRect(0, 0, 8, 8, light);
        painter.fillRect(8, 8, 8, 8, light);
        return image;
    }();
    return tile;
}

QRect aligned(const QRectF& rect)
{
    // A hair inside: a border that arithmetic has moved by nothing does not cost a row of pixels.
    constexpr double hair = 1e-6;
    return rect.adjusted(hair, hair, -hair, -hair).toAlignedRect();
}

QList<Annotation> without(QList<Annotation> marks, const std::optional<QUuid>& id)
{
    if (id)
        marks.removeIf([&](const auto& mark) { return mark.id == *id; });
    return marks;
}

/// Where two lists of marks differ: what is left after their common beginning and end.
struct Difference {
    std::span<const Annotation> former;
    std::span<const Annotation> next;
    bool atEnd; ///< nothing common follows

    bool isEmpty() const { return former.empty() && next.empty(); }
};

Difference difference(const QList<Annotation>& former, const QList<Annotation>& next)
{
    if (former.isSharedWith(next))
        return {{}, {}, true};
    const auto shorter = std::min(former.size(), next.size());
    qsizetype head = 0;
    while (head < shorter && former[head] == next[head])
        ++head;
    qsizetype tail = 0;
    while (tail < shorter - head && former[former.size() - 1 - tail] == next[next.size() - 1 - tail])
        ++tail;
    const auto middle = [&](const QList<Annotation>& list) {
        return std::span(list).subspan(std::size_t(head), std::size_t(list.size() - head - tail));
    };
    return {middle(former), middle(next), tail == 0};
}

/// What changed of a stroke that was only continued, and the part of the curve that follows it; else all.
QList<QPointF> changedPoints(const Annotation& former, const Annotation& next)
{
    constexpr qsizetype smoothed = 3;
    const auto kept = former.points.size();
    const bool continued = former.id == next.id && kept > smoothed && next.points.size() >= kept
        && std::equal(former.points.begin(), former.points.end(), next.points.begin());
    return continued ? next.points.mid(kept - smoothed) : QList<QPointF>();
}

bool isFreehand(const Annotation& mark)
{
    return mark.kind == AnnotationKind::pen || mark.kind == AnnotationKind::highlighter;
}

/// Collects what must be painted again, in document pixels.
class Damage {
public:
    Damage(const CanvasScene& scene)
        : pixelScale(scene.document.pixelScale)
        , devicePixel(1 / (scene.mapping.scale * scene.devicePixelRatio))
    {
    }

    void add(const QRectF& rect)
    {
        if (!rect.isNull())
            rects << rect;
    }
    void add(const Annotation& mark) { add(Renderer::paintedBounds(mark, pixelScale, devicePixel)); }

    void addDraft(const std::optional<Annotation>& former, const std::optional<Annotation>& next)
    {
        if (former == next)
            return;
        if (former && next && isFreehand(*next)) {
            auto part = *next;
            part.points = changedPoints(*former, *next);
            if (!part.points.isEmpty())
                return add(part);
        }
        if (former)
            add(*former);
        if (next)
            add(*next);
    }

    void addOverlay(const CanvasScene& scene)
    {
        const auto& overlay = scene.overlay;
        if (overlay.selectedID)
            if (const auto* mark = scene.document.annotation(*overlay.selectedID))
                add(Renderer::selectionBounds(*mark, devicePixel));
        if (overlay.nodesFor)
            if (const auto* mark = scene.document.annotation(*overlay.nodesFor))
                add(Renderer::nodeBounds(*mark, overlay.pointScale));
    }

    void addCrop(
        const std::optional<QRectF>& former, const std::optional<QRectF>& next, const QSizeF& picture)
    {
        if (former == next)
            return;
        if (!former || !next)
            return add(QRectF(QPointF(), picture));
        // Outside of both everything stays dimmed. The brackets' strokes stand out by half their width.
        for (const auto& rect : {*former, *next})
            add(expanded(rect, 4 * devicePixel));
    }

    /// In view points.
    QRegion region(const CanvasMapping& mapping) const
    {
        QRegion region;
        for (const auto& rect : rects)
            region += mapping.toView(rect).toAlignedRect();
        constexpr int worthKeepingApart = 3;
        return region.rectCount() > worthKeepingApart ? QRegion(region.boundingRect()) : region;
    }

private:
    double pixelScale;
    double devicePixel;
    QList<QRectF> rects;
};

/// The mark whose handles or frame are shown, by value.
std::pair<const Annotation*, const Annotation*> marked(const CanvasScene& scene)
{
    const auto find
        = [&](const std::optional<QUuid>& id) { return id ? scene.document.annotation(*id) : nullptr; };
    return {find(scene.overlay.selectedID), find(scene.overlay.nodesFor)};
}

bool sameMark(const Annotation* a, const Annotation* b) { return a && b ? *a == *b : a == b; }

} // namespace

// ---- What changed

QRegion CanvasPicture::show(const CanvasScene& next)
{
    const bool anew = needsNewLayers(next);
    auto damage = anew ? QRegion(next.view) : damageTo(next);
    scene = next;
    if (next.moving)
        split = next.moving;
    if (anew)
        makeLayers();
    bringLayerUpToDate();
    return damage;
}

bool CanvasPicture::needsNewLayers(const CanvasScene& next) const
{
    return background.isNull() || next.mapping != scene.mapping || next.view != scene.view
        || next.document.image.cacheKey() != scene.document.image.cacheKey()
        || next.beautify != scene.beautify || next.devicePixelRatio != scene.devicePixelRatio
        || next.surroundings != scene.surroundings;
}

QRegion CanvasPicture::damageTo(const CanvasScene& next) const
{
    Damage damage(next);
    const auto former = without(scene.document.annotations, scene.overlay.hiddenID);
    const auto wanted = without(next.document.annotations, next.overlay.hiddenID);
    const auto changed = difference(former, wanted);
    for (const auto& mark : changed.former)
        damage.add(mark);
    for (const auto& mark : changed.next)
        damage.add(mark);
    damage.addDraft(scene.overlay.draft, next.overlay.draft);

    const auto [formerFrame, formerNodes] = marked(scene);
    const auto [nextFrame, nextNodes] = marked(next);
    if (!sameMark(formerFrame, nextFrame) || !sameMark(formerNodes, nextNodes)) {
        damage.addOverlay(scene);
        damage.addOverlay(next);
    }
    damage.addCrop(scene.overlay.crop, next.overlay.crop, next.document.imageSize());
    return damage.region(next.mapping) & next.view;
}

// ---- The layers

QRect CanvasPicture::toDevice(const QRectF& viewRect) const
{
    const double ratio = scene.devicePixelRatio;
    return aligned({viewRect.topLeft() * ratio, viewRect.size() * ratio});
}

QRect CanvasPicture::deviceFrame() const
{
    const auto& mapping = scene.mapping;
    const auto exact = mapping.composition * mapping.scale * scene.devicePixelRatio;
    return {(mapping.origin * scene.devicePixelRatio).toPoint(),
        QSize(std::max(1, int(std::lround(exact.width()))), std::max(1, int(std::lround(exact.height()))))};
}

QRectF CanvasPicture::documentRect(const QRect& viewRect) const
{
    const QRectF exact(
        scene.mapping.toDocument(viewRect.topLeft()), QSizeF(viewRect.size()) / scene.mapping.scale);
    return expanded(exact, devicePixel());
}

void CanvasPicture::makeLayers()
{
    const auto& mapping = scene.mapping;
    const double ratio = scene.devicePixelRatio;
    const auto area = deviceFrame() & toDevice(scene.view);
    layerOrigin = area.topLeft();
    painted.clear();
    still = {};
    if (background.size() != area.size()) {
        background = {}; // before its successor is made: the layers are large
        background = newImage(area.size(), QImage::Format_RGB32);
    }
    if (background.isNull())
        return;

    QPainter painter(&background);
    GraphicsContext context(painter);
    painter.translate(-layerOrigin);
    painter.scale(ratio, ratio);
    drawSurroundings(QRectF(QPointF(area.topLeft()) / ratio, QSizeF(area.size()) / ratio), context);

    painter.resetTransform();
    painter.translate(mapping.origin * ratio - layerOrigin);
    const QSizeF whole = deviceFrame().size();
    painter.scale(whole.width() / mapping.composition.width(), whole.height() / mapping.composition.height());
    Renderer::drawPicture(scene.document, scene.beautify, context);
    painter.end();
    still = background; // shared until a mark is painted
}

QList<Annotation> CanvasPicture::stillMarks() const
{
    auto marks = without(scene.document.annotations, scene.overlay.hiddenID);
    if (!split)
        return marks;
    const auto above
        = std::find_if(marks.begin(), marks.end(), [&](const auto& mark) { return mark.id == *split; });
    return marks.first(above - marks.begin());
}

void CanvasPicture::bringLayerUpToDate()
{
    auto wanted = stillMarks();
    const auto changed = difference(painted, wanted);
    if (changed.isEmpty() || still.isNull())
        return;

    QPainter painter(&still);
    GraphicsContext context(painter);
    const auto enter = [&] {
        painter.translate(-layerOrigin);
        context.scale(scene.devicePixelRatio);
        enterComposition(context);
    };
    if (changed.former.empty() && changed.atEnd) {
        enter();
        drawMarks(changed.next, QRectF(QPointF(), scene.document.imageSize()), context);
    } else {
        Damage damage(scene);
        for (const auto& mark : changed.former)
            damage.add(mark);
        for (const auto& mark : changed.next)
            damage.add(mark);
        for (const QRect& viewRect : damage.region(scene.mapping)) {
            const GraphicsContext::Saved saved(context);
            const auto part = toDevice(viewRect).translated(-layerOrigin) & still.rect();
            if (part.isEmpty())
                continue; // the toolkit takes no source for the whole picture
            painter.drawImage(part.topLeft(), background, part);
            context.clip(QRectF(part));
            enter();
            drawMarks(wanted, documentRect(viewRect), context);
        }
    }
    painted = std::move(wanted);
}

// ---- Painting

void CanvasPicture::drawSurroundings(const QRectF& viewRect, GraphicsContext& context) const
{
    const GraphicsContext::Saved saved(context);
    context.fill(Draw::roundedRect(viewRect, 0), scene.surroundings);
    const double ratio = scene.devicePixelRatio;
    const QRectF frame(QPointF(deviceFrame().topLeft()) / ratio, QSizeF(deviceFrame().size()) / ratio);
    const auto path = Draw::roundedRect(frame, 0);
    const bool filled = scene.beautify.enabled && scene.beautify.gradient >= 0;
    if (filled)
        return;
    {
        const GraphicsContext::Saved shadowed(context);
        if (!scene.beautify.enabled) {
            context.setShadow({withAlpha(Qt::black, Theme::pictureShadowAlpha),
                {0, Theme::pictureShadowDrop * ratio}, Theme::pictureShadowBlur * ratio});
        }
        context.fill(path, QColor::fromRgbF(0.5F, 0.5F, 0.5F));
    }
    auto pattern = checkerboard();
    pattern.setTransform(QTransform::fromTranslate(frame.x(), frame.y()));
    context.fill(path, pattern);
}

Renderer::Backdrop CanvasPicture::backdrop() const
{
    return Renderer::backdrop(scene.document, scene.beautify, [this](GraphicsContext& context) {
        const GraphicsContext::Saved saved(context);
        context.scale(1 / scene.mapping.scale);
        context.translate(-scene.mapping.origin);
        drawSurroundings(QRectF(scene.view), context);
    });
}

void CanvasPicture::enterComposition(GraphicsContext& context) const
{
    context.translate(scene.mapping.origin);
    context.scale(scene.mapping.scale);
    Renderer::enterPicture(scene.document, scene.beautify, context);
}

void CanvasPicture::drawMarks(
    std::span<const Annotation> marks, const QRectF& documentRect, GraphicsContext& context) const
{
    const auto behind = backdrop();
    for (const auto& mark : marks)
        if (Renderer::paintedBounds(mark, scene.document.pixelScale, devicePixel()).intersects(documentRect))
            Renderer::drawAnnotation(mark, scene.document, cache, context, true, behind);
}

void CanvasPicture::paint(QPainter& painter, const QRect& viewRect)
{
    const auto& mapping = scene.mapping;
    GraphicsContext context(painter);
    const GraphicsContext::Saved saved(context);
    context.clip(QRectF(viewRect));

    const double ratio = scene.devicePixelRatio;
    const QRect layer(layerOrigin, still.size());
    const auto devicePart = toDevice(viewRect);
    if (!layer.contains(devicePart))
        drawSurroundings(viewRect, context);
    if (const auto part = layer & devicePart; !part.isEmpty()) {
        painter.save();
        painter.scale(1 / ratio, 1 / ratio);
        painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
        painter.drawImage(part.topLeft(), still, part.translated(-layerOrigin));
        painter.restore();
    }
    if (!mapping.frame().intersects(viewRect))
        return;

    const auto& overlay = scene.overlay;
    const auto marks = without(scene.document.annotations, overlay.hiddenID);
    if (painted.size() < marks.size() || overlay.draft) {
        const GraphicsContext::Saved entered(context);
        enterComposition(context);
        drawMarks(std::span(marks).subspan(std::size_t(painted.size())), documentRect(viewRect), context);
        if (overlay.draft)
            Renderer::drawAnnotation(*overlay.draft, scene.document, cache, context,
                overlay.glyphlessID != overlay.draft->id, backdrop());
    }
    context.translate(mapping.origin);
    context.scale(mapping.scale);
    Renderer::drawOverlay(scene.document, scene.beautify, overlay, context);
}

} // namespace pintalux
