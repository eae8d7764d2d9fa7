// SPDX-License-Identifier: MIT
#include "platform/wayland/capture/Screencopy.h"

#include "platform/desktop/ScreenSource.h"
#include "platform/image/OpaquePixels.h"
#include "platform/wayland/SharedMemory.h"

#include <QColorSpace>

#include <wlr-screencopy-unstable-v1-client-protocol.h>

#include <array>

using namespace Qt::StringLiterals;

namespace pintalux::wayland {

namespace {

struct Format {
    uint32_t shared; ///< of `wl_shm_format`
    QImage::Format image;
    bool redBlueSwapped = false;
};
constexpr std::array formats{
    Format{WL_SHM_FORMAT_XRGB8888, QImage::Format_RGB32},
    Format{WL_SHM_FORMAT_ARGB8888, QImage::Format_RGB32},
    Format{WL_SHM_FORMAT_XBGR8888, QImage::Format_RGB32, true},
    Format{WL_SHM_FORMAT_ABGR8888, QImage::Format_RGB32, true},
    Format{WL_SHM_FORMAT_BGR888, QImage::Format_RGB888},
    Format{WL_SHM_FORMAT_RGB888, QImage::Format_BGR888},
    Format{WL_SHM_FORMAT_XRGB2101010, QImage::Format_RGB30},
    Format{WL_SHM_FORMAT_XBGR2101010, QImage::Format_BGR30},
};

/// A picture of an output that is being taken.
struct Frame {
    enum class State { asked, described, ready, failed };

    State state = State::asked;
    uint32_t format = 0;
    QSize size;
    int stride = 0;
    bool isUpsideDown = false;
};

Frame& frameOf(void* data) { return *static_cast<Frame*>(data); }

// Of the first version, which leaves the choice of the memory to the program.
constexpr zwlr_screencopy_frame_v1_listener listener{
    .buffer =
        [](void* data, zwlr_screencopy_frame_v1*, uint32_t format, uint32_t width, uint32_t height,
            uint32_t stride) {
            auto& frame = frameOf(data);
            frame.format = format;
            frame.size = {int(width), int(height)};
            frame.stride = int(stride);
            frame.state = Frame::State::described;
        },
    .flags =
        [](void* data, zwlr_screencopy_frame_v1*, uint32_t flags) {
            frameOf(data).isUpsideDown = (flags & ZWLR_SCREENCOPY_FRAME_V1_FLAGS_Y_INVERT) != 0;
        },
    .ready = [](void* data, zwlr_screencopy_frame_v1*, uint32_t, uint32_t,
                 uint32_t) { frameOf(data).state = Frame::State::ready; },
    .failed = [](void* data, zwlr_screencopy_frame_v1*) { frameOf(data).state = Frame::State::failed; },
    .damage = nullptr,
    .linux_dmabuf = nullptr,
    .buffer_done = nullptr,
};
constexpr uint32_t version = 1;

// The memory that the compositor filled becomes the picture: nothing is copied where its pixels are ours.
QImage asPicture(std::unique_ptr<SharedMemory> memory, const Frame& frame, const Format& format)
{
    memory->unshare();
    auto* const bytes = memory->bytes();
    QImage image(
        bytes, frame.size.width(), frame.size.height(), frame.stride, format.image,
        [](void* owned) { delete static_cast<SharedMemory*>(owned); }, memory.release());
    if (format.image == QImage::Format_RGB32)
        makeOpaque(image);
    if (format.redBlueSwapped)
        image = std::move(image).rgbSwapped();
    if (frame.isUpsideDown)
        image = std::move(image).mirrored();
    image.convertTo(QImage::Format_RGB32);
    image.setColorSpace(QColorSpace::SRgb);
    return image;
}

} // namespace

QImage screencopy(const Connection& connection, const Output& output)
{
    const auto& offered = connection.offered();
    const Handle<zwlr_screencopy_manager_v1, zwlr_screencopy_manager_v1_destroy> manager(
        offered.bind<zwlr_screencopy_manager_v1>(zwlr_screencopy_manager_v1_interface, version));
    const Handle<wl_shm, wl_shm_destroy> shm(offered.bind<wl_shm>(wl_shm_interface, 1));
    if (!manager || !shm)
        throw temporaryFailure();

    Frame frame;
    const Handle<zwlr_screencopy_frame_v1, zwlr_screencopy_frame_v1_destroy> asked(
        zwlr_screencopy_manager_v1_capture_output(manager.get(), 0, output.object.get()));
    zwlr_screencopy_frame_v1_add_listener(asked.get(), &listener, &frame);
    connection.waitUntil([&] { return frame.state != Frame::State::asked; });
    if (frame.state == Frame::State::failed)
        throw temporaryFailure();

    const auto* format = std::ranges::find(formats, frame.format, &Format::shared);
    if (format == formats.end())
        throw Error(
            ScreenSource::errorDomain, 2, u"La pantalla usa un formato de color que no se puede leer."_s);
    auto memory = SharedMemory::create(shm.get(), frame.size, frame.stride, frame.format);
    if (!memory)
        throw temporaryFailure();
    zwlr_screencopy_frame_v1_copy(asked.get(), memory->buffer());
    connection.waitUntil([&] { return frame.state != Frame::State::described; });
    if (frame.state == Frame::State::failed)
        throw temporaryFailure();
    return output.upright(asPicture(std::move(memory), frame, *format));
}

} // namespace pintalux::wayland
