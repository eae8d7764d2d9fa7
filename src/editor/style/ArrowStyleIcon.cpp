// SPDX-License-Identifier: MIT
#include "editor/style/ArrowStyleIcon.h"

#include "controls/theme/ArrowGlyph.h"
#include "controls/theme/Theme.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"

#include <QPainter>

namespace pintalux {

namespace {

constexpr double ringWidth = 1.5;

} // namespace

ArrowStyleIcon::ArrowStyleIcon(ArrowStyle style, QWidget* parent)
    : ChromeButton(title(style), Theme::toolRadius, parent)
    , shownStyle(style)
{
    setFixedSize(box);
}

void ArrowStyleIcon::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF whole(rect());
    const auto path = Draw::roundedRect(whole, cornerRadius());
    const double chosen = markedAmount();
    if (chosen > 0) {
        painter.fillPath(path, faded(theme().selected, chosen));
        painter.setPen(QPen(faded(theme().brand, chosen), ringWidth));
        painter.drawPath(Draw::roundedRect(expanded(whole, -ringWidth / 2), cornerRadius() - ringWidth / 2));
        painter.setPen(Qt::NoPen);
    }
    fillForPointer(painter, path);
    drawArrowGlyph(shownStyle, whole, mixed(theme().icon, theme().onSelected, chosen), painter);
}

} // namespace pintalux
