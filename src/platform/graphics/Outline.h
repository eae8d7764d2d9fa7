// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QList>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QTransform>

#include <cstddef>
#include <vector>

namespace pintalux {

/// A pen. Width and dashes are user units.
struct Stroke {
    QColor color;
    double width = 1;
    Qt::PenCapStyle cap = Qt::RoundCap;
    Qt::PenJoinStyle join = Qt::RoundJoin;
    QList<double> dashes{}; ///< lengths of dash, gap, dash…; empty: solid
};

/// The area that a fill or a stroke covers, bounded by straight lines.
///
/// The toolkit's own curves depart from the true ones by a quarter of a device pixel, and its dashes begin
/// where the clip does. These keep to a tolerance, and know no clip: what a pixel shows does not depend on
/// how much is painted around it.
class Outline {
public:
    /// What filling `path` by its rule covers.
    static Outline ofFill(const QPainterPath& path, double tolerance);
    /// What `stroke` covers along `path`. What cannot touch `visible` may be left out. A mitred join that
    /// would reach farther than the stroke's width is cut off.
    static Outline ofStroke(
        const QPainterPath& path, const Stroke& stroke, double tolerance, const QRectF& visible);

    /// The part of it that lies within `rect`.
    Outline within(const QRectF& rect) const;

    /// In device pixels, to be filled without a transform. Its corners are where the toolkit's rasteriser can
    /// have them, at 1/64 of a pixel, so that whole pixels more or less in `toDevice` change nothing else.
    QPainterPath onDevice(const QTransform& toDevice) const;

    void addPolygon(const std::vector<QPointF>& polygon);

private:
    std::vector<QPointF> points;   ///< of all polygons, one after the other
    std::vector<std::size_t> ends; ///< where each polygon ends in `points`
    Qt::FillRule rule = Qt::WindingFill;
};

} // namespace pintalux
