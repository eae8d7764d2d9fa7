// SPDX-License-Identifier: MIT
#include "editor/style/WedgeSlider.h"

#include "controls/theme/ControlPainting.h"
#include "controls/theme/FocusRing.h"
#include "controls/theme/Theme.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/PathData.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>

namespace pintalux {

namespace {

// Points.
constexpr QSize size{132, 24};
constexpr double firstX = 10; ///< of the knob's centre
constexpr double travel = 112;
constexpr double dotSize = 7;
constexpr QStringView wedge = u"M2 10.4L124 4C128.42 4 132 7.58 132 12 132 16.42 128.42 20 124 20L2 13.6"
                              "C1.12 13.6 .4 12.88 .4 12 .4 11.12 1.12 10.4 2 10.4Z";
constexpr int wheelNotch = 120;

} // namespace

WedgeSlider::WedgeSlider(const QString& name, StrokeRange limits, QWidget* parent)
    : QAbstractSlider(parent)
    , range(limits)
    , current(limits.lower)
{
    setRange(int(range.lower), int(range.upper));
    setFixedSize(WedgeSlider::sizeHint());
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(name);
    new FocusRing(this, Theme::trayRadius);
}

QSize WedgeSlider::sizeHint() const { return pintalux::size; }

void WedgeSlider::setPoints(double points)
{
    current = std::clamp(points, range.lower, range.upper);
    const QSignalBlocker quiet(this);
    setValue(int(std::lround(current)));
    update();
}

void WedgeSlider::choose(double points)
{
    const double before = current;
    setPoints(points);
    if (current != before)
        Q_EMIT pointsChanged(current);
}

/// Assistive technology sets the value itself.
void WedgeSlider::sliderChange(SliderChange change)
{
    QAbstractSlider::sliderChange(change);
    if (change == SliderValueChange && value() != int(std::lround(current)))
        choose(value());
}

double WedgeSlider::knobX() const
{
    return firstX + (current - range.lower) / (range.upper - range.lower) * travel;
}

void WedgeSlider::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto& theme = Theme::of(palette());
    const auto path = pathFromData(wedge);
    painter.fillPath(path, theme.track);
    painter.save();
    painter.setClipRect(QRectF(0, 0, knobX(), height()));
    painter.fillPath(path, Theme::brandGradient({0, 0, knobX(), double(height())}));
    painter.restore();
    const QPointF center(knobX(), height() / 2.0);
    ControlPainting::knob(center, ControlPainting::wedgeKnob, painter);
    const QRectF dot(center - QPointF(dotSize, dotSize) / 2, QSizeF(dotSize, dotSize));
    painter.fillPath(Draw::ellipse(dot), Theme::brandGradient(dot));
}

void WedgeSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const double x = event->position().x();
    const double knobRadius = ControlPainting::wedgeKnob.diameter / 2;
    grabOffset = std::abs(x - knobX()) <= knobRadius ? x - knobX() : 0;
    setSliderDown(true);
    mouseMoveEvent(event);
}

void WedgeSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (!isSliderDown())
        return;
    const double part = (event->position().x() - grabOffset - firstX) / travel;
    choose(range.lower + part * (range.upper - range.lower));
}

void WedgeSlider::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        setSliderDown(false);
}

void WedgeSlider::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Plus:
        return choose(std::floor(current) + 1);
    case Qt::Key_Left:
    case Qt::Key_Down:
    case Qt::Key_Minus:
        return choose(std::ceil(current) - 1);
    case Qt::Key_Home:
        return choose(range.lower);
    case Qt::Key_End:
        return choose(range.upper);
    default:
        event->ignore();
    }
}

void WedgeSlider::wheelEvent(QWheelEvent* event)
{
    wheelAngle += event->angleDelta().y();
    const int notches = wheelAngle / wheelNotch;
    wheelAngle -= notches * wheelNotch;
    if (notches != 0)
        choose(current + notches);
    event->accept();
}

} // namespace pintalux
