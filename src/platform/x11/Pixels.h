// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <xcb/xcb.h>

#include <cstdint>

namespace pintalux::x11 {

/// How a server lays out the pixels of a picture.
struct PixelLayout {
    int depth = 24;        ///< bits that mean something
    int bitsPerPixel = 32; ///< bits that a pixel takes
    int scanlinePad = 32;  ///< each row is filled up to a multiple of so many bits
    bool bigEndian = false;
    uint32_t redMask = 0xff0000;
    uint32_t greenMask = 0x00ff00;
    uint32_t blueMask = 0x0000ff;

    qsizetype bytesPerLine(int width) const;
    /// True when the bytes are already those of a QImage.
    bool isNative() const;
};

/// The layout of pictures of a depth that are shown with a visual.
PixelLayout pixelLayout(const xcb_setup_t& setup, int depth, xcb_visualid_t visual);

/// Pixels of any layout with colour masks, brought to RGB32 one by one. Null for a layout without masks.
QImage convertedPixels(const uint8_t* bytes, QSize size, const PixelLayout& layout);

} // namespace pintalux::x11
