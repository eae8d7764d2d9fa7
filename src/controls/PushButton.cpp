// SPDX-License-Identifier: MIT
#include "controls/PushButton.h"

#include "controls/Menu.h"
#include "controls/theme/ControlPainting.h"
#include "controls/theme/FocusRing.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/GraphicsContext.h"
#include "platform/graphics/Symbol.h"

#include <QKeyEvent>
#include <QPainter>

namespace pintalux {

namespace {

constexpr double symbolSize = 16;
constexpr double symbolGap = 6;
constexpr double chevronSize = 14;
constexpr double chevronGap = 6;

} // namespace

/// What the kinds differ in.
struct PushButton::Look {
    double padding;
    Font font;
    QColor ink;
};

PushButton::PushButton(const QString& text, Kind buttonKind, QWidget* parent)
    : QAbstractButton(parent)
    , kind(buttonKind)
    , radius(Theme::controlRadius)
    , hover(this)
    , ring(new FocusRing(this, Theme::controlRadius))
{
    setText(text);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

PushButton::~PushButton() = default;

void PushButton::setSymbol(const QString& name)
{
    setPicture([name](QPainter& painter, const QRectF& rect, const QColor& ink) {
        Symbol::draw(name, rect, ink, painter);
    });
}

void PushButton::setPicture(Picture drawn)
{
    picture = std::move(drawn);
    updateGeometry();
    update();
}

void PushButton::setMenu(std::unique_ptr<Menu> menu)
{
    popUp = std::move(menu);
    connect(this, &QAbstractButton::clicked, popUp.get(), [this] { openMenu(); });
    connect(popUp.get(), &QMenu::aboutToHide, this, [this] { setDown(false); });
    updateGeometry();
}

void PushButton::openMenu()
{
    setDown(true);
    popUp->popUpBeside({mapToGlobal(QPoint(0, 0)), size()});
    if (isKeyboardInUse() && !popUp->actions().isEmpty())
        popUp->setActiveAction(popUp->actions().front());
}

void PushButton::setButtonHeight(int height)
{
    buttonHeight = height;
    updateGeometry();
}

void PushButton::setRadius(double cornerRadius)
{
    radius = cornerRadius;
    ring->setRadius(radius);
    update();
}

PushButton::Look PushButton::look() const
{
    const auto& theme = Theme::of(palette());
    const bool plain = kind == Kind::bordered;
    return {kind == Kind::gradient ? 14.0 : 12.0,
        Draw::systemFont(13, plain ? FontWeight::medium : FontWeight::semibold),
        !isEnabled() && plain ? theme.disabled
            : plain           ? theme.text
                              : QColor(Qt::white)};
}

QSize PushButton::sizeHint() const
{
    const auto [padding, font, ink] = look();
    double width = 2 * padding + ControlPainting::textWidth(text(), font);
    if (picture)
        width += symbolSize + (text().isEmpty() ? 0 : symbolGap);
    if (popUp)
        width += chevronGap + chevronSize;
    return {int(std::ceil(width)), buttonHeight};
}

void PushButton::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void PushButton::paintGround(const QRectF& shape, QPainter& painter) const
{
    const auto& theme = Theme::of(palette());
    if (kind != Kind::bordered)
        return paintBrandGround(shape, painter);
    const auto border = faded(theme.buttonBorder(), isEnabled() ? 1 : 0.6);
    ControlPainting::box(shape, radius, theme.buttonFill(), border, 1, painter);
    ControlPainting::hoverFill(shape, radius, hover.amount(), isDown(), theme, painter);
}

void PushButton::paintBrandGround(const QRectF& shape, QPainter& painter) const
{
    const auto outline = Draw::roundedRect(shape, radius);
    if (!isEnabled())
        painter.setOpacity(Theme::disabledOpacity);
    if (kind == Kind::gradient)
        painter.fillPath(outline, Theme::brandGradient(shape));
    else
        painter.fillPath(outline, Theme::of(palette()).brand);
    painter.fillPath(outline, withAlpha(Qt::white, 0.10 * hover.amount()));
    if (kind == Kind::gradient || isDown())
        painter.fillPath(outline, Theme::gradientVeil(shape, isDown()));
    // The light on the upper edge.
    painter.save();
    painter.setClipPath(outline);
    painter.setPen(QPen(withAlpha(Qt::white, 0.22), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(Draw::roundedRect(shape.adjusted(-0.5, 0.5, 0.5, radius * 2), radius));
    painter.restore();
}

void PushButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF shape(rect());
    paintGround(shape, painter);
    const auto [padding, font, ink] = look();
    const double side = (shape.width() - (sizeHint().width() - 2 * padding)) / 2;
    double left = side;
    if (picture) {
        picture(painter, {left, shape.center().y() - symbolSize / 2, symbolSize, symbolSize}, ink);
        left += symbolSize + symbolGap;
    }
    double right = shape.right() - side;
    if (popUp) {
        right -= chevronSize;
        Symbol::draw(u"chevron", {right, shape.center().y() - chevronSize / 2, chevronSize, chevronSize}, ink,
            painter);
        right -= chevronGap;
    }
    if (!text().isEmpty())
        ControlPainting::text(
            text(), font, ink, {left, 0, right - left, shape.height()}, Qt::AlignLeft, painter);
}

} // namespace pintalux
