// SPDX-License-Identifier: MIT
#include "controls/FloatingCard.h"

#include "controls/theme/Elevation.h"
#include "controls/theme/Theme.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"

#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QPainter>

namespace pintalux {

namespace {

constexpr double sheetOpacity = 0.97;

/// Of two widgets with the same parent: siblings are painted in the order in which the parent has them.
bool isBelow(const QWidget& lower, const QWidget& upper)
{
    const auto& siblings = lower.parentWidget()->children();
    return siblings.indexOf(&lower) < siblings.indexOf(&upper);
}

} // namespace

/// The shadow and the outer edge of the sheet.
class FloatingCard::ShadowWidget : public QWidget {
public:
    explicit ShadowWidget(QWidget* parent)
        : QWidget(parent)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
    }

    double radius = 0;
    double opacity = 1;

protected:
    void paintEvent(QPaintEvent*) override
    {
        const double margin = Theme::shadowMargin;
        const auto sheet = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
        const auto& theme = Theme::of(palette());
        QPainter painter(this);
        painter.setOpacity(opacity);
        Elevation::drawShadow(Elevation::Level::floating, sheet, radius, theme, painter);
        Elevation::drawEdge(sheet, radius, theme, painter);
    }
};

FloatingCard::FloatingCard(double cornerRadius, QWidget* parent)
    : QWidget(parent)
    , radius(cornerRadius)
    , fade(this, Theme::paletteFadeMilliseconds, Theme::paletteFadeMilliseconds, QEasingCurve::OutCubic)
{
    connect(&fade, &Glide::changed, this, [this] { setOpacity(fade.amount()); });
    connect(&fade, &Glide::finished, this, [this] {
        setAttribute(Qt::WA_TransparentForMouseEvents, false);
        setVisible(fade.isOn());
        setOpacity(1);
    });
}

FloatingCard::~FloatingCard() { delete shadow; }

void FloatingCard::setShown(bool shown)
{
    if (shown == (fade.isRunning() ? fade.isOn() : !isHidden()))
        return;
    if (!fade.isRunning())
        fade.jump(!shown);
    setAttribute(Qt::WA_TransparentForMouseEvents, !shown);
    setVisible(true);
    fade.setOn(shown);
}

void FloatingCard::setOpacity(double opacity)
{
    if (opacity >= 1) {
        setGraphicsEffect(nullptr); // deletes it
        effect = nullptr;
    } else if (!effect) {
        effect = new QGraphicsOpacityEffect(this);
        setGraphicsEffect(effect);
    }
    if (effect)
        effect->setOpacity(opacity);
    if (shadow) {
        shadow->opacity = opacity;
        shadow->update();
    }
}

bool FloatingCard::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::ParentChange:
        delete std::exchange(shadow, nullptr).data();
        [[fallthrough]];
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::ShowToParent:
    case QEvent::HideToParent:
    case QEvent::ZOrderChange:
        placeShadow();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void FloatingCard::placeShadow()
{
    if (!parentWidget())
        return;
    if (!shadow) {
        if (isHidden())
            return;
        shadow = new ShadowWidget(parentWidget());
        shadow->radius = radius;
    }
    const int margin = int(Theme::shadowMargin);
    shadow->setGeometry(geometry().adjusted(-margin, -margin, margin, margin));
    shadow->setVisible(!isHidden());
    // No sheet lies in the shadow of another.
    shadow->stackUnder(this);
    for (auto* sibling : parentWidget()->findChildren<FloatingCard*>(QString(), Qt::FindDirectChildrenOnly))
        if (isBelow(*sibling, *shadow))
            shadow->stackUnder(sibling);
}

void FloatingCard::paintEvent(QPaintEvent*)
{
    const auto& theme = Theme::of(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(Draw::roundedRect(rect(), radius), withAlpha(theme.card, sheetOpacity));
    // The part of the edge that lies on the sheet; the rest belongs to the shadow beneath.
    if (theme.dark)
        Elevation::drawInnerEdge(QRectF(rect()), radius, theme, painter);
}

} // namespace pintalux
