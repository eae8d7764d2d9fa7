// SPDX-License-Identifier: MIT
#include "controls/theme/FocusRing.h"

#include "controls/theme/ControlPainting.h"
#include "platform/graphics/Geometry.h"

#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QPainter>

namespace pintalux {

namespace {

/// Watches all input of the application for which of keyboard and mouse was used last.
class InputWatch : public QObject {
    Q_OBJECT

public:
    static InputWatch& shared()
    {
        static QPointer<InputWatch> watch;
        if (!watch)
            watch = new InputWatch; // the application owns it
        return *watch;
    }

    bool keyboard = false;

Q_SIGNALS:
    void changed();

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::KeyPress:
            if (!isModifier(static_cast<QKeyEvent*>(event)->key()))
                set(true);
            break;
        case QEvent::MouseButtonPress:
        case QEvent::TabletPress:
        case QEvent::TouchBegin:
            set(false);
            break;
        default:
            break;
        }
        return false;
    }

private:
    InputWatch()
        : QObject(qApp)
    {
        qApp->installEventFilter(this);
    }

    static bool isModifier(int key) { return key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock; }

    void set(bool used)
    {
        if (std::exchange(keyboard, used) != used)
            Q_EMIT changed();
    }
};

} // namespace

bool isKeyboardInUse() { return InputWatch::shared().keyboard; }

class FocusRing::Ring : public QWidget {
public:
    Ring(QWidget* parent)
        : QWidget(parent)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
    }

    QRectF shape; ///< of the control, in this widget's coordinates
    double radius = 0;

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        ControlPainting::focusRing(shape, radius, Theme::of(palette()), painter);
    }
};

FocusRing::FocusRing(QWidget* focused, double shapeRadius)
    : QObject(focused)
    , control(focused)
    , radius(shapeRadius)
{
    control->installEventFilter(this);
    connect(&InputWatch::shared(), &InputWatch::changed, this, &FocusRing::follow);
}

FocusRing::~FocusRing() { delete ring; }

void FocusRing::setShape(std::function<QRectF()> visibleShape)
{
    shape = std::move(visibleShape);
    place();
}

void FocusRing::setRadius(double shapeRadius)
{
    radius = shapeRadius;
    place();
}

bool FocusRing::eventFilter(QObject*, QEvent* event)
{
    switch (event->type()) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::ParentChange:
        follow();
        break;
    case QEvent::Move:
    case QEvent::Resize:
        place();
        break;
    case QEvent::ZOrderChange:
        if (ring)
            ring->raise();
        break;
    default:
        break;
    }
    return false;
}

void FocusRing::follow()
{
    const bool shown = control->hasFocus() && control->isVisible() && isKeyboardInUse()
        && control->parentWidget() && !control->isWindow();
    const bool stays = shown && ring && ring->parentWidget() == control->parentWidget();
    if (stays)
        return;
    auto* former = ring.data();
    ring.clear();
    delete former;
    if (!shown)
        return;
    ring = new Ring(control->parentWidget());
    place();
    ring->show();
    ring->raise();
}

void FocusRing::place()
{
    if (!ring)
        return;
    const auto whole = shape ? shape() : QRectF(control->rect());
    const auto around = expanded(whole, ControlPainting::focusReach).translated(control->pos());
    ring->setGeometry(around.toAlignedRect());
    ring->shape = whole.translated(control->pos() - ring->pos());
    ring->radius = radius;
    ring->update();
}

} // namespace pintalux

#include "FocusRing.moc"
