// SPDX-License-Identifier: MIT
#pragma once

#include "editor/state/EditorCommands.h"
#include "editor/state/EditorModel.h"

#include <QList>
#include <QWidget>

#include <functional>
#include <utility>

class QBoxLayout;

namespace pintalux {

class BarButton;
class HoverColorButton;
class HoverInfo;
class InfoText;

/// The bar at the top of an editor: history, what is under the pointer, and what to do with the picture.
///
/// Follows the model and keeps nothing but what is open. Also gives the window the key that walks through the
/// controls.
class EditorChrome : public QWidget {
    Q_OBJECT

public:
    static constexpr int barHeight = 40;

    /// Starts dragging the finished picture out of the window; `source` is where the press was.
    using DragOut = std::function<void(QWidget& source)>;

    EditorChrome(
        EditorModel& model, HoverInfo& hover, RunCommand run, const DragOut& dragOut, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void addCommands(QBoxLayout& layout, std::initializer_list<Command> offered);
    void addInformation(QBoxLayout& layout);
    void addToolsToggle(QBoxLayout& layout);
    void addActions(QBoxLayout& layout);
    void openPositionMenu();
    void toggleBeautify();
    void refresh(EditorModel::Field field);
    void refreshCommands();
    void refreshHover();

    EditorModel& model;
    HoverInfo& hover;
    RunCommand run;
    QList<std::pair<Command, BarButton*>> commands;
    InfoText* pixels;
    InfoText* zoom;
    HoverColorButton* color;
    InfoText* drawn; ///< hidden while nothing is being drawn
    BarButton* tools;
    BarButton* edges;
    BarButton* beautify;
};

} // namespace pintalux
