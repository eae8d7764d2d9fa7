// SPDX-License-Identifier: MIT
#pragma once

#include "controls/theme/Fade.h"
#include "editor/state/Style.h"

#include <QAbstractSlider>

namespace pintalux {

/// A slider for stroke widths, shaped like a stroke that grows.
///
/// The knob moves continuously while it is dragged; the arrow keys and the wheel go by one. `sliderPressed`
/// and `sliderReleased` enclose each drag. For assistive technology it is a slider of whole points.
class WedgeSlider : public QAbstractSlider {
    Q_OBJECT

public:
    WedgeSlider(const QString& name, StrokeRange range, QWidget* parent);

    double points() const { return current; }
    /// Shows a width, as near as the range allows, without announcing it.
    void setPoints(double points);

    QSize sizeHint() const override;

Q_SIGNALS:
    /// A person chose this width.
    void pointsChanged(double points);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void sliderChange(SliderChange change) override;

private:
    double knobX() const;
    void choose(double points);

    StrokeRange range;
    double current;
    double grabOffset = 0; ///< from the knob's centre to where it was taken
    int wheelAngle = 0;    ///< turned but not used, in eighths of a degree
};

} // namespace pintalux
