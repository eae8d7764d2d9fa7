// SPDX-License-Identifier: MIT
#pragma once

#include "editor/state/EditorModel.h"

#include <optional>

namespace pintalux {

/// Choices of style: each becomes the style of what is drawn next and, in one undo step, that of the selected
/// mark where it has such a style. What is toggled is what the controls show.
namespace StyleActions {

void chooseColor(EditorModel& model, const QColor& color);
/// `points` as in `EditorModel::strokeWidth`.
void chooseWidth(EditorModel& model, double points);
void chooseArrowStyle(EditorModel& model, ArrowStyle style);
void chooseBlurStyle(EditorModel& model, BlurStyle style);
void toggleFilled(EditorModel& model);
void toggleHandwritten(EditorModel& model);
/// A text that becomes a callout gets a tail to point with; one that was a callout loses it.
void toggleCallout(EditorModel& model);

} // namespace StyleActions

/// A width that changes many times while a knob is dragged, and is stored once and one undo step in the end.
class WidthGesture {
public:
    explicit WidthGesture(EditorModel& changed)
        : model(changed)
    {
    }

    bool isRunning() const { return before.has_value(); }
    void begin();
    void change(double points);
    /// Records the step if a mark was changed.
    void end();

private:
    EditorModel& model;
    std::optional<Document> before;
    std::optional<Settings::Hold> hold;
};

} // namespace pintalux
