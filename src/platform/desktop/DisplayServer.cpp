// SPDX-License-Identifier: MIT
#include "platform/desktop/DisplayServer.h"

#include <xcb/xcb.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace pintalux {

void chooseDisplaySystem()
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && !qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb");
}

std::optional<QString> displayProblem()
{
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && qgetenv("QT_QPA_PLATFORM") != "xcb")
        return std::nullopt; // somebody has chosen another way to draw
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return u"No hay ninguna pantalla: la variable DISPLAY está vacía."_s;
    const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection(
        xcb_connect(nullptr, nullptr), xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0)
        return u"No se pudo abrir la pantalla «%1»."_s.arg(qEnvironmentVariable("DISPLAY"));
    return std::nullopt;
}

} // namespace pintalux
