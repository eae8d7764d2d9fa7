// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <array>
#include <memory>

namespace pintalux::x11 {

/// A little memory shared with the server, painted in turns: while it shows one half, the other is painted.
class SharedBands {
public:
    /// Null when the server shares no memory with us or the window's pixels are not those of a QImage.
    static std::unique_ptr<SharedBands> create(xcb_connection_t* connection, xcb_window_t window);

    ~SharedBands();
    SharedBands(const SharedBands&) = delete;
    SharedBands& operator=(const SharedBands&) = delete;

    /// Pixels that fit into one half.
    int pixels() const;

    /// The next picture to paint, RGB32, `size` native pixels of undefined content, at most `pixels()` of
    /// them. Null when the server is gone. Waits until the server has shown what was in its place.
    QImage next(QSize size);

    /// Shows that picture in the window, its top-left corner at a native pixel of the window.
    void show(QPoint nativePosition);

private:
    SharedBands(xcb_connection_t* connection, xcb_window_t window);
    bool share();

    static constexpr int halves = 2;

    xcb_connection_t* connection;
    xcb_window_t window;
    xcb_gcontext_t context = XCB_NONE;
    xcb_shm_seg_t segment = XCB_NONE;
    uchar* memory = nullptr;
    int half = 0;                         ///< the one that is painted
    QSize size;                           ///< of what is painted
    std::array<unsigned, halves> shown{}; ///< a later request's sequence; 0: nothing to wait for
};

} // namespace pintalux::x11
