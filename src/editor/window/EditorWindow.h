// SPDX-License-Identifier: MIT
#pragma once

#include "editor/bars/EditorChrome.h"
#include "editor/state/EditorModel.h"

#include <QPointF>
#include <QVariantAnimation>
#include <QWidget>

#include <functional>
#include <memory>

class QMenuBar;

namespace pintalux {

class ArrowOptionsPanel;
class CanvasView;
class FloatingCard;
class ToolPalette;

/// The window of an editor: menu bar, bar and canvas below one another, with the palette and the arrow
/// options floating over the canvas.
///
/// It keeps the panels in their places, and shows them by the model. It does nothing else: what a person asks
/// for goes to whoever carries out commands.
class EditorWindow : public QWidget {
    Q_OBJECT

public:
    EditorWindow(EditorModel& model, RunCommand run, const EditorChrome::DragOut& dragOut);
    ~EditorWindow() override;

    CanvasView& canvas() { return *canvasView; }
    ToolPalette& palettePanel() { return *toolPalette; }
    ArrowOptionsPanel& arrowOptionsPanel() { return *arrowOptions; }

    /// Puts the menu bar at the top; the window owns it.
    void setMenuBar(std::unique_ptr<QMenuBar> bar);
    int menuBarHeight() const;
    /// Called once, when the window is about to close, however that comes.
    void setWillClose(std::function<void()> handler) { willClose = std::move(handler); }

    /// Puts the panels where the model wants them and gives the keyboard to the canvas.
    void applyPaletteLayout(bool animated);
    /// Docks the palette on the edge nearest to the pointer. It also goes back to its place there.
    void dockPaletteAtMouse();
    /// The same at a point of the content (everything below the menu bar), from its top left.
    void dockPalette(QPointF contentPoint);

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    QRect contentRect() const;
    void modelChanged(EditorModel::Field field);
    void showPanels();
    void layOut();
    void placePanels(double progress);

    EditorModel& model;
    QMenuBar* menus = nullptr;
    EditorChrome* chrome;
    CanvasView* canvasView;
    ToolPalette* toolPalette;
    ArrowOptionsPanel* arrowOptions;

    PaletteEdge shownEdge;
    bool shownHidden;
    bool dockingIsDue = false; ///< the model has changed, the panels have not moved yet
    QVariantAnimation docking;
    struct {
        QPointF palette;
        QPointF arrowOptions;
        QMargins insets;
    } dockingStart;
    std::optional<QPoint> barPress; ///< of the pointer on an empty place of the bar; window coordinates
    std::function<void()> willClose;
};

} // namespace pintalux
