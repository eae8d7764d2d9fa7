// SPDX-License-Identifier: MIT
#include "platform/wayland/windowing/ViewportSurface.h"

#include "platform/desktop/DirectSurface.h"
#include "platform/wayland/SharedMemory.h"
#include "platform/wayland/ToolkitObjects.h"
#include "platform/wayland/windowing/LayerSurface.h"
#include "platform/wayland/windowing/ToolkitProtocols.h"

#include <QPainter>
#include <QPointer>
#include <QWidget>

#include <viewporter-client-protocol.h>

#include <array>
#include <cstring>

namespace pintalux::wayland {

namespace {

/// A picture of the whole window, and what of it is older than what is shown.
struct Buffer {
    std::unique_ptr<SharedMemory> memory; ///< null until it is needed
    bool isBusy = false;                  ///< the compositor reads it
    QRegion stale;                        ///< native pixels
};

/// Two pictures in turns: while the compositor shows one, the other is painted. What it lacks is copied from
/// the one that is shown, so that only what changed is painted, once a frame.
class ViewportSurface : public DirectSurface {
public:
    ViewportSurface(QWidget& window, LayerSurface& layer, QSize nativeSize)
        : window(window)
        , layer(&layer)
        , native(nativeSize)
    {
        QObject::connect(&layer, &LayerSurface::configured, &window, [&window] { window.update(); });
    }

    void paint(const QRegion& region, const Paint& paint) override
    {
        late += region;
        auto* surface = layer ? layer->surface() : nullptr;
        auto* next = surface && !frame ? freeBuffer() : nullptr;
        if (!next)
            return; // with the next frame
        auto damage = nativeRegion(std::exchange(late, {}));
        if (!latest)
            damage = QRect(QPoint(), native);
        bringUpToDate(*next, damage);
        for (const QRect& part : damage)
            paintPart(*next, part, paint);
        for (auto& buffer : buffers)
            if (&buffer != next)
                buffer.stale += damage;
        next->stale = {};
        show(surface, *next, damage);
    }

private:
    double scale() const { return double(native.width()) / window.width(); }
    int stride() const { return native.width() * int(sizeof(QRgb)); }

    // Whole pixels. Points that end at the window's edge end at the screen's: its size in points is rounded.
    QRegion nativeRegion(const QRegion& points) const
    {
        QRegion pixels;
        for (const QRect& part : points) {
            auto rect
                = QRectF(QPointF(part.topLeft()) * scale(), QSizeF(part.size()) * scale()).toAlignedRect();
            if (part.right() >= window.width() - 1)
                rect.setRight(native.width() - 1);
            if (part.bottom() >= window.height() - 1)
                rect.setBottom(native.height() - 1);
            pixels += rect;
        }
        return pixels & QRect(QPoint(), native);
    }

    Buffer* freeBuffer()
    {
        for (auto& buffer : buffers) {
            if (buffer.isBusy)
                continue;
            if (!buffer.memory)
                make(buffer);
            return buffer.memory ? &buffer : nullptr;
        }
        return nullptr;
    }

    void make(Buffer& buffer)
    {
        buffer.memory
            = SharedMemory::create(toolkitProtocols().shm, native, stride(), WL_SHM_FORMAT_XRGB8888);
        if (!buffer.memory)
            return;
        buffer.stale = QRect(QPoint(), native);
        static constexpr wl_buffer_listener listener{.release = [](void* self, wl_buffer* released) {
            static_cast<ViewportSurface*>(self)->release(released);
        }};
        wl_buffer_add_listener(buffer.memory->buffer(), &listener, this);
    }

    void release(wl_buffer* released)
    {
        for (auto& buffer : buffers)
            if (buffer.memory && buffer.memory->buffer() == released)
                buffer.isBusy = false;
        paintWhatIsLate();
    }

    void bringUpToDate(Buffer& buffer, const QRegion& damage) const
    {
        if (!latest || latest == &buffer)
            return; // all of it is painted, or the rest of it is what is shown
        for (const QRect& part : buffer.stale - damage) {
            const auto length = std::size_t(part.width()) * sizeof(QRgb);
            for (int y = part.top(); y <= part.bottom(); ++y) {
                const auto offset
                    = std::size_t(y) * std::size_t(stride()) + std::size_t(part.x()) * sizeof(QRgb);
                std::memcpy(buffer.memory->bytes() + offset, latest->memory->bytes() + offset, length);
            }
        }
    }

    // In bands that stay in the processor's cache while one thing is painted over the other.
    void paintPart(const Buffer& buffer, const QRect& part, const Paint& paint) const
    {
        constexpr int bandPixels = 1 << 18;
        const int rows = std::max(1, bandPixels / std::max(1, part.width()));
        for (int top = part.top(); top <= part.bottom(); top += rows) {
            const QRect band(part.x(), top, part.width(), std::min(rows, part.bottom() - top + 1));
            QImage image(buffer.memory->bytes() + std::size_t(band.y()) * std::size_t(stride())
                    + std::size_t(band.x()) * sizeof(QRgb),
                band.width(), band.height(), stride(), QImage::Format_RGB32);
            QPainter painter(&image);
            painter.translate(-band.topLeft());
            painter.scale(scale(), scale());
            paint(painter, QRectF(QPointF(band.topLeft()) / scale(), QSizeF(band.size()) / scale()));
        }
    }

    void show(wl_surface* surface, Buffer& buffer, const QRegion& damage)
    {
        if (!viewport && toolkitProtocols().viewporter)
            viewport.reset(wp_viewporter_get_viewport(toolkitProtocols().viewporter, surface));
        if (viewport)
            wp_viewport_set_destination(viewport.get(), window.width(), window.height());
        wl_surface_set_buffer_scale(surface, 1);
        wl_surface_attach(surface, buffer.memory->buffer(), 0, 0);
        for (const QRect& part : damage)
            wl_surface_damage_buffer(surface, part.x(), part.y(), part.width(), part.height());
        frame.reset(wl_surface_frame(surface));
        static constexpr wl_callback_listener listener{.done = [](void* self, wl_callback*, uint32_t) {
            auto* own = static_cast<ViewportSurface*>(self);
            own->frame.reset();
            own->paintWhatIsLate();
        }};
        wl_callback_add_listener(frame.get(), &listener, this);
        wl_surface_commit(surface);
        wl_display_flush(toolkitDisplay());
        buffer.isBusy = true;
        latest = &buffer;
    }

    void paintWhatIsLate()
    {
        if (!late.isEmpty())
            window.update(late);
    }

    QWidget& window;
    QPointer<LayerSurface> layer;
    QSize native;
    Handle<wp_viewport, wp_viewport_destroy> viewport;
    Handle<wl_callback, wl_callback_destroy> frame; ///< while the compositor has not shown the last picture
    std::array<Buffer, 2> buffers;
    const Buffer* latest = nullptr; ///< the one that was painted last
    QRegion late;                   ///< points that are still to be painted
};

} // namespace

std::unique_ptr<DirectSurface> makeViewportSurface(QWidget& window, QSize nativeSize)
{
    auto* layer = LayerSurface::of(window);
    if (!layer || nativeSize.isEmpty() || !toolkitProtocols().shm || !toolkitProtocols().scalesSurfaces)
        return nullptr;
    return std::make_unique<ViewportSurface>(window, *layer, nativeSize);
}

} // namespace pintalux::wayland
