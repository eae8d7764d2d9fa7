// SPDX-License-Identifier: MIT
#pragma once

#include "controls/ChromeButton.h"
#include "model/Palette.h"

#include <optional>

namespace pintalux {

/// A background of the decorative frame to choose; a checkerboard for none.
class GradientSwatch : public ChromeButton {
    Q_OBJECT

public:
    GradientSwatch(const std::optional<Palette::Gradient>& gradient, const QString& name, QWidget* parent);

    /// The index that the settings store; negative for no background.
    int index() const { return gradient ? gradient->id : -1; }

    /// Space around the swatch for the ring of the chosen one; points.
    static constexpr int reach = 4;

protected:
    void paintEvent(QPaintEvent* event) override;
    QRectF focusShape() const override;

private:
    void paint(QPainter& painter) const;
    void paintGround(const QRectF& chip, QPainter& painter) const;

    std::optional<Palette::Gradient> gradient;
};

} // namespace pintalux
