// SPDX-License-Identifier: MIT
#pragma once

#include "capture/OverlayLayout.h"
#include "capture/OverlayOutcome.h"
#include "capture/ScreenCapture.h"
#include "platform/desktop/DirectSurface.h"

#include <QWidget>

#include <functional>
#include <memory>

namespace pintalux {

/// One screen of the overlay: turns the pointer and the keys into a selection and shows it.
///
/// Points of the view have their origin at the screen's top-left corner and grow downward, as the rows of the
/// frozen picture do.
class OverlayView : public QWidget {
public:
    /// What the view asks of the overlay that it is a part of.
    struct Actions {
        /// The window seen at a point of the desktop on a screen; null where there is none.
        std::function<const WindowCandidate*(QPointF screenPoint, const ScreenInfo& screen)> windowAt;
        /// The pointer came to this screen.
        std::function<void(OverlayView& view)> entered;
        /// The view that keys act on, whichever of them the display system gives them to. May be null.
        std::function<OverlayView*()> keyView;
        /// Brings every screen up to date, this one too.
        std::function<void()> refreshAll;
        std::function<void()> toggleWindowMode;
        std::function<void(const OverlayOutcome&)> finish;
    };

    /// Without a list of windows, window mode selects areas.
    OverlayView(FrozenDisplay display, OverlayMode mode, bool listsWindows, Actions actions);

    /// What a gesture selects from now on. Shows with the next `refresh`.
    void setMode(OverlayMode mode) { currentMode = mode; }

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
    /// The desktop takes the window away.
    void closeEvent(QCloseEvent* event) override;

private:
    void paint(QPainter& painter, const QRectF& part);
    OverlayScene scene() const;
    std::optional<QRectF> dragged() const;
    bool selectsWindows() const { return currentMode == OverlayMode::window && listsWindows; }
    const WindowCandidate* hoveredWindow() const;
    std::optional<QString> hexColorAt(QPointF viewPoint) const;

    QPointF cornerAt(QPointF viewPoint) const;
    void press(QPointF viewPoint);
    void drag(QPointF viewPoint, bool square);
    void endDrag();
    void pressKey(const QKeyEvent& event);
    void escape();
    void pickColorAt(QPointF viewPoint);
    void finishWithCrop(const QRectF& viewRect);

    FrozenDisplay display;
    OverlayMode currentMode;
    bool listsWindows;
    Actions actions;
    std::optional<QPointF> dragStart;
    std::optional<QPointF> dragCurrent;
    std::optional<QPointF> mouse; ///< none when the pointer is outside
    OverlayLayout shown;
    std::unique_ptr<DirectSurface> surface; ///< null where the toolkit paints
    bool isPainted = false;
};

} // namespace pintalux
