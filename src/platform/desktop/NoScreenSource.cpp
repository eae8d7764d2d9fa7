// SPDX-License-Identifier: MIT
#include "platform/desktop/NoScreenSource.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

Error unsupported()
{
    return {ScreenSource::errorDomain, 5, u"Este escritorio no permite capturar la pantalla."_s};
}

} // namespace

PermissionHelp NoScreenSource::permissionHelp() const
{
    return {u"Esta sesión no deja capturar la pantalla"_s,
        u"Pintalux captura en sesiones X11 y en las sesiones Wayland cuyo compositor da imágenes de la "
        "pantalla, como sway; el de esta no se las da.\n\n"
        "Cierra la sesión y elige «Xorg» o «X11» al volver a entrar. Abrir imágenes, los ajustes y los menús "
        "funcionan también aquí."_s,
        {}, {}, u"Entendido"_s};
}

qint64 NoScreenSource::ownProcessId() const { return QCoreApplication::applicationPid(); }

ShareableContent NoScreenSource::shareableContent(const QList<ToolkitScreen>&) { throw unsupported(); }

Screenshot NoScreenSource::screenshot(const ScreenInfo&) { throw unsupported(); }

Screenshot NoScreenSource::screenshot(const WindowInfo&) { throw unsupported(); }

} // namespace pintalux
