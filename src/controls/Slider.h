// SPDX-License-Identifier: MIT
#pragma once

#include <QSlider>

namespace pintalux {

/// A horizontal slider whose filled part shows how much.
///
/// A press anywhere takes the knob there and drags on; `sliderPressed` and `sliderReleased` enclose each
/// drag. The wheel moves it only while it has the focus, so that scrolling a form changes nothing by
/// accident.
class Slider : public QSlider {
    Q_OBJECT

public:
    /// `name` is what assistive technology calls it.
    Slider(const QString& name, int minimum, int maximum, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// Where the knob's centre stands; points of the widget.
    double knobX() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void paint(QPainter& painter) const;
    void moveKnobTo(double x);

    double grabOffset = 0; ///< from the knob's centre to where it was taken
};

} // namespace pintalux
