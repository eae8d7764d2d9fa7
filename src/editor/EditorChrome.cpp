#include "editor/EditorChrome.h"

namespace pintalux {

EditorChrome::EditorChrome(EditorModel&, HoverInfo&, EditorCommands&, QWidget* parent)
    : QWidget(parent)
{
    setFixedHeight(barHeight);
}

} // namespace pintalux
