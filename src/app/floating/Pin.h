// SPDX-License-Identifier: MIT
#pragma once

#include "controls/Sheet.h"

#include <QImage>
#include <QTimer>
#include <QWidget>

namespace pintalux {

/// A picture pinned above all other windows, on every desktop.
///
/// Dragging moves it, dragging an edge or a corner resizes it in its proportions, the wheel fades it, a
/// double click or Escape closes it, and its menu copies or closes it. It lives on after the window that it
/// came from, until it is closed or the program ends. Main thread only.
class PinnedImage : public QWidget {
    Q_OBJECT

public:
    /// Shows `image` in the middle of the screen of `near` (the main screen without one), at its size in
    /// points, at most 60 % of the screen. `pixelScale` is image pixels per point. An empty picture is not
    /// shown.
    static void show(const QImage& image, double pixelScale, const QWidget* near);

    /// The pins on screen, the oldest first.
    static const QList<PinnedImage*>& open();

    ~PinnedImage() override;

    /// Where the picture is on the screen, without the shadow around it; points.
    QRect picture() const { return sheet.rect().translated(pos()); }
    void setPicture(const QRect& screenRect);

    /// Closes this pin for good.
    void dismiss();
    /// Copies the whole picture, at the scale in which it is shown now.
    void copyImage() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    PinnedImage(const QImage& image, QSize size);

    void keepProportions();
    /// The picture in its proportions, within the window: the whole sheet, but for a moment after a window
    /// manager has resized it.
    QRect pictureInSheet() const;
    bool isPixelForPixel() const;
    void drawPicture(QPainter& painter);

    QImage image;
    QImage scaled; ///< `image` at this window's device pixels; null where it is shown pixel for pixel
    QSize proportions;
    QTimer settled; ///< runs until nobody has resized the pin for a moment
    Sheet sheet;
    double opacity = 1; ///< exactly; the toolkit remembers its own in coarse steps

    /// What the left button took hold of, in points of the screen.
    struct Grip {
        QPoint screenPoint;
        QRect picture;
        Qt::Edges edges; ///< none: the whole pin
        bool moving = false;
    };
    std::optional<Grip> grip;
};

} // namespace pintalux
