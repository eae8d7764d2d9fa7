#pragma once

#include "editor/EditorModel.h"

#include <QWidget>

namespace pintalux {

class EditorCommands;
class HoverInfo;

/// The bar at the top of an editor: history, what is under the pointer, and what to do with the picture.
class EditorChrome : public QWidget {
    Q_OBJECT

public:
    static constexpr int barHeight = 40;

    EditorChrome(EditorModel& model, HoverInfo& hover, EditorCommands& commands, QWidget* parent = nullptr);
};

} // namespace pintalux
