// SPDX-License-Identifier: MIT
#include "platform/x11/Struts.h"

#include "platform/x11/Toolkit.h"
#include "platform/x11/XcbConnection.h"

#include <QList>

#include <string>

namespace pintalux::x11 {

namespace {

constexpr uint32_t mostItems = 4096;

// The order of the property's items: how much of the desktop's edge, then from where to where along it.
enum Strut {
    left,
    right,
    top,
    bottom,
    startOfLeft,
    startOfRight = 6,
    startOfTop = 8,
    startOfBottom = 10,
    itemCount = 12
};

class Desktop {
public:
    explicit Desktop(xcb_connection_t* toServer)
        : connection(toServer)
        , root(xcb_setup_roots_iterator(xcb_get_setup(toServer)).data->root)
    {
    }

    QList<quint32> cards(xcb_get_property_cookie_t cookie) const
    {
        const Reply<xcb_get_property_reply_t> answer(xcb_get_property_reply(connection, cookie, nullptr));
        if (!answer || answer->format != 32)
            return {};
        const auto* items = static_cast<const quint32*>(xcb_get_property_value(answer.get()));
        return {items, items + answer->value_len};
    }
    xcb_get_property_cookie_t ask(xcb_window_t window, std::string_view name) const
    {
        return xcb_get_property(
            connection, 0, window, atomNamed(connection, name), XCB_GET_PROPERTY_TYPE_ANY, 0, mostItems);
    }
    QList<quint32> ofRoot(std::string_view name) const { return cards(ask(root, name)); }

    QSize size() const
    {
        const Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(connection, xcb_get_geometry(connection, root), nullptr));
        return geometry ? QSize(geometry->width, geometry->height) : QSize();
    }

    // The desktop's own word for it, one rectangle a monitor; null when it has none.
    QRect workArea(const QRect& monitor) const
    {
        const auto current = ofRoot("_NET_CURRENT_DESKTOP");
        const auto areas
            = ofRoot("_GTK_WORKAREAS_D" + std::to_string(current.isEmpty() ? 0 : current.first()));
        for (qsizetype index = 0; index + 3 < areas.size(); index += 4) {
            const QRect area{
                int(areas[index]), int(areas[index + 1]), int(areas[index + 2]), int(areas[index + 3])};
            if (monitor.contains(area.center()))
                return area & monitor;
        }
        return {};
    }

    QList<QRect> struts() const
    {
        const auto clients = ofRoot("_NET_CLIENT_LIST");
        QList<xcb_get_property_cookie_t> cookies;
        const auto name = atomNamed(connection, "_NET_WM_STRUT_PARTIAL");
        for (const auto client : clients)
            cookies.append(xcb_get_property(connection, 0, client, name, XCB_ATOM_CARDINAL, 0, itemCount));
        const auto desktop = size();
        QList<QRect> result;
        for (const auto& cookie : cookies)
            result += rects(cards(cookie), desktop);
        return result;
    }

private:
    static QList<QRect> rects(const QList<quint32>& items, QSize desktop)
    {
        if (items.size() < itemCount)
            return {};
        const auto at = [&](int index) { return int(std::min<quint32>(items[index], 1 << 16)); };
        const auto along = [&](int start) { return at(start + 1) - at(start) + 1; };
        const QRect all[]{{0, at(startOfLeft), at(left), along(startOfLeft)},
            {desktop.width() - at(right), at(startOfRight), at(right), along(startOfRight)},
            {at(startOfTop), 0, along(startOfTop), at(top)},
            {at(startOfBottom), desktop.height() - at(bottom), along(startOfBottom), at(bottom)}};
        QList<QRect> found;
        for (const auto& rect : all)
            if (!rect.isEmpty())
                found.append(rect);
        return found;
    }

    xcb_connection_t* connection;
    xcb_window_t root;
};

} // namespace

QRect freeOfStruts(xcb_connection_t* connection, const QRect& monitor)
{
    const Desktop desktop(connection);
    if (const auto area = desktop.workArea(monitor); !area.isEmpty())
        return area;
    auto free = monitor;
    for (const auto& strut : desktop.struts()) {
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
