// SPDX-License-Identifier: MIT
#include "editor/style/KeyboardGroup.h"

#include "editor/canvas/CanvasView.h"

#include <QApplication>
#include <QKeyEvent>

namespace pintalux {

namespace {

QList<QWidget*> reachable(QWidget& group)
{
    auto controls = group.findChildren<QWidget*>();
    controls.removeIf([&](const QWidget* control) {
        return !(control->focusPolicy() & Qt::TabFocus) || !control->isEnabled()
            || !control->isVisibleTo(&group);
    });
    return controls;
}

QPointF centerIn(const QWidget& group, const QWidget& control)
{
    return control.mapTo(&group, QRectF(control.rect()).center());
}

} // namespace

KeyboardGroup::KeyboardGroup(QWidget& controls, int order)
    : QObject(&controls)
    , place(order)
{
    controls.installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget*, QWidget* focused) {
        if (focused && group().isAncestorOf(focused))
            last = focused;
    });
}

QWidget& KeyboardGroup::group() const { return *static_cast<QWidget*>(parent()); }

bool KeyboardGroup::takeFocus()
{
    const auto controls = reachable(group());
    if (!group().isVisible() || controls.isEmpty())
        return false;
    auto* control = controls.contains(last.data()) ? last.data() : controls.constFirst();
    control->setFocus(Qt::ShortcutFocusReason);
    return true;
}

void KeyboardGroup::walk(QWidget& window, bool forward)
{
    auto groups = window.findChildren<KeyboardGroup*>();
    std::sort(groups.begin(), groups.end(), [](const auto* a, const auto* b) { return a->place < b->place; });
    const auto* focused = window.focusWidget();
    qsizetype at = groups.size(); // the canvas
    for (qsizetype i = 0; i < groups.size(); ++i)
        if (focused && groups[i]->group().isAncestorOf(focused))
            at = i;
    const auto stops = groups.size() + 1;
    for (qsizetype step = 1; step < stops; ++step) {
        const auto next = (at + (forward ? step : stops - step)) % stops;
        if (next < groups.size()) {
            if (groups[next]->takeFocus())
                return;
        } else if (auto* canvas = window.findChild<CanvasView*>()) {
            canvas->setFocus(Qt::ShortcutFocusReason);
            return;
        }
    }
}

bool KeyboardGroup::moveFocus(int key)
{
    auto* from = QApplication::focusWidget();
    if (!from || !group().isAncestorOf(from))
        return false;
    const bool across = key == Qt::Key_Left || key == Qt::Key_Right;
    const double sign = key == Qt::Key_Right || key == Qt::Key_Down ? 1 : -1;
    const auto start = centerIn(group(), *from);
    QWidget* nearest = nullptr;
    double least = 0;
    for (auto* control : reachable(group())) {
        const auto way = centerIn(group(), *control) - start;
        const double ahead = sign * (across ? way.x() : way.y());
        // What lies off the line counts as farther, so that rows and columns stay together.
        const double cost = ahead + 3 * std::abs(across ? way.y() : way.x());
        if (ahead < 1 || (nearest && cost >= least))
            continue;
        nearest = control;
        least = cost;
    }
    if (nearest)
        nearest->setFocus(Qt::TabFocusReason);
    return true;
}

bool KeyboardGroup::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        return moveFocus(key);
    case Qt::Key_Escape:
        if (auto* canvas = group().window()->findChild<CanvasView*>()) {
            canvas->setFocus(Qt::OtherFocusReason);
            return true;
        }
        return false;
    default:
        return false;
    }
}

} // namespace pintalux
