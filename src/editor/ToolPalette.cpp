#include "editor/ToolPalette.h"

namespace pintalux {

ToolPalette::ToolPalette(EditorModel& edited, std::function<void()> snap, QWidget* parent)
    : FloatingCard(18, parent)
    , model(edited)
    , snapToMouse(std::move(snap))
{
}

QSize ToolPalette::sizeHint() const
{
    return isVertical(model.paletteEdge()) ? QSize(116, 377) : QSize(958, 60);
}

} // namespace pintalux
