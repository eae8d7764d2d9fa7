// SPDX-License-Identifier: MIT
#include "platform/backend/DisplaySystem.h"

#include "platform/desktop/NoScreenSource.h"
#include "platform/session/SystemWorkspace.h"
#include "platform/wayland/Session.h"
#include "platform/wayland/capture/Screencopy.h"
#include "platform/wayland/capture/WaylandScreenSource.h"
#include "platform/wayland/windowing/LayerSurface.h"
#include "platform/wayland/windowing/WaylandWindowSystem.h"
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
bool isWayland() { return QGuiApplication::platformName().startsWith(u"wayland"); }

constexpr const char* toolkitsChoice = "QT_QPA_PLATFORM";

} // namespace

void choose()
{
    const auto offered = wayland::offeredBySession();
    if (offered.layerSurfaces)
        wayland::LayerSurface::leaveRolesToUs();
    if (qEnvironmentVariableIsSet(toolkitsChoice))
        return;
    const bool hasX11 = !qEnvironmentVariableIsEmpty("DISPLAY");
    // Natively where all of the program works so; elsewhere through the session's X server, if there is one.
    // The toolkit takes the first of a list that it can have: what shows windows on Wayland is a part of it
    // that may not be installed.
    const bool isComplete = offered.layerSurfaces && offered.screencopy;
    if (offered.isThere && (isComplete || !hasX11))
        qputenv(toolkitsChoice, hasX11 ? "wayland;xcb" : "wayland");
    else if (hasX11)
        qputenv(toolkitsChoice, "xcb");
}

std::optional<QString> problem()
{
    if (qEnvironmentVariableIsSet(toolkitsChoice) && qgetenv(toolkitsChoice) != "xcb")
        return std::nullopt; // a compositor that answered, or somebody has chosen another way to draw
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
    if (isWayland())
        return std::make_unique<WaylandWindowSystem>();
    return std::make_unique<WindowSystem>();
}

std::unique_ptr<ScreenSource> makeScreenSource()
{
    const auto offered = wayland::offeredBySession();
    if (isWayland() && offered.screencopy)
        return std::make_unique<WaylandScreenSource>(wayland::screencopy);
    // Through XWayland the toolkit finds an X server whose root window shows nothing of the desktop.
    if (isX11() && !offered.isThere)
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
