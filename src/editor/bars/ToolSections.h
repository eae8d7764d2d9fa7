// SPDX-License-Identifier: MIT
#pragma once

#include "editor/state/EditorModel.h"

#include <QWidget>

#include <array>

namespace pintalux {

class BarButton;
class BlurPicker;
class ColorChooserButton;
class PushButton;
class StrokeSample;
class SwatchButton;
class WidthButton;

/// The palette's part after the tools: colour, width and what else the chosen tool offers, or what to do with
/// a crop rectangle. Its size depends on the arrangement alone, so that choosing a tool moves nothing.
class ToolSections : public QWidget {
    Q_OBJECT

public:
    enum class Arrangement {
        wide,
        compact, ///< colours in two rows
        upright, ///< everything in threes
    };

    ToolSections(EditorModel& model, QWidget* parent);

    static QSize sizeFor(Arrangement arrangement);
    /// Lies with its contents in `place` of its parent, itself a little larger: rings around controls need
    /// room.
    void arrange(Arrangement arrangement, const QRect& place);

private:
    void makeStyleControls();
    void makeExtras();
    void makeCropButtons();
    void placeCropButtons(Arrangement arrangement, QPoint corner);
    void placeExtras();
    void openColorChooser();
    void refresh(EditorModel::Field field);
    void refreshStyle();
    void refreshVisibility();

    EditorModel& model;
    QList<SwatchButton*> swatches;
    ColorChooserButton* chooser;
    std::array<WidthButton*, 3> widths;
    BarButton* fill;
    BarButton* handwriting;
    BarButton* callout;
    BlurPicker* blurPicker;
    StrokeSample* sample;
    PushButton* applyCrop;
    PushButton* cancelCrop;
    QRect slot; ///< of the tool's extras
};

} // namespace pintalux
