// SPDX-License-Identifier: MIT
#include "controls/ChromeButton.h"

#include "controls/theme/FocusRing.h"
#include "controls/theme/Theme.h"
#include "platform/desktop/KeyLabel.h"
#include "platform/graphics/Color.h"

#include <QKeyEvent>
#include <QPainter>

namespace pintalux {

ChromeButton::ChromeButton(const QString& help, double cornerRadius, QWidget* parent)
    : QAbstractButton(parent)
    , radius(cornerRadius)
    , hovering(this)
    , marking(this, Theme::toggleMilliseconds, Theme::toggleMilliseconds, QEasingCurve::OutCubic)
    , ring(new FocusRing(this, cornerRadius))
{
    ring->setShape([this] { return focusShape(); });
    setFocusPolicy(Qt::TabFocus);
    setHelp(help);
}

void ChromeButton::setFocusRadius(double cornerRadius) { ring->setRadius(cornerRadius); }

void ChromeButton::setHelp(const QString& help)
{
    const auto text = KeyLabel::text(help);
    setToolTip(text);
    setAccessibleName(text);
}

void ChromeButton::setOpen(bool on)
{
    open = on;
    update();
}

void ChromeButton::setMarked(bool marked)
{
    setCheckable(true);
    setChecked(marked);
    marking.setOn(marked);
}

const Theme& ChromeButton::theme() const { return Theme::of(palette()); }

void ChromeButton::fillForPointer(QPainter& painter, const QPainterPath& shape) const
{
    if (looksPressed())
        painter.fillPath(shape, theme().press);
    else if (hoverAmount() > 0)
        painter.fillPath(shape, faded(theme().hover, hoverAmount()));
}

void ChromeButton::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        event->ignore(); // the group moves the focus
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat())
            click();
        break;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

} // namespace pintalux
