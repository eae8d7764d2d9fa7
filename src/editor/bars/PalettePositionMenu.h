// SPDX-License-Identifier: MIT
#pragma once

#include "controls/Menu.h"
#include "editor/state/EditorModel.h"

namespace pintalux {

/// Where the palette lies, and whether it shows at all.
class PalettePositionMenu : public Menu {
    Q_OBJECT

public:
    PalettePositionMenu(EditorModel& model, QWidget* parent);

private:
    void fill();

    EditorModel& model;
};

} // namespace pintalux
