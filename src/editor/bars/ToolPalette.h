// SPDX-License-Identifier: MIT
#pragma once

#include "controls/FloatingCard.h"
#include "editor/bars/ToolSections.h"
#include "editor/state/EditorModel.h"

#include <functional>

namespace pintalux {

class InstrumentView;
class ToolButton;

/// The floating tools of an editor: instruments, shapes and the options of the chosen one.
///
/// Lies across or stands upright by the model's palette edge, and draws together when its parent is narrow;
/// `sizeHint` is its size there. The window places it.
class ToolPalette : public FloatingCard {
    Q_OBJECT

public:
    /// `snapToMouse` is called when a person has dragged the palette by its grip and lets go. It puts the
    /// palette in its place, the old one or a new one.
    ToolPalette(EditorModel& model, std::function<void()> snapToMouse, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    class Grip;

    ToolSections::Arrangement arrangement() const;
    void arrange();
    void arrangeAcross();
    void arrangeUpright();
    void refresh(EditorModel::Field field);
    void openPositionMenu(QPoint screenPoint);

    EditorModel& model;
    std::function<void()> snapToMouse;
    Grip* grip;
    QList<InstrumentView*> instruments;
    QList<ToolButton*> shapes;
    ToolSections* sections;
    QRect tray;
    QList<QRectF> rules;
};

} // namespace pintalux
