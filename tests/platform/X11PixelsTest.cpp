// SPDX-License-Identifier: MIT
#include "platform/x11/Pixels.h"

using namespace pintalux::x11;

// Red, green, blue and grey, as servers of other kinds lay them out.
TEST(X11Pixels, UnusualLayoutsGiveTheSameColours)
{
    const struct {
        const char* name;
        PixelLayout layout;
        std::vector<uint8_t> bytes; ///< two rows of two pixels, rows padded
    } table[] = {
        {"16 bits 565", {16, 16, 32, false, 0xf800, 0x07e0, 0x001f},
            {0x00, 0xf8, 0xe0, 0x07, 0x1f, 0x00, 0x10, 0x84}},
        {"15 bits 555 in big-endian order", {15, 16, 32, true, 0x7c00, 0x03e0, 0x001f},
            {0x7c, 0x00, 0x03, 0xe0, 0x00, 0x1f, 0x42, 0x10}},
        {"10 bits a component", {30, 32, 32, false, 0x3ff00000, 0x000ffc00, 0x000003ff},
            {0x00, 0x00, 0xf0, 0x3f, 0x00, 0xfc, 0x0f, 0x00, 0xff, 0x03, 0x00, 0x00, 0x04, 0x12, 0x48, 0x20}},
        {"24 packed bits", {24, 24, 32, false, 0xff0000, 0x00ff00, 0x0000ff},
            {0, 0, 255, 0, 255, 0, 0, 0, 255, 0, 0, 132, 132, 132, 0, 0}},
        {"blue first in big-endian order", {24, 32, 32, true, 0x0000ff, 0x00ff00, 0xff0000},
            {9, 0, 0, 255, 9, 0, 255, 0, 9, 255, 0, 0, 9, 132, 132, 132}},
    };
    for (const auto& row : table) {
        ASSERT_FALSE(row.layout.isNative()) << row.name;
        ASSERT_EQ(qsizetype(row.bytes.size()), 2 * row.layout.bytesPerLine(2)) << row.name;
        const auto image = convertedPixels(row.bytes.data(), {2, 2}, row.layout);
        ASSERT_EQ(image.format(), QImage::Format_RGB32) << row.name;
        EXPECT_EQ(image.pixel(0, 0), 0xffff0000) << row.name;
        EXPECT_EQ(image.pixel(1, 0), 0xff00ff00) << row.name;
        EXPECT_EQ(image.pixel(0, 1), 0xff0000ff) << row.name;
        EXPECT_NEAR(qRed(image.pixel(1, 1)), 131, 3) << row.name;
        EXPECT_NEAR(qGreen(image.pixel(1, 1)), 131, 3) << row.name;
        EXPECT_NEAR(qBlue(image.pixel(1, 1)), 131, 3) << row.name;
    }
}

TEST(X11Pixels, ALayoutWithoutColourMasksIsRefused)
{
    const PixelLayout palette{8, 8, 32, false, 0, 0, 0};
    const uint8_t bytes[4] = {1, 2, 3, 4};
    EXPECT_TRUE(convertedPixels(bytes, {4, 1}, palette).isNull());
}
