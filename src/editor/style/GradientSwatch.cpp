// SPDX-License-Identifier: MIT
#include "editor/style/GradientSwatch.h"

#include "controls/theme/ControlPainting.h"
#include "controls/theme/Theme.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "render/Renderer.h"

#include <QPainter>

namespace pintalux {

namespace {

// Points.
constexpr double ringWidth = 2;
constexpr double checkerCell = 6;

} // namespace

GradientSwatch::GradientSwatch(
    const std::optional<Palette::Gradient>& shown, const QString& name, QWidget* parent)
    : ChromeButton(name, Theme::controlRadius, parent)
    , gradient(shown)
{
}

QRectF GradientSwatch::focusShape() const { return expanded(rect(), -reach); }

void GradientSwatch::paintGround(const QRectF& chip, QPainter& painter) const
{
    painter.save();
    painter.setClipPath(Draw::roundedRect(chip, cornerRadius()));
    GraphicsContext context(painter);
    if (gradient)
        Renderer::drawGradient(*gradient, chip, context);
    else
        ControlPainting::checkerboard(chip, checkerCell, painter);
    painter.restore();
}

void GradientSwatch::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    ControlPainting::control(
        *this, [this](QPainter& on) { paint(on); }, painter);
}

void GradientSwatch::paint(QPainter& painter) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    const auto chip = focusShape();
    paintGround(chip, painter);
    fillForPointer(painter, Draw::roundedRect(chip, cornerRadius()));
    painter.setPen(QPen(theme().swatchEdge(), 1));
    painter.drawPath(Draw::roundedRect(expanded(chip, -0.5), cornerRadius() - 0.5));
    if (markedAmount() > 0) {
        const double middle = ringWidth / 2;
        painter.setPen(QPen(faded(theme().brand, markedAmount()), ringWidth));
        painter.drawPath(Draw::roundedRect(expanded(rect(), -middle), cornerRadius() + reach - middle));
    }
}

} // namespace pintalux
