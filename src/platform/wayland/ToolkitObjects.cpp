// SPDX-License-Identifier: MIT
#include "platform/wayland/ToolkitObjects.h"

#include "platform/wayland/Registry.h"

#include <QGuiApplication>
#include <QLibraryInfo>
#include <QScreen>
#include <QVersionNumber>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

namespace pintalux::wayland {

namespace {

// None without an application and on other display systems.
QPlatformNativeInterface* nativeObjects()
{
    return QGuiApplication::platformName().startsWith(u"wayland") ? QGuiApplication::platformNativeInterface()
                                                                  : nullptr;
}

} // namespace

wl_display* toolkitDisplay()
{
    auto* objects = nativeObjects();
    return objects ? static_cast<wl_display*>(objects->nativeResourceForIntegration("wl_display")) : nullptr;
}

wl_output* toolkitOutput(QScreen& screen)
{
    auto* objects = nativeObjects();
    return objects ? static_cast<wl_output*>(objects->nativeResourceForScreen("output", &screen)) : nullptr;
}

wl_surface* toolkitSurface(QWindow& window)
{
    auto* objects = nativeObjects();
    return objects && window.handle()
        ? static_cast<wl_surface*>(objects->nativeResourceForWindow("surface", &window))
        : nullptr;
}

bool toolkitHasViewports(bool compositorTellsFractionalScale)
{
    const QVersionNumber first(6, 5);
    return compositorTellsFractionalScale && QLibraryInfo::version() >= first;
}

void settleToolkit()
{
    auto* display = toolkitDisplay();
    if (!display)
        return;
    const EventQueue queue(wl_display_create_queue(display));
    wl_display_roundtrip_queue(display, queue.get());
}

} // namespace pintalux::wayland
