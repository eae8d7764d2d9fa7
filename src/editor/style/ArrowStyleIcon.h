// SPDX-License-Identifier: MIT
#pragma once

#include "controls/ChromeButton.h"
#include "model/Tool.h"

namespace pintalux {

/// One way to draw arrows, shown by an arrow drawn that way.
class ArrowStyleIcon : public ChromeButton {
    Q_OBJECT

public:
    ArrowStyleIcon(ArrowStyle style, QWidget* parent);

    ArrowStyle style() const { return shownStyle; }

    static constexpr QSize box{44, 36}; ///< points

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ArrowStyle shownStyle;
};

} // namespace pintalux
