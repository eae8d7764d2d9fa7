// SPDX-License-Identifier: MIT
#include "platform/x11/Screens.h"

#include "platform/x11/XcbConnection.h"

#include <xcb/randr.h>

namespace pintalux::x11 {

namespace {

struct Monitor {
    QString name;
    QRect nativeRect;
    bool primary = false;
};

bool answersMonitorRequests(const XcbConnection& connection)
{
    if (!connection.hasExtension(xcb_randr_id))
        return false;
    const auto version = connection.reply<xcb_randr_query_version_reply_t>(
        xcb_randr_query_version(connection.get(), 1, 5).sequence);
    return version && std::pair(version->major_version, version->minor_version) >= std::pair(1u, 5u);
}

QList<Monitor> monitors(const XcbConnection& connection)
{
    if (!answersMonitorRequests(connection))
        return {};
    const auto answer = connection.reply<xcb_randr_get_monitors_reply_t>(
        xcb_randr_get_monitors(connection.get(), connection.root(), 1).sequence);
    if (!answer)
        return {};
    QList<Monitor> found;
    for (auto each = xcb_randr_get_monitors_monitors_iterator(answer.get()); each.rem > 0;
         xcb_randr_monitor_info_next(&each)) {
        const auto name = connection.reply<xcb_get_atom_name_reply_t>(
            xcb_get_atom_name(connection.get(), each.data->name).sequence);
        if (!name)
            continue;
        found.append(
            {QString::fromUtf8(xcb_get_atom_name_name(name.get()), xcb_get_atom_name_name_length(name.get())),
                {each.data->x, each.data->y, each.data->width, each.data->height}, each.data->primary != 0});
    }
    std::stable_partition(found.begin(), found.end(), [](const Monitor& each) { return each.primary; });
    return found;
}

// Asked anew each time: the size in the connection's setup is the one from when it was made.
QRect desktopRect(const XcbConnection& connection)
{
    const auto geometry = connection.reply<xcb_get_geometry_reply_t>(
        xcb_get_geometry(connection.get(), connection.root()).sequence);
    return geometry ? QRect(0, 0, geometry->width, geometry->height) : QRect();
}

} // namespace

QList<ScreenInfo> screens(const XcbConnection& connection, const QList<ToolkitScreen>& toolkitScreens)
{
    const QRect desktop = desktopRect(connection);
    auto found = monitors(connection);
    // A server that knows no monitors has one screen, whatever the toolkit calls it.
    if (found.isEmpty())
        found.append({toolkitScreens.isEmpty() ? QString() : toolkitScreens.first().name, desktop, true});

    QList<ScreenInfo> result;
    for (const auto& monitor : found) {
        ScreenInfo screen;
        screen.name = monitor.name;
        screen.nativeRect = monitor.nativeRect;
        const QRect visible = monitor.nativeRect & desktop;
        if (visible.isEmpty())
            continue;
        const auto match = std::ranges::find(toolkitScreens, monitor.name, &ToolkitScreen::name);
        screen.attached = match != toolkitScreens.end();
        screen.frame = screen.attached ? match->frame : QRectF(monitor.nativeRect);
        screen.pixelScale = screen.attached ? match->pixelScale : 1;
        // A monitor may be declared to reach beyond the desktop; there is nothing to see there.
        if (visible != screen.nativeRect) {
            screen.frame = toPoints(visible, screen);
            screen.nativeRect = visible;
        }
        result.append(screen);
    }
    return result;
}

const ScreenInfo* screenOf(const QRect& nativeRect, const QList<ScreenInfo>& screens)
{
    const auto shared = [&](const ScreenInfo& screen) {
        const QRect common = screen.nativeRect & nativeRect;
        return common.isEmpty() ? 0 : qint64(common.width()) * common.height();
    };
    const auto most = std::ranges::max_element(screens, {}, shared);
    return most == screens.end() ? nullptr : &*most;
}

} // namespace pintalux::x11
