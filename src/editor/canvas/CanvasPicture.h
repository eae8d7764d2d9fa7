// SPDX-License-Identifier: MIT
#pragma once

#include "editor/canvas/DeviceMapping.h"
#include "render/EffectCache.h"
#include "render/Renderer.h"

#include <QColor>
#include <QImage>
#include <QRegion>
#include <QUuid>

#include <optional>
#include <span>

class QPainter;

namespace pintalux {

/// Everything that decides the canvas's pixels.
struct CanvasScene {
    CanvasMapping mapping;
    Document document;
    BeautifySettings beautify;
    Renderer::Overlay overlay;
    /// A mark that changes with every event: it and those above it stay out of the kept layer.
    std::optional<QUuid> moving;
    QRect view; ///< the widget, in view points
    double devicePixelRatio = 1;
    QColor surroundings;
};

/// Paints the canvas from layers that it keeps at device pixels: the composition without marks, which saves
/// scaling the picture again, and on top of it the marks that do not change.
///
/// Both layers cover the composition only; all marks are clipped to it. Everything is painted in the order
/// and with the operations of the renderer, so that the pixels are those that it would paint by itself.
class CanvasPicture {
public:
    explicit CanvasPicture(EffectCache& cache)
        : cache(cache)
    {
    }

    /// Takes the next scene. The view points that must be painted again: those of all device pixels that
    /// change.
    QRegion show(const CanvasScene& next);

    /// Paints one rectangle of the view. The painter's user space is view points.
    void paint(QPainter& painter, const QRect& viewRect);

private:
    QRegion damageTo(const CanvasScene& next) const;
    bool needsNewLayers(const CanvasScene& next) const;
    void makeLayers();
    void bringLayerUpToDate();
    QList<Annotation> stillMarks() const;
    /// Turns user space from device pixels of the view into document pixels.
    void enterPicture(GraphicsContext& context, QPainter& painter) const;
    /// Those of `marks` that can touch `part`.
    void drawMarks(std::span<const Annotation> marks, const QRect& part, GraphicsContext& context) const;
    /// What shows where the picture lets something through.
    Renderer::Backdrop backdrop() const;
    void drawSurroundings(const QRect& part, GraphicsContext& context) const;
    QRect paintedPixels(const Annotation& mark) const;

    EffectCache& cache;
    CanvasScene scene;
    DeviceMapping device;
    QPoint layerOrigin; ///< of both layers, in device pixels of the view
    QImage background;  ///< surroundings, frame and picture
    QImage still;       ///< the same with `painted` on it
    QList<Annotation> painted;
    /// The mark that moved last: people move one several times, and painting all marks takes a while.
    std::optional<QUuid> split;
};

} // namespace pintalux
