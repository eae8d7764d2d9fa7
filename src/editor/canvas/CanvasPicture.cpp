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

/// Behind what is transparent in a picture, when no frame is. Its squares are whole device pixels.
QBrush checkerboard(double devicePixelRatio)
{
    const int side = int(std::lround(8 * devicePixelRatio));
    QImage tile(2 * side, 2 * side, QImage::Format_RGB32);
    tile.fill(QColor::fromRgbF(0.82F, 0.82F, 0.82F));
    QPainter painter(&tile);
    const auto light = QColor::fromRgbF(0.94F, 0.94F, 0.94F);
    painter.fillRect(0, 0, side, side, light);
    painter.fillRect(side, side, side, side, light);
    painter.end();
    return tile;
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

/// Collects what must be painted again: added in document pixels, given in device pixels.
class Damage {
public:
    Damage(const CanvasScene& scene)
        : pixelScale(scene.document.pixelScale)
        , device(scene.mapping, scene.devicePixelRatio)
        , devicePixel(1 / device.scale())
    {
    }

    void add(const QRectF& documentRect)
    {
        if (!documentRect.isNull())
            all += device.fromDocument(documentRect);
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

    QRegion region() const
    {
        constexpr int worthKeepingApart = 3;
        return all.rectCount() > worthKeepingApart ? QRegion(all.boundingRect()) : all;
    }

private:
    double pixelScale;
    DeviceMapping device;
    double devicePixel;
    QRegion all;
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
    device = DeviceMapping(scene.mapping, scene.devicePixelRatio);
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
    const DeviceMapping shown(next.mapping, next.devicePixelRatio);
    QRegion viewPoints;
    for (const QRect& part : damage.region())
        viewPoints += shown.toView(part);
    return viewPoints & next.view;
}

// ---- The layers

void CanvasPicture::makeLayers()
{
    const auto area = device.frame() & device.fromView(scene.view);
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
    painter.translate(-layerOrigin);
    GraphicsContext context(painter);
    drawSurroundings(area, context);
    const QSizeF whole = device.frame().size();
    painter.translate(device.frame().topLeft());
    painter.scale(whole.width() / scene.mapping.composition.width(),
        whole.height() / scene.mapping.composition.height());
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

    Damage damage(scene);
    const bool added = changed.former.empty() && changed.atEnd;
    for (const auto& mark : changed.former)
        damage.add(mark);
    for (const auto& mark : changed.next)
        damage.add(mark);
    QPainter painter(&still);
    painter.translate(-layerOrigin);
    GraphicsContext context(painter);
    if (added) {
        enterPicture(context, painter);
        drawMarks(changed.next, QRect(layerOrigin, still.size()), context);
    } else {
        for (const QRect& damaged : damage.region()) {
            const auto part = damaged & QRect(layerOrigin, still.size());
            if (part.isEmpty())
                continue; // the toolkit takes no source for the whole picture
            const GraphicsContext::Saved saved(context);
            painter.drawImage(part.topLeft(), background, part.translated(-layerOrigin));
            context.clip(QRectF(part));
            enterPicture(context, painter);
            drawMarks(wanted, part, context);
        }
    }
    painted = std::move(wanted);
}

// ---- Painting

void CanvasPicture::drawSurroundings(const QRect& part, GraphicsContext& context) const
{
    const GraphicsContext::Saved saved(context);
    context.fill(QRectF(part), scene.surroundings);
    const double ratio = scene.devicePixelRatio;
    const auto frame = device.frame();
    const bool filled = scene.beautify.enabled && scene.beautify.gradient >= 0;
    if (filled)
        return;
    const auto path = Draw::roundedRect(frame, 0);
    {
        const GraphicsContext::Saved shadowed(context);
        if (!scene.beautify.enabled) {
            context.setShadow({withAlpha(Qt::black, Theme::pictureShadowAlpha),
                {0, Theme::pictureShadowDrop * ratio}, Theme::pictureShadowBlur * ratio});
        }
        context.fill(path, QColor::fromRgbF(0.5F, 0.5F, 0.5F));
    }
    auto pattern = checkerboard(ratio);
    pattern.setTransform(QTransform::fromTranslate(frame.x(), frame.y()));
    context.fill(path, pattern);
}

Renderer::Backdrop CanvasPicture::backdrop() const
{
    return Renderer::backdrop(scene.document, scene.beautify, [this](GraphicsContext& context) {
        const GraphicsContext::Saved saved(context);
        context.scale(1 / device.scale());
        context.translate(-device.frame().topLeft());
        drawSurroundings(device.fromView(scene.view), context);
    });
}

void CanvasPicture::enterPicture(GraphicsContext& context, QPainter& painter) const
{
    painter.setWorldTransform(device.composition(), true);
    Renderer::enterPicture(scene.document, scene.beautify, context);
}

QRect CanvasPicture::paintedPixels(const Annotation& mark) const
{
    return device.fromDocument(Renderer::paintedBounds(mark, scene.document.pixelScale, 1 / device.scale()));
}

void CanvasPicture::drawMarks(
    std::span<const Annotation> marks, const QRect& part, GraphicsContext& context) const
{
    const auto behind = backdrop();
    for (const auto& mark : marks)
        if (paintedPixels(mark).intersects(part))
            Renderer::drawAnnotation(mark, scene.document, cache, context, true, behind);
}

void CanvasPicture::paint(QPainter& painter, const QRect& viewRect)
{
    GraphicsContext context(painter);
    const GraphicsContext::Saved saved(context);
    // From here on in device pixels. In a window the view may begin between two of them: then they begin at
    // the nearest.
    const auto toDevice = painter.deviceTransform();
    const auto hidden = painter.worldTransform().inverted() * toDevice;
    const auto begin = toDevice.map(QPointF()).toPoint();
    painter.setWorldTransform(QTransform::fromTranslate(begin.x(), begin.y()) * hidden.inverted());
    const auto part = device.fromView(viewRect);
    context.clip(QRectF(part));

    const QRect layer(layerOrigin, still.size());
    if (!layer.contains(part))
        drawSurroundings(part, context);
    if (const auto kept = layer & part; !kept.isEmpty())
        context.drawImage(still, QRectF(kept), QRectF(kept.translated(-layerOrigin)));
    if (!device.frame().intersects(part))
        return;

    const auto& overlay = scene.overlay;
    const auto marks = without(scene.document.annotations, overlay.hiddenID);
    if (painted.size() < marks.size() || overlay.draft) {
        const GraphicsContext::Saved entered(context);
        enterPicture(context, painter);
        drawMarks(std::span(marks).subspan(std::size_t(painted.size())), part, context);
        if (overlay.draft)
            Renderer::drawAnnotation(*overlay.draft, scene.document, cache, context,
                overlay.glyphlessID != overlay.draft->id, backdrop());
    }
    painter.setWorldTransform(device.composition(), true);
    Renderer::drawOverlay(scene.document, scene.beautify, overlay, context);
}

} // namespace pintalux
