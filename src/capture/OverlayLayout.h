// SPDX-License-Identifier: MIT
#pragma once

#include "model/OverlayMode.h"
#include "platform/graphics/TextLine.h"

#include <QRectF>
#include <QRegion>
#include <QSize>

#include <optional>

namespace pintalux {

/// What one screen of the overlay has to show. Points of its view: origin top-left, y downward.
struct OverlayScene {
    OverlayMode mode = OverlayMode::area;
    bool listsWindows = true; ///< false: window mode selects areas, and says why
    QSizeF viewSize;
    QSize imageSize;       ///< pixels of the frozen picture
    double pixelScale = 1; ///< image pixels per point
    std::optional<QRectF> selection;
    QString windowTitle; ///< of the window that is selected, in window mode
    std::optional<QPointF> mouse;
    bool hasKeyboard = false;

    bool selectsWindows() const { return mode == OverlayMode::window && listsWindows; }
};

/// The pixel of the frozen picture under a point of the view.
QPoint pixelAt(QPointF viewPoint, double pixelScale);

/// The pixels that a selection takes: all that it touches, inside the image. May be empty.
QRect pixelsOf(const QRectF& viewRect, double pixelScale, QSize imageSize);

/// Where everything lies that is drawn above the picture. The same values serve drawing and damage, so that
/// nothing is left behind by a partial repaint.
struct OverlayLayout {
    struct Label {
        QRectF pill;
        QString content; ///< tells two labels apart
        TextLine text;
        QPointF textOrigin;
    };
    struct Bar {
        QRectF frame;
        TextLine text;
        QPointF textOrigin;
    };
    struct Loupe {
        QRectF frame;
        QRectF readout;
        QPoint pixel; ///< of the image, under the pointer; in the middle of the loupe
    };

    OverlayMode mode = OverlayMode::area;
    bool selectsWindows = false;
    QRectF bounds;
    QRectF picture; ///< where the frozen picture goes: its pixels on those of the screen
    std::optional<QRectF> selection;
    std::optional<Label> label;
    std::optional<Bar> bar;
    std::optional<Loupe> loupe;

    bool isDimmed() const { return mode != OverlayMode::color; }
    bool hasHandles() const { return !selectsWindows; }
};

OverlayLayout layOut(const OverlayScene& scene);

/// What has to be repainted to come from one to the other, in whole points.
QRegion damage(const OverlayLayout& before, const OverlayLayout& after);

/// Side of the loupe, and how many pixels it shows along it.
inline constexpr int loupePixels = 11;
inline constexpr double loupeCell = 11;
inline constexpr double loupeSide = loupePixels * loupeCell;

/// How the colour under the pointer is written.
TextAttributes readoutAttributes();
/// The readout's text when the pixel has the colour `hex`; "—" stands for none.
QString readoutText(const QString& hex, QPoint pixel);

} // namespace pintalux
