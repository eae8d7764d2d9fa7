#include "controls/FloatingCard.h"

#include "app/Theme.h"
#include "render/Draw.h"

#include <QPainter>

namespace pintalux {

FloatingCard::FloatingCard(double cornerRadius, QWidget* parent)
    : QWidget(parent)
    , radius(cornerRadius)
{
}

FloatingCard::~FloatingCard() = default;

void FloatingCard::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(Draw::roundedRect(rect(), radius), Theme::of(palette()).card);
}

} // namespace pintalux
