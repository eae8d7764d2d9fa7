// SPDX-License-Identifier: MIT
#include "platform/desktop/ScreenSource.h"
#include "platform/x11/capture/X11ScreenSource.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// Stands where no back end does: nothing is permitted, and everything that is asked of it says why.
class NoScreenSource : public ScreenSource {
public:
    bool hasPermission() const override { return false; }
    bool requestPermission() override { return false; }
    PermissionHelp permissionHelp() const override
    {
        return {u"Esta sesión no deja capturar la pantalla"_s,
            u"Pintalux captura en sesiones X11, y las sesiones Wayland aún no son compatibles.\n\n"
            "Cierra la sesión y elige «Xorg» o «X11» al volver a entrar. Abrir imágenes, los ajustes y los "
            "menús "
            "funcionan también aquí."_s,
            {}, {}, u"Entendido"_s};
    }
    QPointF pointerLocation() const override { return {}; }
    qint64 ownProcessId() const override { return QCoreApplication::applicationPid(); }

    ShareableContent shareableContent(const QList<ToolkitScreen>&) override { throw unsupported(); }
    std::unique_ptr<OwnWindowsHidden> hideOwnWindows() override { return nullptr; }
    Screenshot screenshot(const ScreenInfo&) override { throw unsupported(); }
    Screenshot screenshot(const WindowInfo&) override { throw unsupported(); }

private:
    static Error unsupported()
    {
        return {errorDomain, 5, u"Este escritorio no permite capturar la pantalla."_s};
    }
};

} // namespace

std::unique_ptr<ScreenSource> makeScreenSource()
{
    // Through XWayland the toolkit finds an X server whose root window shows nothing of the desktop.
    const bool isWayland = !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (QGuiApplication::platformName() == u"xcb" && !isWayland)
        return std::make_unique<X11ScreenSource>();
    return std::make_unique<NoScreenSource>();
}

} // namespace pintalux
