#include "editor/ArrowOptionsPanel.h"

namespace pintalux {

ArrowOptionsPanel::ArrowOptionsPanel(EditorModel&, QWidget* parent)
    : FloatingCard(16, parent)
{
}

} // namespace pintalux
