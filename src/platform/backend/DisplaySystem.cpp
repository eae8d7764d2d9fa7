// SPDX-License-Identifier: MIT
#include "platform/backend/DisplaySystem.h"

#include "platform/desktop/NoScreenSource.h"
#include "platform/session/SystemWorkspace.h"
#include "platform/x11/Toolkit.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11Workspace.h"
#include "platform/x11/capture/X11ScreenSource.h"
#include "platform/x11/windowing/X11WindowSystem.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace pintalux::DisplaySystem {

namespace {

// Stands where a program cannot have hot keys of its own.
class NoHotKeys : public HotKeyBackend {
public:
    bool isSupported() const override { return false; }
    bool grab(const HotKey&) override { return false; }
    void ungrabAll() override { }
};

bool isX11() { return QGuiApplication::platformName() == u"xcb"; }

} // namespace

void choose()
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && !qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb");
}

std::optional<QString> problem()
{
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && qgetenv("QT_QPA_PLATFORM") != "xcb")
        return std::nullopt; // somebody has chosen another way to draw
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return u"No hay ninguna pantalla: la variable DISPLAY está vacía."_s;
    if (!x11::serverAnswers())
        return u"No se pudo abrir la pantalla «%1»."_s.arg(qEnvironmentVariable("DISPLAY"));
    return std::nullopt;
}

std::unique_ptr<WindowSystem> makeWindowSystem()
{
    if (isX11())
        return std::make_unique<X11WindowSystem>();
    return std::make_unique<WindowSystem>();
}

std::unique_ptr<ScreenSource> makeScreenSource()
{
    // Through XWayland the toolkit finds an X server whose root window shows nothing of the desktop.
    const bool isWayland = !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (isX11() && !isWayland)
        return std::make_unique<X11ScreenSource>();
    return std::make_unique<NoScreenSource>();
}

std::unique_ptr<HotKeyBackend> makeHotKeyBackend()
{
    if (isX11())
        return std::make_unique<X11HotKeys>();
    return std::make_unique<NoHotKeys>();
}

std::unique_ptr<Workspace> makeWorkspace()
{
    if (isX11())
        return std::make_unique<X11Workspace>();
    return std::make_unique<SystemWorkspace>();
}

} // namespace pintalux::DisplaySystem
