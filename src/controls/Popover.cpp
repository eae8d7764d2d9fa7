// SPDX-License-Identifier: MIT
#include "controls/Popover.h"

#include "controls/theme/FocusRing.h"
#include "controls/theme/Theme.h"

#include <QAbstractButton>
#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

namespace pintalux {

namespace {

constexpr int gap = 6;
constexpr int slide = 4;
constexpr Sheet::Form popoverForm{.radius = Theme::popoverRadius, .margin = int(Theme::shadowMargin)};

/// What a popover looked like, fading out where it was. The popover itself goes at once, so that it does not
/// hold the mouse and the keyboard meanwhile.
class FadingPicture : public QWidget {
public:
    FadingPicture(const QPixmap& lookedLike, QPoint screenPoint)
        : picture(lookedLike)
        , sheet(*this, WindowRole::tip, popoverForm)
        , gone(this, Theme::popoverCloseMilliseconds, 0, QEasingCurve::OutCubic)
    {
        setAttribute(Qt::WA_DeleteOnClose);
        setGeometry(QRect(screenPoint, picture.deviceIndependentSize().toSize()));
        connect(&gone, &Glide::finished, this, &QWidget::close);
        connect(&sheet, &Sheet::changed, this, &QWidget::close);
        show();
        gone.setOn(true);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setOpacity(1 - gone.amount());
        painter.drawPixmap(0, 0, picture);
    }

private:
    QPixmap picture;
    Sheet sheet;
    Fade gone;
};

} // namespace

Popover::Popover(QWidget* shownContent, QWidget* parent)
    : QWidget(parent, Qt::Popup)
    , content(shownContent)
    , sheet(*this, WindowRole::popup, popoverForm)
    , arrival(this, Theme::popoverOpenMilliseconds, 0, QEasingCurve::OutCubic)
{
    auto* layout = new QVBoxLayout(this);
    const int margin = popoverForm.margin;
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(content);
    connect(&arrival, &Glide::changed, this, &Popover::arrive);
    connect(&sheet, &Sheet::changed, this, &Popover::arrive);
}

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
    if (auto* owner = button->window()->windowHandle(); owner && windowHandle())
        windowHandle()->setTransientParent(owner);
    reposition();
    arrival.jump(false);
    show();
    raise();
    arrival.setOn(true, !sheet.isTranslucent());
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
    const auto placed = place(sheet.rect().size(), button,
        WindowSystem::current().visibleFrame(*screen).adjusted(inside, inside, -inside, -inside));
    home = placed.topLeft() - sheet.rect().topLeft();
    isBelow = placed.y() >= opener->mapToGlobal(QPoint(0, 0)).y();
    arrive();
}

/// Slides away from the button while it becomes opaque.
void Popover::arrive()
{
    const double arrived = sheet.isTranslucent() ? arrival.amount() : 1;
    setWindowOpacity(arrived);
    move(home + QPoint(0, int(std::lround((1 - arrived) * (isBelow ? -slide : slide)))));
}

void Popover::resizeEvent(QResizeEvent* event)
{
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
    QPainter painter(this);
    sheet.paint(Elevation::Level::popover, Theme::of(palette()).card, painter);
}

void Popover::keyPressEvent(QKeyEvent* event)
{
    const auto* typing = focusWidget();
    auto* window = opener ? opener->window() : nullptr;
    const bool isText = typing && typing->testAttribute(Qt::WA_InputMethodEnabled);
    if (event->key() == Qt::Key_Escape || !window || isText)
        return QWidget::keyPressEvent(event);
    // The toolkit gives shortcuts to the window in front alone.
    const QKeySequence pressed(event->keyCombination());
    const auto rows = window->findChildren<QAction*>();
    const auto row = std::ranges::find_if(
        rows, [&](const QAction* action) { return action->shortcuts().contains(pressed); });
    if (row != rows.end())
        (*row)->trigger();
    else if (auto* target = window->focusWidget())
        QCoreApplication::sendEvent(target, event);
}

void Popover::mousePressEvent(QMouseEvent* event)
{
    if (sheet.rect().contains(event->position().toPoint()))
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
    if (sheet.isTranslucent() && isVisible() && windowOpacity() > 0.5 && !prefersReducedMotion())
        new FadingPicture(grab(), pos()); // goes by itself
}

void Popover::hideEvent(QHideEvent* event)
{
    if (auto* pressed = qobject_cast<QAbstractButton*>(opener.data()))
        pressed->setDown(false);
    QWidget::hideEvent(event);
    Q_EMIT closed();
}

} // namespace pintalux
