#include "platform/Compositor.h"

#include "platform/Error.h"
#include "platform/x11/XcbConnection.h"

#include <QApplication>
#include <QStyle>
#include <QWidget>

#include <cstring>

namespace pintalux {

namespace {

bool onX11() { return QGuiApplication::platformName() == u"xcb"_qs; }

} // namespace

bool hasCompositor()
{
    if (!onX11())
        return true;
    try {
        return x11::XcbConnection().hasCompositor();
    } catch (const Error&) {
        return false;
    }
}

void disableCompositorShadow(QWidget& window)
{
    auto* application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!onX11() || !application)
        return;
    auto* connection = application->connection();
    constexpr const char* name = "_COMPTON_SHADOW";
    const x11::Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, uint16_t(std::strlen(name)), name), nullptr));
    const quint32 none = 0;
    if (atom)
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, xcb_window_t(window.winId()), atom->atom,
            XCB_ATOM_CARDINAL, 32, 1, &none);
}

bool prefersReducedMotion()
{
    return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) <= 0;
}

} // namespace pintalux
