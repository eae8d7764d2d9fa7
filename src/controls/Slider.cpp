// SPDX-License-Identifier: MIT
#include "controls/Slider.h"

#include "controls/theme/ControlPainting.h"
#include "controls/theme/FocusRing.h"
#include "platform/graphics/Draw.h"

#include <QMouseEvent>
#include <QPainter>

namespace pintalux {

namespace {

constexpr double trackHeight = 4;
constexpr int barHeight = 24;
constexpr double knobRadius = 8;

} // namespace

Slider::Slider(const QString& name, int minimum, int maximum, QWidget* parent)
    : QSlider(Qt::Horizontal, parent)
{
    setRange(minimum, maximum);
    setAccessibleName(name);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto* ring = new FocusRing(this, knobRadius);
    ring->setShape([this] {
        return QRectF(knobX() - knobRadius, height() / 2.0 - knobRadius, 2 * knobRadius, 2 * knobRadius);
    });
    connect(this, &QAbstractSlider::valueChanged, ring, &FocusRing::place);
    connect(this, &QAbstractSlider::rangeChanged, ring, &FocusRing::place);
}

QSize Slider::sizeHint() const { return {190, barHeight}; }

QSize Slider::minimumSizeHint() const { return {60, barHeight}; }

double Slider::knobX() const
{
    const double span = std::max(1, maximum() - minimum());
    return knobRadius + (sliderPosition() - minimum()) / span * (width() - 2 * knobRadius);
}

void Slider::moveKnobTo(double x)
{
    const double way = std::max(1.0, width() - 2 * knobRadius);
    const double share = std::clamp((x - knobRadius) / way, 0.0, 1.0);
    setSliderPosition(minimum() + int(std::lround(share * (maximum() - minimum()))));
}

void Slider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return event->ignore();
    setSliderDown(true);
    const double x = event->position().x();
    grabOffset = std::abs(x - knobX()) <= knobRadius ? x - knobX() : 0;
    moveKnobTo(x - grabOffset);
    event->accept();
}

void Slider::mouseMoveEvent(QMouseEvent* event)
{
    if (isSliderDown())
        moveKnobTo(event->position().x() - grabOffset);
}

void Slider::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        setSliderDown(false);
}

void Slider::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QSlider::wheelEvent(event);
    else
        event->ignore();
}

void Slider::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    ControlPainting::control(
        *this, [this](QPainter& on) { paint(on); }, painter);
}

void Slider::paint(QPainter& painter) const
{
    const auto& theme = Theme::of(palette());
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track(0, (height() - trackHeight) / 2, width(), trackHeight);
    const double radius = trackHeight / 2;
    painter.fillPath(Draw::roundedRect(track, radius), theme.track);
    auto filled = track;
    filled.setRight(knobX());
    painter.fillPath(Draw::roundedRect(filled, radius), Theme::brandGradient(filled));
    ControlPainting::knob({knobX(), track.center().y()}, ControlPainting::sliderKnob, painter);
}

} // namespace pintalux
