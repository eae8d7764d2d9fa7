#pragma once

#include "controls/FloatingCard.h"
#include "editor/EditorModel.h"

namespace pintalux {

/// Style, width and colour of arrows, floating beside the palette while the arrow tool is chosen. The window
/// places it and shows it by the model's tool and `showArrowOptions`.
class ArrowOptionsPanel : public FloatingCard {
    Q_OBJECT

public:
    ArrowOptionsPanel(EditorModel& model, QWidget* parent);

    QSize sizeHint() const override { return {541, 52}; }
};

} // namespace pintalux
