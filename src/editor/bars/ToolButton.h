// SPDX-License-Identifier: MIT
#pragma once

#include "controls/ChromeButton.h"
#include "model/Tool.h"

namespace pintalux {

/// One of the palette's tools; the chosen one stands on the brand's gradient.
class ToolButton : public ChromeButton {
    Q_OBJECT

public:
    ToolButton(Tool tool, QWidget* parent);

    Tool tool() const { return chosenTool; }

    /// Title and key: "Flecha (A)".
    static QString helpOf(Tool tool);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Tool chosenTool;
};

} // namespace pintalux
