#pragma once

#include "controls/FloatingCard.h"
#include "editor/EditorModel.h"

#include <functional>

namespace pintalux {

/// The floating tools of an editor: instruments, shapes and the options of the chosen one.
///
/// Lies across or stands upright by the model's palette edge; `sizeHint` is its size there. The window places
/// it.
class ToolPalette : public FloatingCard {
    Q_OBJECT

public:
    /// `snapToMouse` is called when a person has dragged the palette by its grip and lets go.
    ToolPalette(EditorModel& model, std::function<void()> snapToMouse, QWidget* parent);

    QSize sizeHint() const override;

private:
    EditorModel& model;
    std::function<void()> snapToMouse;
};

} // namespace pintalux
