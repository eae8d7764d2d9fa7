// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/XcbConnection.h"

#include <cstring>

namespace pintalux::test {

/// Two windows in the last pixels of the screen, black at a quarter's opacity over white: only in a
/// compositing manager's picture do they make a grey.
class CompositingProbe {
public:
    /// The connection must outlive the probe, and takes the windows with it when it ends.
    explicit CompositingProbe(const x11::XcbConnection& connection)
        : display(connection)
        , opaque(makeWindow(connection.screen().white_pixel))
        , translucent(makeWindow(connection.screen().black_pixel))
    {
        constexpr uint32_t quarter = 0x40000000;
        xcb_change_property(display.get(), XCB_PROP_MODE_REPLACE, translucent,
            display.atom(x11::Atom::netWmWindowOpacity), XCB_ATOM_CARDINAL, 32, 1, &quarter);
        xcb_map_window(display.get(), opaque);
        xcb_map_window(display.get(), translucent);
    }

    bool isComposited()
    {
        shown = lastPixel();
        return shown != display.screen().white_pixel && shown != display.screen().black_pixel;
    }

    /// Takes the windows away; true once the screen no longer shows them.
    bool isGone() const
    {
        xcb_unmap_window(display.get(), translucent);
        xcb_unmap_window(display.get(), opaque);
        return lastPixel() != shown;
    }

private:
    static constexpr uint16_t side = 2;

    xcb_window_t makeWindow(uint32_t colour) const
    {
        const auto& screen = display.screen();
        const auto window = xcb_generate_id(display.get());
        const uint32_t values[] = {colour, 1};
        xcb_create_window(display.get(), XCB_COPY_FROM_PARENT, window, screen.root,
            int16_t(screen.width_in_pixels - side), int16_t(screen.height_in_pixels - side), side, side, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT,
            values);
        return window;
    }

    uint32_t lastPixel() const
    {
        const auto& screen = display.screen();
        const auto image = display.reply<xcb_get_image_reply_t>(
            xcb_get_image(display.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, screen.root,
                int16_t(screen.width_in_pixels - 1), int16_t(screen.height_in_pixels - 1), 1, 1, ~0U)
                .sequence);
        uint32_t value = screen.black_pixel;
        if (image)
            std::memcpy(&value, xcb_get_image_data(image.get()), 3);
        return value & 0xffffffU;
    }

    const x11::XcbConnection& display;
    xcb_window_t opaque;
    xcb_window_t translucent;
    uint32_t shown = 0;
};

} // namespace pintalux::test
