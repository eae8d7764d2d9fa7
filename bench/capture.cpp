// SPDX-License-Identifier: MIT

// Taking a 4K screen, beside a memory copy of the same frame. The budget is seven times the copy.

#include "DisplaySession.h"
#include "capture/ScreenCapture.h"
#include "platform/x11/capture/X11ScreenSource.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

using namespace pintalux;

namespace {

constexpr QSize frameSize(3840, 2160);

void copyFrame(benchmark::State& state)
{
    const std::vector<char> from(std::size_t(frameSize.width()) * std::size_t(frameSize.height()) * 4, 1);
    std::vector<char> to(from.size());
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), from.size());
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
}

void takeScreen(benchmark::State& state)
{
    X11ScreenSource source;
    const auto content = source.shareableContent(toolkitScreens());
    for (auto _ : state) {
        const auto shot = source.screenshot(content.screens.at(0));
        benchmark::DoNotOptimize(shot.image.constBits());
        if (shot.image.size() != frameSize)
            state.SkipWithError("the picture has another size");
    }
}

// From the call to the result: the list of windows and the way through the worker thread included.
void freezeScreens(benchmark::State& state)
{
    for (auto _ : state) {
        const auto frozen = ScreenCapture::freezeAllDisplays().takeResult();
        benchmark::DoNotOptimize(frozen.displays.at(0).image.constBits());
    }
}

BENCHMARK(copyFrame)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(takeScreen)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(freezeScreens)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    const test::DisplaySession session({.size = frameSize});
    session.enter();
    const QGuiApplication application(argc, argv);
    ScreenCapture::setSource(std::make_shared<X11ScreenSource>());
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
