// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

#include <functional>
#include <stdexcept>

// What a person does to widgets.

namespace gesture {

/// `held` after it; what changes is the left button, or nothing when the pointer moves.
inline void mouse(QWidget& widget, QEvent::Type type, QPointF at, Qt::MouseButtons held,
    Qt::KeyboardModifiers modifiers = {})
{
    const auto changed = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, widget.mapToGlobal(at), changed, held, modifiers);
    QApplication::sendEvent(&widget, &event);
}

inline void press(QWidget& widget, QPointF at)
{
    mouse(widget, QEvent::MouseButtonPress, at, Qt::LeftButton);
}
inline void moveTo(QWidget& widget, QPointF at) { mouse(widget, QEvent::MouseMove, at, Qt::LeftButton); }
inline void release(QWidget& widget, QPointF at)
{
    mouse(widget, QEvent::MouseButtonRelease, at, Qt::NoButton);
}

inline void click(QWidget& widget, QPointF at)
{
    press(widget, at);
    release(widget, at);
}
inline void click(QWidget& widget) { click(widget, QRectF(widget.rect()).center()); }

/// To the widget that has the focus.
inline void key(int key, Qt::KeyboardModifiers modifiers = {})
{
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        auto* target = QApplication::activePopupWidget();
        if (!target || target->focusWidget())
            target = target ? target->focusWidget() : QApplication::focusWidget();
        if (!target && type == QEvent::KeyRelease)
            return; // the press has closed its window
        if (!target)
            throw std::runtime_error("no widget has the focus");
        QKeyEvent event(type, key, modifiers, key == Qt::Key_Space ? QStringLiteral(" ") : QString());
        QApplication::sendEvent(target, &event);
    }
}

/// Lets the application work until something holds; false when it does not within half a minute.
inline bool waitFor(const std::function<bool()>& holds)
{
    constexpr int limit = 30000; // a busy machine is slow, not broken
    QElapsedTimer watch;
    watch.start();
    while (!holds() && watch.elapsed() < limit)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return holds();
}

/// Shows the window and gives it the focus.
inline void present(QWidget& window)
{
    window.show();
    window.activateWindow();
    if (!waitFor([&] { return window.isActiveWindow(); }))
        throw std::runtime_error("the window does not get the focus");
}

} // namespace gesture
