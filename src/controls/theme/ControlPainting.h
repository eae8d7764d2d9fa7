// SPDX-License-Identifier: MIT
#pragma once

#include "controls/theme/Theme.h"
#include "platform/graphics/Font.h"

#include <QRectF>
#include <QString>
#include <QStringList>

#include <functional>

class QPainter;
class QWidget;

namespace pintalux {

/// What the drawn controls have in common. All lengths are points; painters are anti-aliased by the callee.
namespace ControlPainting {

/// How far the focus ring reaches beyond the shape that it surrounds.
inline constexpr double focusReach = 4;

/// The ring of the keyboard focus around a rounded shape.
void focusRing(const QRectF& shape, double radius, const Theme& theme, QPainter& painter);

/// The fill under the pointer, `amount` of the way in, or the one while pressed, in a rounded shape.
void hoverFill(
    const QRectF& shape, double radius, double amount, bool pressed, const Theme& theme, QPainter& painter);

/// One device pixel in the painter's user space.
double hairline(const QPainter& painter);

/// Fills a rounded shape and draws a border of `borderWidth` just within its edge.
void box(const QRectF& shape, double radius, const QBrush& fill, const QColor& border, double borderWidth,
    QPainter& painter);

/// The white knob of a switch or slider around `center`, with its ring and shadow.
struct Knob {
    double diameter;
    double ringAlpha;
    double shadowBlur;
    double shadowAlpha;
};
inline constexpr Knob switchKnob{16, 0, 2, 0.28};
inline constexpr Knob sliderKnob{16, 0.18, 3, 0.26};
inline constexpr Knob wedgeKnob{18, 0, 4, 0.32};
void knob(QPointF center, const Knob& look, QPainter& painter);

/// Paints a control; one that is disabled as a whole, so that what its parts hide stays hidden.
void control(const QWidget& widget, const std::function<void(QPainter&)>& paint, QPainter& painter);

/// What stands for no colour: light and dark cells of that side from the top left corner, inside of `rect`.
void checkerboard(const QRectF& rect, double cell, QPainter& painter);

/// A disc of colour to choose: inner edge, and when `chosen` (0 to 1) the ring in the brand's colour around a
/// gap.
void swatch(QPointF center, double diameter, const QColor& color, double chosen, const Theme& theme,
    QPainter& painter, double ringGap = 2);

/// The ring of all hues around the current colour, 20 across, on a ground of `card`.
void colorChooser(QPointF center, const QColor& current, const Theme& theme, QPainter& painter);

/// One line of text, centred on its cap height in `rect`; `alignment` is horizontal. Longer than `rect` it is
/// shortened in its middle.
void text(const QString& text, const Font& font, const QColor& color, const QRectF& rect,
    Qt::Alignment alignment, QPainter& painter);
double textWidth(const QString& text, const Font& font);
/// The lines of a text that breaks between words so as to be no wider; a word that is wider stays whole.
QStringList wrapped(const QString& text, const Font& font, double width);

} // namespace ControlPainting

} // namespace pintalux
