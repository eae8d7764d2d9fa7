// SPDX-License-Identifier: MIT
#include "platform/x11/windowing/BandSurface.h"

#include "platform/desktop/DirectSurface.h"
#include "platform/x11/Toolkit.h"
#include "platform/x11/windowing/SharedBands.h"

#include <QPainter>
#include <QWidget>

namespace pintalux::x11 {

namespace {

class BandSurface : public DirectSurface {
public:
    BandSurface(const QWidget& window, std::unique_ptr<SharedBands> memory)
        : window(window)
        , bands(std::move(memory))
    {
    }

    void paint(const QRegion& region, const Paint& paint) override
    {
        const double scale = window.devicePixelRatioF();
        for (const QRect& part : region)
            paintPart(
                QRectF(QPointF(part.topLeft()) * scale, QSizeF(part.size()) * scale).toAlignedRect(), paint);
    }

private:
    void paintPart(const QRect& nativePart, const Paint& paint)
    {
        const int rows = std::max(1, bands->pixels() / std::max(1, nativePart.width()));
        for (int top = 0; top < nativePart.height(); top += rows) {
            const QRect band(nativePart.x(), nativePart.y() + top, nativePart.width(),
                std::min(rows, nativePart.height() - top));
            auto image = bands->next(band.size());
            if (image.isNull())
                return;
            paintBand(image, band, paint);
            bands->show(band.topLeft());
        }
    }

    void paintBand(QImage& image, const QRect& band, const Paint& paint) const
    {
        const double scale = window.devicePixelRatioF();
        QPainter painter(&image);
        painter.translate(-band.topLeft());
        painter.scale(scale, scale);
        paint(painter, QRectF(QPointF(band.topLeft()) / scale, QSizeF(band.size()) / scale));
    }

    const QWidget& window;
    std::unique_ptr<SharedBands> bands;
};

} // namespace

std::unique_ptr<DirectSurface> makeBandSurface(const QWidget& window)
{
    auto* connection = toolkitConnection();
    if (!connection || !window.internalWinId())
        return nullptr;
    auto bands = SharedBands::create(connection, xcb_window_t(window.internalWinId()));
    return bands ? std::make_unique<BandSurface>(window, std::move(bands)) : nullptr;
}

} // namespace pintalux::x11
