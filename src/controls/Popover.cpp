// SPDX-License-Identifier: MIT
#include "controls/Popover.h"

#include "controls/theme/Elevation.h"
#include "controls/theme/FocusRing.h"
#include "controls/theme/Theme.h"
#include "platform/graphics/Draw.h"
#include "platform/windowing/Compositor.h"
#include "platform/windowing/VisibleFrame.h"

#include <QAbstractButton>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

namespace pintalux {

namespace {

constexpr int gap = 6;
constexpr int slide = 4;

/// What a popover looked like, fading out where it was. The popover itself goes at once, so that it does not
/// hold the mouse and the keyboard meanwhile.
class FadingPicture : public QWidget {
public:
    FadingPicture(const QPixmap& lookedLike, QPoint screenPoint)
        : QWidget(nullptr,
            Qt::ToolTip | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::WindowStaysOnTopHint
                | Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput | Qt::NoDropShadowWindowHint)
        , picture(lookedLike)
    {
        setAttribute(Qt::WA_TranslucentBackground);
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_DeleteOnClose);
        setGeometry(QRect(screenPoint, picture.deviceIndependentSize().toSize()));
        animation.setStartValue(1.0);
        animation.setEndValue(0.0);
        animation.setDuration(Theme::popoverCloseMilliseconds);
        animation.setEasingCurve(QEasingCurve::OutCubic);
        connect(&animation, &QVariantAnimation::valueChanged, this, [this] { update(); });
        connect(&animation, &QVariantAnimation::finished, this, &QWidget::close);
        disableCompositorShadow(*this);
        show();
        animation.start();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setOpacity(animation.currentValue().toDouble());
        painter.drawPixmap(0, 0, picture);
    }

private:
    QPixmap picture;
    QVariantAnimation animation;
};

} // namespace

Popover::Popover(QWidget* shownContent, QWidget* parent)
    : QWidget(parent, Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint)
    , content(shownContent)
    , translucent(hasCompositor())
{
    setAttribute(Qt::WA_TranslucentBackground, translucent);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin(), margin(), margin(), margin());
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(content);
    animation.setDuration(Theme::popoverOpenMilliseconds);
    animation.setEasingCurve(QEasingCurve::OutCubic);
    animation.setStartValue(0.0);
    animation.setEndValue(1.0);
}

int Popover::margin() const { return translucent ? int(Theme::shadowMargin) : 0; }

QRect Popover::sheet() const { return rect().adjusted(margin(), margin(), -margin(), -margin()); }

QRect Popover::place(QSize sheet, const QRect& button, const QRect& visible)
{
    const int below = button.y() + button.height() + gap;
    const int above = button.y() - gap - sheet.height();
    const bool fitsBelow = below + sheet.height() <= visible.y() + visible.height();
    QRect placed(QPoint(button.x() + (button.width() - sheet.width()) / 2,
                     fitsBelow || above < visible.y() ? below : above),
        sheet);
    const auto kept = [](int from, int length, int start, int room) {
        return std::max(start, std::min(from, start + room - length));
    };
    placed.moveLeft(kept(placed.x(), sheet.width(), visible.x(), visible.width()));
    placed.moveTop(kept(placed.y(), sheet.height(), visible.y(), visible.height()));
    return placed;
}

void Popover::popUp(QWidget* button)
{
    opener = button;
    button->window()->installEventFilter(this);
    setAttribute(Qt::WA_NoMouseReplay, false);
    layout()->activate();
    adjustSize();
    winId();
    disableCompositorShadow(*this);
    if (auto* owner = button->window()->windowHandle(); owner && windowHandle())
        windowHandle()->setTransientParent(owner);
    reposition();
    slideIn();
    show();
    raise();
    if (auto* pressed = qobject_cast<QAbstractButton*>(button))
        pressed->setDown(true);
    setFocus(Qt::PopupFocusReason);
    if (isKeyboardInUse())
        focusNextPrevChild(true);
}

void Popover::reposition()
{
    if (!opener)
        return;
    const auto* screen = opener->screen();
    const int inside = int(Theme::screenMargin);
    QRect button(opener->mapToGlobal(QPoint(0, 0)), opener->size());
    if (clearOf) {
        button.moveTop(clearOf->mapToGlobal(QPoint(0, 0)).y());
        button.setHeight(clearOf->height());
    }
    const auto placed
        = place(sheet().size(), button, visibleFrame(*screen).adjusted(inside, inside, -inside, -inside));
    home = placed.topLeft() - QPoint(margin(), margin());
    move(home);
}

void Popover::slideIn()
{
    animation.stop();
    animation.disconnect(this);
    if (!translucent || prefersReducedMotion())
        return setWindowOpacity(1);
    const bool below = opener && home.y() + margin() >= opener->mapToGlobal(QPoint(0, 0)).y();
    connect(&animation, &QVariantAnimation::valueChanged, this, [this, below](const QVariant& value) {
        const double arrived = value.toDouble();
        setWindowOpacity(arrived);
        move(home + QPoint(0, int(std::lround((1 - arrived) * (below ? -slide : slide)))));
    });
    setWindowOpacity(0);
    animation.start();
}

void Popover::resizeEvent(QResizeEvent* event)
{
    if (!translucent)
        cutToSheet(*this, rect(), Theme::popoverRadius);
    if (isVisible())
        reposition();
    QWidget::resizeEvent(event);
}

/// The content shows what belongs to the window that it was opened from.
bool Popover::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Hide && opener && watched == opener->window())
        close();
    return QWidget::eventFilter(watched, event);
}

void Popover::paintEvent(QPaintEvent*)
{
    const auto& theme = Theme::of(palette());
    const QRectF shape(sheet());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!translucent) {
        painter.fillRect(rect(), theme.card);
        return Elevation::drawInnerEdge(shape, Theme::popoverRadius, theme, painter);
    }
    Elevation::drawShadow(Elevation::Level::popover, shape, Theme::popoverRadius, theme, painter);
    painter.fillPath(Draw::roundedRect(shape, Theme::popoverRadius), theme.card);
    Elevation::drawEdge(shape, Theme::popoverRadius, theme, painter);
}

void Popover::mousePressEvent(QMouseEvent* event)
{
    if (sheet().contains(event->position().toPoint()))
        return;
    // Where the display system hands a press outside on to what is there, the button would open it again.
    const auto pressed = event->globalPosition().toPoint();
    if (opener && opener->rect().contains(opener->mapFromGlobal(pressed)))
        setAttribute(Qt::WA_NoMouseReplay);
    close();
}

void Popover::closeEvent(QCloseEvent* event)
{
    leaveFadingPicture();
    QWidget::closeEvent(event);
}

void Popover::leaveFadingPicture()
{
    if (translucent && isVisible() && windowOpacity() > 0.5 && !prefersReducedMotion())
        new FadingPicture(grab(), pos()); // goes by itself
}

void Popover::hideEvent(QHideEvent* event)
{
    animation.stop();
    if (auto* pressed = qobject_cast<QAbstractButton*>(opener.data()))
        pressed->setDown(false);
    QWidget::hideEvent(event);
    Q_EMIT closed();
}

} // namespace pintalux
