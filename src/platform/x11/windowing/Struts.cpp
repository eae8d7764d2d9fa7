// SPDX-License-Identifier: MIT
#include "platform/x11/windowing/Struts.h"

#include "platform/x11/Toolkit.h"
#include "platform/x11/XcbConnection.h"

#include <QList>

namespace pintalux::x11 {

namespace {

constexpr uint32_t mostItems = 4096;

// The desktop's own word for it, one rectangle a monitor; null when it has none.
QRect workArea(xcb_ewmh_connection_t& hints, const QRect& monitor)
{
    uint32_t current = 0;
    xcb_ewmh_get_current_desktop_reply(
        &hints, xcb_ewmh_get_current_desktop(&hints, screenNumber()), &current, nullptr);
    const auto name = toolkitAtom("_GTK_WORKAREAS_D" + QByteArray::number(current));
    const Reply<xcb_get_property_reply_t> answer(xcb_get_property_reply(hints.connection,
        xcb_get_property(hints.connection, 0, toolkitRoot(), name, XCB_ATOM_CARDINAL, 0, mostItems),
        nullptr));
    if (!answer || answer->format != 32)
        return {};
    const auto* items = static_cast<const uint32_t*>(xcb_get_property_value(answer.get()));
    for (uint32_t index = 0; index + 3 < answer->value_len; index += 4) {
        const QRect area{
            int(items[index]), int(items[index + 1]), int(items[index + 2]), int(items[index + 3])};
        if (monitor.contains(area.center()))
            return area & monitor;
    }
    return {};
}

QSize desktopSize(xcb_connection_t* connection)
{
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, toolkitRoot()), nullptr));
    return geometry ? QSize(geometry->width, geometry->height) : QSize();
}

// How much of the desktop's edges, and from where to where along them.
QList<QRect> rects(const xcb_ewmh_wm_strut_partial_t& strut, QSize desktop)
{
    // No desktop is larger than the protocol's 16 bits; who says so is wrong.
    const auto at = [](uint32_t place) { return int(std::min<uint32_t>(place, 1 << 16)); };
    const auto along = [&](uint32_t start, uint32_t end) { return at(end) - at(start) + 1; };
    const QRect all[]{
        {0, at(strut.left_start_y), at(strut.left), along(strut.left_start_y, strut.left_end_y)},
        {desktop.width() - at(strut.right), at(strut.right_start_y), at(strut.right),
            along(strut.right_start_y, strut.right_end_y)},
        {at(strut.top_start_x), 0, along(strut.top_start_x, strut.top_end_x), at(strut.top)},
        {at(strut.bottom_start_x), desktop.height() - at(strut.bottom),
            along(strut.bottom_start_x, strut.bottom_end_x), at(strut.bottom)}};
    QList<QRect> found;
    for (const auto& rect : all)
        if (!rect.isEmpty())
            found.append(rect);
    return found;
}

QList<QRect> struts(xcb_ewmh_connection_t& hints)
{
    xcb_ewmh_get_windows_reply_t clients;
    if (!xcb_ewmh_get_client_list_reply(
            &hints, xcb_ewmh_get_client_list(&hints, screenNumber()), &clients, nullptr))
        return {};
    QList<xcb_get_property_cookie_t> cookies;
    for (uint32_t index = 0; index < clients.windows_len; ++index)
        cookies.append(xcb_ewmh_get_wm_strut_partial(&hints, clients.windows[index]));
    xcb_ewmh_get_windows_reply_wipe(&clients);
    const auto desktop = desktopSize(hints.connection);
    QList<QRect> result;
    for (const auto& cookie : cookies) {
        xcb_ewmh_wm_strut_partial_t strut;
        if (xcb_ewmh_get_wm_strut_partial_reply(&hints, cookie, &strut, nullptr))
            result += rects(strut, desktop);
    }
    return result;
}

} // namespace

QRect freeOfStruts(const QRect& monitor)
{
    auto* hints = toolkitHints();
    if (!hints)
        return monitor;
    if (const auto area = workArea(*hints, monitor); !area.isEmpty())
        return area;
    auto free = monitor;
    for (const auto& strut : struts(*hints)) {
        const auto taken = strut & monitor;
        if (taken.isEmpty())
            continue;
        // Along the edge that it lies at; one that would leave little is no panel of this monitor.
        const bool isFlat = taken.width() >= taken.height();
        if ((isFlat ? taken.height() : taken.width()) * 2 > (isFlat ? monitor.height() : monitor.width()))
            continue;
        if (isFlat && taken.top() <= monitor.top())
            free.setTop(std::max(free.top(), taken.bottom() + 1));
        else if (isFlat)
            free.setBottom(std::min(free.bottom(), taken.top() - 1));
        else if (taken.left() <= monitor.left())
            free.setLeft(std::max(free.left(), taken.right() + 1));
        else
            free.setRight(std::min(free.right(), taken.left() - 1));
    }
    return free;
}

} // namespace pintalux::x11
