// SPDX-License-Identifier: MIT
#include "platform/x11/capture/X11ScreenSource.h"

#include "platform/desktop/ToolkitScreens.h"
#include "platform/x11/DrawableImage.h"
#include "platform/x11/Screens.h"
#include "platform/x11/Windows.h"
#include "platform/x11/XcbConnection.h"
#include "platform/x11/capture/OwnWindows.h"
#include "platform/x11/capture/WindowImage.h"

#include <QCoreApplication>
#include <QCursor>
#include <QScreen>

namespace pintalux {

X11ScreenSource::X11ScreenSource(QByteArray displayName)
    : displayName(std::move(displayName))
{
}

X11ScreenSource::~X11ScreenSource() = default;

const x11::XcbConnection& X11ScreenSource::connect()
{
    x11::ignoreBrokenPipe();
    if (connection)
        connection->drainEvents();
    if (!connection || connection->isBroken())
        connection = std::make_shared<x11::XcbConnection>(displayName);
    return *connection;
}

QPointF X11ScreenSource::pointerLocation() const
{
    const auto pointer = QCursor::pos();
    const auto* screen = screenUnderPointer();
    if (!screen)
        return pointer;
    const QRect area = screen->geometry();
    return {double(std::min(pointer.x(), area.right())), double(std::min(pointer.y(), area.bottom()))};
}

qint64 X11ScreenSource::ownProcessId() const { return QCoreApplication::applicationPid(); }

ShareableContent X11ScreenSource::shareableContent(const QList<ToolkitScreen>& screens)
{
    const auto& server = connect();
    ShareableContent content{.screens = x11::screens(server, screens), .windows = {}};
    content.windows = x11::windows(server, content.screens);
    return content;
}

std::unique_ptr<ScreenSource::OwnWindowsHidden> X11ScreenSource::hideOwnWindows()
{
    connect();
    return x11::hideWindowsOf(connection, ownProcessId());
}

Screenshot X11ScreenSource::screenshot(const ScreenInfo& screen)
{
    const auto& server = connect();
    return {x11::drawableImage(server, server.root(), server.screen().root_visual, screen.nativeRect),
        screen.pixelScale};
}

Screenshot X11ScreenSource::screenshot(const WindowInfo& window)
{
    return {x11::windowImage(connect(), xcb_window_t(window.id)), window.pixelScale};
}

} // namespace pintalux
