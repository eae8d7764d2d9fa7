// SPDX-License-Identifier: MIT
#include "platform/desktop/WindowSystem.h"

#include "platform/desktop/DirectSurface.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QPointer>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace pintalux {

namespace {

QPointer<WindowSystem> inUse;

Qt::WindowFlags flagsOf(WindowRole role)
{
    constexpr auto above = Qt::ToolTip | Qt::BypassWindowManagerHint | Qt::FramelessWindowHint
        | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint;
    switch (role) {
    case WindowRole::message:
    case WindowRole::tip:
        return above | Qt::WindowTransparentForInput;
    case WindowRole::panel:
        return above;
    case WindowRole::pin:
        return Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
    case WindowRole::popup:
        break;
    }
    return Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint;
}

} // namespace

WindowSystem::~WindowSystem() = default;

WindowSystem& WindowSystem::current()
{
    static WindowSystem toolkitAlone;
    return inUse ? *inUse : toolkitAlone;
}

void WindowSystem::use(std::unique_ptr<WindowSystem> system)
{
    delete inUse;
    inUse = system.release();
    if (!inUse)
        return;
    inUse->setParent(QCoreApplication::instance());
    const auto follow = [](const QScreen* screen) {
        connect(screen, &QScreen::availableGeometryChanged, inUse, &WindowSystem::panelsChanged);
    };
    std::ranges::for_each(QGuiApplication::screens(), follow);
    connect(qGuiApp, &QGuiApplication::screenAdded, inUse, follow);
}

std::unique_ptr<InputHold> WindowSystem::holdInput(QWidget&, std::function<void()>) const { return nullptr; }

QRect WindowSystem::visibleFrame(const QScreen& screen) const { return screen.availableGeometry(); }

void WindowSystem::prepare(QWidget& window, WindowRole role) const
{
    window.setWindowFlags(flagsOf(role));
    const bool letsClicksThrough = role == WindowRole::message || role == WindowRole::tip;
    window.setAttribute(Qt::WA_ShowWithoutActivating, letsClicksThrough || role == WindowRole::panel);
    window.setAttribute(Qt::WA_TransparentForMouseEvents, letsClicksThrough);
}

void WindowSystem::coverScreen(QWidget& window, QScreen& screen, const QRect& frame) const
{
    window.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint
        | Qt::BypassWindowManagerHint | Qt::NoDropShadowWindowHint);
    window.setScreen(&screen);
    window.setGeometry(frame);
    window.winId();
}

void WindowSystem::describe(QWidget&, WindowRole, const QRect&) const { }

void WindowSystem::settle(QWidget&, WindowRole) const { }

void WindowSystem::setInTaskBar(QWidget&, bool) const { }

std::unique_ptr<DirectSurface> WindowSystem::makeDirectSurface(QWidget&, QSize) const { return nullptr; }

void WindowSystem::setClipboard(std::unique_ptr<QMimeData> data) const
{
    QGuiApplication::clipboard()->setMimeData(data.release()); // which owns it
}

void WindowSystem::giveKeyboard(QWidget& window) const
{
    window.activateWindow();
    window.setFocus(Qt::ActiveWindowFocusReason);
}

void WindowSystem::returnKeyboard(quint64) const { }

} // namespace pintalux
