// SPDX-License-Identifier: MIT
#include "platform/x11/capture/OwnWindows.h"

#include "platform/x11/DrawableImage.h"
#include "platform/x11/Windows.h"
#include "platform/x11/XcbConnection.h"

#include <QElapsedTimer>
#include <QImage>
#include <QRegion>
#include <QThread>

#include <xcb/shape.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace pintalux::x11 {

namespace {

// Until a compositor has drawn the screen anew without a window that nobody saw; and until the applications
// below have painted again what was covered.
constexpr unsigned long composedMilliseconds = 50;
constexpr unsigned long repaintedMilliseconds = 100;

// How often it is looked whether a window has gone, which two looks alike show. For how long after the first
// change, where what is below moves; and for how long before it, which a compositor of a busy machine may
// need, and which passes where what is below looks just like the window.
constexpr unsigned long lookMilliseconds = 20;
constexpr int mostAfterChange = 400;
constexpr int mostBeforeChange = 1500;

// Device pixels that a compositor's shadow reaches around a window.
constexpr int widestShadow = 64;

struct OwnWindow {
    xcb_window_t window;
    xcb_window_t frame;
};

bool isShown(const XcbConnection& connection, xcb_window_t window)
{
    const auto attributes = connection.reply<xcb_get_window_attributes_reply_t>(
        xcb_get_window_attributes(connection.get(), window).sequence);
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE
        && attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
}

// Managed windows are found in the manager's list, the others (messages, menus) below the root.
QList<OwnWindow> ownWindows(const XcbConnection& connection, qint64 processId)
{
    auto windows = connection.property(connection.root(), connection.hints()._NET_CLIENT_LIST).cards();
    for (const auto window : topLevelWindows(connection))
        if (!windows.contains(window))
            windows.append(window);

    std::vector<xcb_get_property_cookie_t> questions;
    for (const auto window : windows)
        questions.push_back(connection.askProperty(window, connection.hints()._NET_WM_PID));
    QList<OwnWindow> result;
    for (qsizetype index = 0; index < windows.size(); ++index) {
        const auto owner = connection.property(questions[std::size_t(index)]).cards();
        if (owner.value(0) != processId || owner.isEmpty() || !isShown(connection, windows[index]))
            continue;
        if (const auto frame = frameWindow(connection, windows[index]); frame != XCB_WINDOW_NONE)
            result.append({windows[index], frame});
    }
    return result;
}

QRect rectOf(const xcb_get_geometry_reply_t& geometry)
{
    const int border = 2 * geometry.border_width;
    return {geometry.x, geometry.y, geometry.width + border, geometry.height + border};
}

// The part of the screen on which the windows are seen, shadows included: nothing opaque lies above it.
QRegion seenRegion(const XcbConnection& connection, const QList<OwnWindow>& windows)
{
    struct Questions {
        xcb_window_t window;
        xcb_get_window_attributes_cookie_t attributes;
        xcb_get_geometry_cookie_t geometry;
    };
    std::vector<Questions> questions;
    for (const auto window : topLevelWindows(connection))
        questions.push_back({window, xcb_get_window_attributes(connection.get(), window),
            xcb_get_geometry(connection.get(), window)});
    QRegion seen;
    for (const auto& each : questions) { // bottom-most first
        const auto attributes = connection.reply<xcb_get_window_attributes_reply_t>(each.attributes.sequence);
        const auto geometry = connection.reply<xcb_get_geometry_reply_t>(each.geometry.sequence);
        if (!attributes || !geometry || attributes->map_state != XCB_MAP_STATE_VIEWABLE
            || attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
            continue;
        const auto rect = rectOf(*geometry);
        const int reach = widestShadow;
        if (std::ranges::any_of(windows, [&](const OwnWindow& own) { return own.frame == each.window; }))
            seen += rect.adjusted(-reach, -reach, reach, reach);
        else if (geometry->depth != 32)
            seen -= rect;
    }
    const auto& screen = connection.screen();
    return seen & QRect(0, 0, screen.width_in_pixels, screen.height_in_pixels);
}

// Looks at a part of the screen until it has changed and stays as it is.
class Watch {
public:
    Watch(const XcbConnection& owner, const QRegion& part)
        : connection(owner)
        , region(part)
        , before(look())
    {
    }

    void waitForChange() const
    {
        QElapsedTimer clock;
        clock.start();
        auto last = before;
        bool changed = false;
        while (!region.isEmpty() && clock.elapsed() < (changed ? mostAfterChange : mostBeforeChange)) {
            QThread::msleep(lookMilliseconds);
            auto now = look();
            if (now != before) {
                if (now == last)
                    return;
                if (!std::exchange(changed, true))
                    clock.restart();
            }
            last = std::move(now);
        }
        if (region.isEmpty())
            QThread::msleep(composedMilliseconds);
    }

private:
    QList<QImage> look() const
    {
        QList<QImage> pictures;
        for (const auto& rect : region)
            pictures.append(
                drawableImage(connection, connection.root(), connection.screen().root_visual, rect));
        return pictures;
    }

    const XcbConnection& connection;
    QRegion region;
    QList<QImage> before;
};

// Under a compositor: full transparency, asked of both the window and its frame, since managers differ in
// which of the two they look at.
class Transparent : public ScreenSource::OwnWindowsHidden {
public:
    Transparent(std::shared_ptr<const XcbConnection> owner, const QList<OwnWindow>& windows)
        : connection(std::move(owner))
    {
        for (const auto& [window, frame] : windows) {
            former.append(
                {window, connection->property(window, connection->atom(Atom::netWmWindowOpacity)).cards()});
            if (frame != window)
                former.append(
                    {frame, connection->property(frame, connection->atom(Atom::netWmWindowOpacity)).cards()});
        }
        const Watch watch(*connection, seenRegion(*connection, windows));
        for (const auto& each : former)
            set(each.window, 0);
        xcb_flush(connection->get());
        try {
            watch.waitForChange();
        } catch (const Error&) {
            restore();
            throw;
        }
    }
    ~Transparent() override { restore(); }

private:
    struct Former {
        xcb_window_t window;
        QList<quint32> opacity;
    };

    void restore() const
    {
        for (const auto& each : former) {
            if (each.opacity.isEmpty())
                xcb_delete_property(
                    connection->get(), each.window, connection->atom(Atom::netWmWindowOpacity));
            else
                set(each.window, each.opacity.first());
        }
        xcb_flush(connection->get());
    }

    void set(xcb_window_t window, quint32 opacity) const
    {
        xcb_change_property(connection->get(), XCB_PROP_MODE_REPLACE, window,
            connection->atom(Atom::netWmWindowOpacity), XCB_ATOM_CARDINAL, 32, 1, &opacity);
    }

    std::shared_ptr<const XcbConnection> connection;
    QList<Former> former;
};

// Without a compositor: an empty shape on the frame. Unmapping would take the focus away.
class Shapeless : public ScreenSource::OwnWindowsHidden {
public:
    Shapeless(std::shared_ptr<const XcbConnection> owner, const QList<OwnWindow>& windows)
        : connection(std::move(owner))
    {
        for (const auto& each : windows)
            former.push_back({each.frame, shapeOf(each.frame)});
        for (const auto& each : former)
            xcb_shape_rectangles(connection->get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                XCB_CLIP_ORDERING_UNSORTED, each.frame, 0, 0, 0, nullptr);
        xcb_flush(connection->get());
        QThread::msleep(repaintedMilliseconds);
    }
    ~Shapeless() override
    {
        auto* xcb = connection->get();
        for (const auto& each : former) {
            if (each.shape)
                xcb_shape_rectangles(xcb, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED,
                    each.frame, 0, 0, uint32_t(each.shape->size()), each.shape->data());
            else
                xcb_shape_mask(
                    xcb, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, each.frame, 0, 0, XCB_PIXMAP_NONE);
        }
        xcb_flush(xcb);
    }

private:
    using Shape = std::vector<xcb_rectangle_t>;
    struct Former {
        xcb_window_t frame;
        std::optional<Shape> shape; ///< none for an ordinary rectangular window
    };

    std::optional<Shape> shapeOf(xcb_window_t frame) const
    {
        auto* xcb = connection->get();
        const auto extents = connection->reply<xcb_shape_query_extents_reply_t>(
            xcb_shape_query_extents(xcb, frame).sequence);
        if (!extents || !extents->bounding_shaped)
            return std::nullopt;
        const auto rectangles = connection->reply<xcb_shape_get_rectangles_reply_t>(
            xcb_shape_get_rectangles(xcb, frame, XCB_SHAPE_SK_BOUNDING).sequence);
        if (!rectangles)
            return std::nullopt;
        const auto* first = xcb_shape_get_rectangles_rectangles(rectangles.get());
        return Shape(first, first + xcb_shape_get_rectangles_rectangles_length(rectangles.get()));
    }

    std::shared_ptr<const XcbConnection> connection;
    std::vector<Former> former;
};

} // namespace

std::unique_ptr<ScreenSource::OwnWindowsHidden> hideWindowsOf(
    std::shared_ptr<const XcbConnection> connection, qint64 processId)
{
    const auto windows = ownWindows(*connection, processId);
    if (windows.isEmpty())
        return nullptr;
    if (connection->hasCompositor())
        return std::make_unique<Transparent>(std::move(connection), windows);
    if (!connection->hasExtension(xcb_shape_id))
        return nullptr;
    return std::make_unique<Shapeless>(std::move(connection), windows);
}

} // namespace pintalux::x11
