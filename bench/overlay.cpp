// SPDX-License-Identifier: MIT

// What a person waits for on the overlay, at 3840 × 2160: its first painting and the repaint of a pointer
// move.

#include "capture/CaptureOverlay.h"
#include "capture/OverlayWindow.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstring>
#include <fstream>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

constexpr QSize frame(3840, 2160);

FrozenScreens frozenScreens()
{
    const auto* screen = QGuiApplication::primaryScreen();
    QImage image(frame, QImage::Format_RGB32);
    for (int y = 0; y < frame.height(); ++y)
        for (int x = 0; x < frame.width(); ++x)
            image.setPixel(x, y, qRgb(x & 0xff, y & 0xff, (x / 40 + y / 40) & 0xff));
    FrozenScreens frozen;
    const QRectF points(screen->geometry());
    const double scale = screen->devicePixelRatio();
    frozen.displays = {{{screen->name(), points, {{0, 0}, frame}, scale, true}, image, scale}};
    WindowInfo info;
    info.frame = points.adjusted(100, 100, -100, -100);
    frozen.windows = {{info, info.frame, u"Navegador — Página de inicio"_s}};
    return frozen;
}

void send(OverlayView& view, QEvent::Type type, QPointF at, Qt::MouseButtons held)
{
    QMouseEvent event(
        type, at, at, type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, held, Qt::NoModifier);
    QApplication::sendEvent(&view, &event);
}

void copyOfAFrame(benchmark::State& state)
{
    const auto image = frozenScreens().displays[0].image;
    QImage target(frame, QImage::Format_RGB32);
    for (auto _ : state)
        std::memcpy(target.bits(), image.constBits(), std::size_t(image.sizeInBytes()));
}

void showAndPaint(benchmark::State& state)
{
    const auto frozen = frozenScreens();
    for (auto _ : state) {
        CaptureOverlayController overlay(OverlayMode::area, frozen, nullptr);
        overlay.show();
        QCoreApplication::processEvents();
        overlay.windows()[0]->repaint();
        state.PauseTiming();
        overlay.finish(Outcome::Cancelled());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        state.ResumeTiming();
    }
}

/// A pointer that goes round; `pressed` drags a selection whose other end stays.
void pointerMoves(benchmark::State& state, OverlayMode mode, bool pressed)
{
    CaptureOverlayController overlay(mode, frozenScreens(), nullptr);
    overlay.show();
    QCoreApplication::processEvents();
    auto& view = *overlay.windows()[0];
    if (pressed)
        send(view, QEvent::MouseButtonPress, {30, 30}, Qt::LeftButton);
    int step = 0;
    for (auto _ : state) {
        const double along = (step++ % 200) * 3.5;
        const QPointF at(view.width() / 2 + along, view.height() / 2 + along / 2);
        send(view, QEvent::MouseMove, at, pressed ? Qt::LeftButton : Qt::NoButton);
        QCoreApplication::sendPostedEvents(); // the repaint
    }
}

} // namespace

BENCHMARK(copyOfAFrame)->Unit(benchmark::kMillisecond);
BENCHMARK(showAndPaint)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK_CAPTURE(pointerMoves, selecting, OverlayMode::area, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(pointerMoves, loupe, OverlayMode::color, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(pointerMoves, window, OverlayMode::window, false)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    QTemporaryDir folder;
    const auto file = folder.filePath(u"screens.json"_s);
    std::ofstream(file.toStdString()) << R"({"screens": [{"name": "4K", "x": 0, "y": 0, "width": 3840,
        "height": 2160, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + file.toLocal8Bit());
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
