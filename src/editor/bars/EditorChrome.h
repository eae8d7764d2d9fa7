// SPDX-License-Identifier: MIT
#pragma once

#include "editor/state/EditorModel.h"

#include <QWidget>

class QBoxLayout;

namespace pintalux {

class BarButton;
class EditorCommands;
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

    EditorChrome(EditorModel& model, HoverInfo& hover, EditorCommands& commands, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void addHistory(QBoxLayout& layout);
    void addInformation(QBoxLayout& layout);
    void addToolsToggle(QBoxLayout& layout);
    void addActions(QBoxLayout& layout);
    void openPositionMenu();
    void toggleBeautify();
    void refresh(EditorModel::Field field);
    void refreshHover();

    EditorModel& model;
    HoverInfo& hover;
    EditorCommands& commands;
    BarButton* undo;
    BarButton* redo;
    BarButton* clear;
    InfoText* pixels;
    InfoText* zoom;
    HoverColorButton* color;
    BarButton* tools;
    BarButton* edges;
    BarButton* beautify;
};

} // namespace pintalux
