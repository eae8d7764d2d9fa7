// SPDX-License-Identifier: MIT
#include "platform/wayland/Outputs.h"

#include <QTransform>

namespace pintalux::wayland {

namespace {

constexpr uint32_t versionWithName = 4;

constexpr wl_output_listener listener{
    .geometry = [](void* output, wl_output*, int32_t, int32_t, int32_t, int32_t, int32_t, const char*,
                    const char*, int32_t transform) { static_cast<Output*>(output)->transform = transform; },
    .mode =
        [](void* output, wl_output*, uint32_t flags, int32_t width, int32_t height, int32_t) {
            if ((flags & WL_OUTPUT_MODE_CURRENT) != 0)
                static_cast<Output*>(output)->mode = {width, height};
        },
    .done = [](void*, wl_output*) {},
    .scale = [](void*, wl_output*, int32_t) {},
    .name = [](void* output, wl_output*,
                const char* name) { static_cast<Output*>(output)->name = QString::fromUtf8(name); },
    .description = [](void*, wl_output*, const char*) {},
};

// The numbers of the transforms count quarter turns in their lower two bits and mirror with the third.
constexpr int quarterTurns = 3;
constexpr int mirrored = 4;

} // namespace

QSize Output::nativeSize() const { return (transform & 1) != 0 ? mode.transposed() : mode; }

QImage Output::upright(const QImage& devicePixels) const
{
    // The desktop was mirrored first, and then turned the other way round.
    auto image = devicePixels;
    if ((transform & quarterTurns) != 0)
        image = image.transformed(QTransform().rotate(90.0 * (transform & quarterTurns)));
    if ((transform & mirrored) != 0)
        image = image.mirrored(true, false);
    return image;
}

Outputs readOutputs(const Connection& connection)
{
    Outputs outputs;
    for (auto* object : connection.offered().bindAll<wl_output>(wl_output_interface, versionWithName)) {
        auto& output = outputs.emplace_back(std::make_unique<Output>());
        output->object.reset(object);
        wl_output_add_listener(object, &listener, output.get());
    }
    connection.settle();
    return outputs;
}

} // namespace pintalux::wayland
