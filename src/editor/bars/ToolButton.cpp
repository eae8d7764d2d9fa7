// SPDX-License-Identifier: MIT
#include "editor/bars/ToolButton.h"

#include "controls/theme/Theme.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/Symbol.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr double symbolSize = 20;

} // namespace

ToolButton::ToolButton(Tool tool, QWidget* parent)
    : ChromeButton(helpOf(tool), Theme::toolRadius, parent)
    , chosenTool(tool)
{
}

QString ToolButton::helpOf(Tool tool)
{
    return u"%1 (%2)"_s.arg(title(tool), QChar(pintalux::shortcut(tool)).toUpper());
}

void ToolButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF whole(rect());
    const auto path = Draw::roundedRect(whole, cornerRadius());
    const double chosen = markedAmount();
    if (chosen < 1)
        fillForPointer(painter, path);
    if (chosen > 0) {
        painter.setOpacity(chosen);
        painter.fillPath(path, Theme::brandGradient(whole));
        painter.setClipPath(path);
        painter.setPen(QPen(withAlpha(Qt::white, 0.20), 1));
        painter.drawPath(Draw::roundedRect(whole.adjusted(-1, 0.5, 1, 4), cornerRadius()));
        painter.setClipping(false);
        painter.setOpacity(1);
    }
    QRectF place(0, 0, symbolSize, symbolSize);
    place.moveCenter(whole.center());
    Symbol::draw(symbol(chosenTool), place,
        isEnabled() ? mixed(theme().icon, Qt::white, chosen) : theme().disabled, painter);
}

} // namespace pintalux
