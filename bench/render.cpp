// SPDX-License-Identifier: MIT

// Flattening a 4K document with 60 marks, and laying out text, beside a memory copy of the frame.

#include "model/Palette.h"
#include "platform/graphics/Geometry.h"
#include "render/Renderer.h"
#include "render/export/Exporter.h"

#include <QApplication>
#include <QColorSpace>

#include <benchmark/benchmark.h>

#include <cstring>
#include <numbers>
#include <vector>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

constexpr double scale = 2;

QImage frame4K()
{
    QImage image(3840, 2160, QImage::Format_RGB32);
    image.setColorSpace(QColorSpace::SRgb);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x & 255, y & 255, (x ^ y) & 255));
    return image;
}

/// Sixty marks: every kind in every style, two of them redactions, spread over the frame.
Document document60()
{
    Document document{frame4K(), {}, scale};
    for (int i = 0; i < 60; ++i) {
        const QPointF at(
            80 + 370 * (i % 10), 100 + 340 * (i / 10)); // NOLINT(bugprone-integer-division): rows
        Annotation mark{.start = at,
            .end = at + QPointF(320, 260),
            .color = Palette::annotation()[i % 8].color,
            .lineWidth = 8};
        mark.kind = AnnotationKind(i % 10);
        mark.fontSize = 56;
        mark.text = u"Anotación número %1"_s.arg(i);
        mark.boxWidth = 330;
        mark.filled = i % 20 >= 10;
        mark.number = i;
        mark.arrowStyle = ArrowStyle((i / 10) % 5);
        mark.blurStyle = BlurStyle(i % 20 >= 10);
        if (mark.kind == AnnotationKind::blur && i > 20)
            mark.kind = AnnotationKind::rectangle;
        if (mark.kind == AnnotationKind::image)
            mark.image = document.image.copy(0, 0, 640, 520);
        if (mark.kind == AnnotationKind::step || mark.filled)
            mark.pointer = at + QPointF(200, 240);
        for (int k = 0; k <= 80; ++k)
            mark.points << at + QPointF(4 * k, 130 + 110 * std::sin(k * std::numbers::pi / 20));
        document.annotations << mark;
    }
    return document;
}

void copyFrame(benchmark::State& state)
{
    const auto image = frame4K();
    std::vector<char> target(std::size_t(image.sizeInBytes()));
    for (auto _ : state) {
        std::memcpy(target.data(), image.constBits(), target.size());
        benchmark::ClobberMemory();
    }
}

void flatten(benchmark::State& state)
{
    const auto document = document60();
    const BeautifySettings beautify{.enabled = state.range(0) != 0};
    for (auto _ : state) {
        EffectCache cache; // as an export does: the filters run anew
        benchmark::DoNotOptimize(Exporter::render(document, beautify, cache));
    }
}

void flattenWithFilters(benchmark::State& state)
{
    const auto document = document60();
    EffectCache cache; // as the editor does: the filtered copies are there
    for (auto _ : state)
        benchmark::DoNotOptimize(Exporter::render(document, {}, cache));
}

void layOutText(benchmark::State& state)
{
    const TextAttributes attributes{Draw::roundedFont(32, FontWeight::bold), Qt::red, 1.05};
    int number = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(
            TextBlock(u"Una anotación de dos líneas, la %1.ª"_s.arg(++number), attributes, 300).size());
}

void measureTextAgain(benchmark::State& state)
{
    Annotation mark{.kind = AnnotationKind::text, .color = Qt::red};
    mark.text = u"Una anotación de dos líneas"_s;
    for (auto _ : state)
        benchmark::DoNotOptimize(mark.bounds());
}

BENCHMARK(copyFrame)->Unit(benchmark::kMillisecond);
BENCHMARK(flatten)->Arg(0)->Arg(1)->ArgName("framed")->Unit(benchmark::kMillisecond);
BENCHMARK(flattenWithFilters)->Unit(benchmark::kMillisecond);
BENCHMARK(layOutText)->Unit(benchmark::kMicrosecond);
BENCHMARK(measureTextAgain)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
