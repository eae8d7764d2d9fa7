// SPDX-License-Identifier: MIT
#pragma once

#include "controls/ChromeButton.h"
#include "model/Tool.h"

#include <QImage>

namespace pintalux {

/// A drawing instrument standing in the palette's tray, tip up and tinted with the current colour. It rises
/// when it is chosen.
class InstrumentView : public ChromeButton {
    Q_OBJECT

public:
    InstrumentView(Tool tool, QWidget* parent);

    Tool tool() const { return drawnTool; }
    void setTint(const QColor& color);
    /// The tray in the parent's points: the instrument is cut by its floor.
    void setTray(const QRectF& rect);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const QImage& picture();

    Tool drawnTool;
    QColor tint;
    QRectF tray;
    Fade rising;
    QImage drawn; ///< kept while tint, theme and ratio stay
    bool drawnDark = false;
};

} // namespace pintalux
