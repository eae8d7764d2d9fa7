// SPDX-License-Identifier: MIT
#pragma once

#include "capture/OverlayLayout.h"
#include "platform/windowing/DirectSurface.h"

#include <QPointer>
#include <QWidget>

namespace pintalux {

/// One screen of the overlay: turns the pointer and the keys into a selection and shows it.
///
/// Points of the view have their origin at the screen's top-left corner and grow downward, as the rows of the
/// frozen picture do.
class OverlayView : public QWidget {
public:
    OverlayView(FrozenDisplay display, CaptureOverlayController& controller);

    /// Repaints what looks different from what was painted last.
    void refresh();

    /// The screen's name.
    const QString& displayName() const { return display.screen.name; }

    /// For the self-test: see `CaptureOverlayController`.
    void debugSimulate(const std::optional<QRectF>& selection, QPointF pointer);

protected:
    /// From now on paints through this instead of the toolkit's picture of the window, if it is not null.
    void paintThrough(std::unique_ptr<DirectSurface> direct);

    void paintEvent(QPaintEvent* event) override;
    QPaintEngine* paintEngine() const override;
    void resizeEvent(QResizeEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void paint(QPainter& painter, const QRectF& part);
    OverlayMode mode() const;
    OverlayScene scene() const;
    std::optional<QRectF> dragged() const;
    const WindowCandidate* hoveredWindow() const;
    std::optional<QString> hexColorAt(QPointF viewPoint) const;

    QPointF cornerAt(QPointF viewPoint) const;
    void press(QPointF viewPoint);
    void drag(QPointF viewPoint, bool square);
    void endDrag();
    void escape();
    void pickColorAt(QPointF viewPoint);
    void finishWithCrop(const QRectF& viewRect);
    void refreshAll();

    FrozenDisplay display;
    QPointer<CaptureOverlayController> controller;
    std::optional<QPointF> dragStart;
    std::optional<QPointF> dragCurrent;
    std::optional<QPointF> mouse; ///< none when the pointer is outside
    OverlayLayout shown;
    std::unique_ptr<DirectSurface> surface; ///< null where the toolkit paints
    bool isPainted = false;
};

} // namespace pintalux
