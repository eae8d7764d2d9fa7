// SPDX-License-Identifier: MIT

// Marks with any numbers that a marks file may hold, drawn: none makes the renderer fall, hang or eat the
// memory.

#include "render/export/Exporter.h"

#include <QGuiApplication>

#include <fuzzer/FuzzedDataProvider.h>

using namespace pintalux;

namespace {

/// Mostly near the picture, sometimes at the limits of a marks file.
double coordinate(FuzzedDataProvider& data)
{
    constexpr std::array limits{0.0, -0.0, 1e-9, 0.5, 1e6, -1e6, 999'999.9, 47.999, 32.0};
    return data.ConsumeBool() ? data.PickValueInArray(limits) : data.ConsumeIntegralInRange(-800, 800) / 8.0;
}

QPointF point(FuzzedDataProvider& data)
{
    const double x = coordinate(data);
    return {x, coordinate(data)};
}

template <StringEnum E> E oneOf(FuzzedDataProvider& data)
{
    return E(data.ConsumeIntegralInRange<int>(0, int(allCases<E>().size()) - 1));
}

Annotation mark(FuzzedDataProvider& data, const QImage& picture)
{
    Annotation mark;
    mark.id = QUuid(); // the jitter must not depend on the run
    mark.kind = oneOf<AnnotationKind>(data);
    mark.start = point(data);
    mark.end = point(data);
    for (int i = data.ConsumeIntegralInRange(0, 6); i > 0; --i)
        mark.points << point(data);
    mark.color = QColor::fromRgb(data.ConsumeIntegral<quint32>());
    mark.lineWidth = std::min(std::abs(coordinate(data)), 10000.0);
    mark.filled = data.ConsumeBool();
    mark.fontSize = std::clamp(std::abs(coordinate(data)), 0.1, 10000.0);
    mark.number = int(coordinate(data));
    mark.blurStyle = oneOf<BlurStyle>(data);
    mark.arrowStyle = oneOf<ArrowStyle>(data);
    mark.handwritten = data.ConsumeBool();
    if (data.ConsumeBool())
        mark.control = point(data);
    if (data.ConsumeBool())
        mark.pointer = point(data);
    if (data.ConsumeBool())
        mark.boxWidth = std::abs(coordinate(data));
    mark.image = picture;
    mark.text = QString::fromUtf8(data.ConsumeRandomLengthString(24));
    return mark;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QGuiApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const quint8* bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    static const auto picture = [] {
        QImage image(48, 32, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        return image;
    }();
    constexpr std::array scales{1.0, 0.1, 1.25, 2.0, 3.0, 16.0};
    Document document{picture, {}, data.PickValueInArray(scales)};
    const BeautifySettings frame{.enabled = data.ConsumeBool(),
        .gradient = data.ConsumeIntegralInRange(-2, 12),
        .padding = double(data.ConsumeIntegralInRange(0, 20)),
        .cornerRadius = double(data.ConsumeIntegralInRange(0, 2000)),
        .shadow = data.ConsumeBool(),
        .border = data.ConsumeBool()};
    while (data.remaining_bytes() > 0 && document.annotations.size() < 8)
        document.annotations << mark(data, picture);
    EffectCache cache;
    return Exporter::render(document, frame, cache).isNull() ? -1 : 0;
}
