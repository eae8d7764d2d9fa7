// SPDX-License-Identifier: MIT
#include "platform/x11/windowing/SharedBands.h"

#include "platform/x11/Pixels.h"
#include "platform/x11/XcbConnection.h"

#include <sys/ipc.h>
#include <sys/shm.h>

#include <utility>

namespace pintalux::x11 {

namespace {

constexpr int depth = 24;
constexpr std::size_t halfBytes = std::size_t(1) << 20;
constexpr int privateMode = 0600;

// True when the window's pixels are laid out as those of an RGB32 picture.
bool hasFamiliarPixels(xcb_connection_t* connection, xcb_window_t window)
{
    const auto geometryCookie = xcb_get_geometry(connection, window);
    const auto attributesCookie = xcb_get_window_attributes(connection, window);
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, geometryCookie, nullptr));
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection, attributesCookie, nullptr));
    if (!geometry || !attributes || geometry->depth != depth)
        return false;
    return pixelLayout(*xcb_get_setup(connection), depth, attributes->visual).isNative();
}

} // namespace

std::unique_ptr<SharedBands> SharedBands::create(xcb_connection_t* connection, xcb_window_t window)
{
    std::unique_ptr<SharedBands> bands(new SharedBands(connection, window));
    return bands->share() ? std::move(bands) : nullptr;
}

SharedBands::SharedBands(xcb_connection_t* connection, xcb_window_t window)
    : connection(connection)
    , window(window)
{
}

SharedBands::~SharedBands()
{
    for (const auto sequence : shown)
        if (sequence)
            xcb_discard_reply(connection, sequence);
    if (context != XCB_NONE)
        xcb_free_gc(connection, context);
    if (segment != XCB_NONE)
        xcb_shm_detach(connection, segment);
    if (memory)
        shmdt(memory);
}

bool SharedBands::share()
{
    if (!hasFamiliarPixels(connection, window))
        return false;
    const auto* extension = xcb_get_extension_data(connection, &xcb_shm_id);
    if (!extension || !extension->present)
        return false;
    const int id = shmget(IPC_PRIVATE, halves * halfBytes, IPC_CREAT | privateMode);
    if (id < 0)
        return false;
    void* const attached = shmat(id, nullptr, 0);
    const bool isAttached = attached != reinterpret_cast<void*>(-1); // NOLINT(performance-no-int-to-ptr)
    if (isAttached) {
        memory = static_cast<uchar*>(attached);
        segment = xcb_generate_id(connection);
        const Reply<xcb_generic_error_t> refusal(
            xcb_request_check(connection, xcb_shm_attach_checked(connection, segment, uint32_t(id), 0)));
        if (refusal)
            segment = XCB_NONE;
    }
    shmctl(id, IPC_RMID, nullptr); // it goes when the last of both lets go of it
    if (segment == XCB_NONE)
        return false;
    context = xcb_generate_id(connection);
    xcb_create_gc(connection, context, window, 0, nullptr);
    return true;
}

int SharedBands::pixels() const { return int(halfBytes / sizeof(QRgb)); }

QImage SharedBands::next(QSize wanted)
{
    half = (half + 1) % halves;
    if (const auto sequence = std::exchange(shown[std::size_t(half)], 0)) {
        const Reply<xcb_get_input_focus_reply_t> answer(
            xcb_get_input_focus_reply(connection, xcb_get_input_focus_cookie_t{sequence}, nullptr));
        if (!answer)
            return {};
    }
    size = wanted;
    return {memory + std::size_t(half) * halfBytes, size.width(), size.height(),
        qsizetype(size.width()) * qsizetype(sizeof(QRgb)), QImage::Format_RGB32};
}

void SharedBands::show(QPoint nativePosition)
{
    xcb_shm_put_image(connection, window, context, uint16_t(size.width()), uint16_t(size.height()), 0, 0,
        uint16_t(size.width()), uint16_t(size.height()), int16_t(nativePosition.x()),
        int16_t(nativePosition.y()), depth, XCB_IMAGE_FORMAT_Z_PIXMAP, 0, segment,
        uint32_t(std::size_t(half) * halfBytes));
    // Requests are served in their order, so the answer to any later one tells that this one was.
    shown[std::size_t(half)] = xcb_get_input_focus(connection).sequence;
    xcb_flush(connection);
}

} // namespace pintalux::x11
