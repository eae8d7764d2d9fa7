// SPDX-License-Identifier: MIT

// The editor's canvas on a 4K capture with 60 marks in a window of 1600 × 1000: from a pointer event to the
// painted window, from opening to the first paint, and the memory that editor and history take.

#include "Pictures.h"
#include "editor/canvas/CanvasView.h"
#include "model/Palette.h"
#include "platform/base/UserDefaults.h"

#include <QApplication>
#include <QColorSpace>
#include <QElapsedTimer>
#include <QFile>
#include <QMouseEvent>

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <numbers>
#include <vector>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

constexpr double pixelScale = 2;
const QSize windowSize(1600, 1000);

QImage capture()
{
    auto image = bench::screenPicture();
    image.setColorSpace(QColorSpace::SRgb);
    return image;
}

/// The `i`th of sixty marks: every kind in every style, two redactions among them, spread over the frame.
Annotation mark(int i, const QImage& inserted)
{
    const QPointF at(80 + 370 * (i % 10), 100 + 340 * (i / 10)); // NOLINT(bugprone-integer-division): rows
    Annotation mark{.kind = AnnotationKind(i % 10),
        .start = at,
        .end = at + QPointF(320, 260),
        .color = Palette::annotation()[i % 8].color,
        .lineWidth = 8,
        .filled = i % 20 >= 10,
        .text = u"Anotación número %1"_s.arg(i),
        .fontSize = 56,
        .number = i,
        .blurStyle = BlurStyle(i % 20 >= 10),
        .arrowStyle = ArrowStyle((i / 10) % 5),
        .boxWidth = 330};
    if (mark.kind == AnnotationKind::blur && i > 20)
        mark.kind = AnnotationKind::rectangle;
    if (mark.kind == AnnotationKind::image)
        mark.image = inserted;
    if (mark.kind == AnnotationKind::step || mark.filled)
        mark.pointer = at + QPointF(200, 240);
    for (int k = 0; k <= 80; ++k)
        mark.points << at + QPointF(4 * k, 130 + 110 * std::sin(k * std::numbers::pi / 20));
    return mark;
}

/// One open editor.
struct Editor {
    explicit Editor(const QImage& image, bool withMarks = true)
        : model({image, pixelScale, {}}, settings)
        , view(model)
    {
        if (withMarks)
            model.updateWithoutUndo([&](Document& document) {
                const auto inserted = image.copy(0, 0, 640, 520);
                for (int i = 0; i < 60; ++i)
                    document.annotations << mark(i, inserted);
            });
        model.setTool(Tool::select);
        view.resize(windowSize);
        view.show();
        QApplication::processEvents();
        paint();
    }

    void send(QEvent::Type type, QPointF documentPoint)
    {
        const auto at = view.viewPoint(documentPoint);
        const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, view.mapToGlobal(at), button, Qt::LeftButton, {});
        QApplication::sendEvent(&view, &event);
        paint();
    }

    /// Paints what waits to be painted, without waiting for the display's next frame.
    void paint()
    {
        QApplication::sendPostedEvents();
        QEvent frame(QEvent::UpdateRequest);
        QApplication::sendEvent(&view, &frame);
    }

    UserDefaults store = UserDefaults::inMemory();
    Settings settings{store};
    EditorModel model;
    CanvasView view;
};

double percentile(std::vector<double> values, double part)
{
    std::sort(values.begin(), values.end());
    return values[std::size_t(double(values.size() - 1) * part)];
}

/// Bytes of this process that are in memory and its own.
double residentMegabytes()
{
    malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return double(file.readAll().split(' ').at(1).toLongLong()) * double(sysconf(_SC_PAGESIZE)) / 1e6;
}

void copyFrame(benchmark::State& state)
{
    const auto image = capture();
    std::vector<char> target(std::size_t(image.sizeInBytes()));
    for (auto _ : state) {
        std::memcpy(target.data(), image.constBits(), target.size());
        benchmark::ClobberMemory();
    }
}

/// Drags the mark with this number about; the argument −1 stands for each in turn.
void dragMark(benchmark::State& state)
{
    Editor editor(capture());
    QElapsedTimer clock;
    std::vector<double> times;
    double begin = 0;
    double end = 0;
    int turn = 0;
    for (auto _ : state) {
        const auto index = state.range(0) < 0 ? turn++ % 60 : state.range(0);
        const auto chosen = editor.model.doc().annotations[index];
        const auto from = chosen.bounds().center();
        editor.model.setSelectedID(chosen.id);
        // The press is where the mark is hit; frames are hit on their edge.
        QPointF at = from;
        for (double x = chosen.bounds().left(); x < from.x(); x += 4)
            if (chosen.hitTest({x, from.y()}, 4)) {
                at = {x, from.y()};
                break;
            }
        clock.start();
        editor.send(QEvent::MouseButtonPress, at);
        begin = std::max(begin, double(clock.nsecsElapsed()) / 1e6);
        for (int i = 1; i <= 60; ++i) {
            clock.start();
            editor.send(QEvent::MouseMove, at + QPointF(6 * i, 120 * std::sin(i / 9.0)));
            const double elapsed = double(clock.nsecsElapsed()) / 1e6;
            if (i > 1)
                times.push_back(elapsed);
            else
                begin = std::max(begin, elapsed);
        }
        clock.start();
        editor.send(QEvent::MouseButtonRelease, at);
        end = std::max(end, double(clock.nsecsElapsed()) / 1e6);
        editor.model.undo();
        QApplication::processEvents();
    }
    state.counters["median_ms"] = percentile(times, 0.5);
    state.counters["p95_ms"] = percentile(times, 0.95);
    state.counters["max_ms"] = percentile(times, 1);
    state.counters["first_max_ms"] = begin;
    state.counters["release_max_ms"] = end;
}

/// Draws one long stroke with the pen.
void drawStroke(benchmark::State& state)
{
    Editor editor(capture());
    editor.model.setTool(Tool::pen);
    QElapsedTimer clock;
    std::vector<double> times;
    for (auto _ : state) {
        editor.send(QEvent::MouseButtonPress, {100, 1000});
        for (int i = 1; i <= 600; ++i) {
            clock.start();
            editor.send(QEvent::MouseMove, {100 + 6.0 * i, 1000 + 600 * std::sin(i / 20.0)});
            times.push_back(double(clock.nsecsElapsed()) / 1e6);
        }
        editor.send(QEvent::MouseButtonRelease, {3700, 1000});
        editor.model.undo();
    }
    state.counters["median_ms"] = percentile(times, 0.5);
    state.counters["p95_ms"] = percentile(times, 0.95);
}

/// Hides nearly all of a capture just opened, in the style of the argument: the first event that shows the
/// redaction, and all three together. 40 ms may pass from the release to the screen.
void firstRedaction(benchmark::State& state)
{
    QElapsedTimer clock;
    std::vector<double> slowest;
    std::vector<double> together;
    for (auto _ : state) {
        Editor editor(capture(), false);
        editor.model.setTool(Tool::blur);
        editor.model.setBlurStyle(BlurStyle(state.range(0)));
        std::vector<double> times;
        const auto timed = [&](QEvent::Type type, QPointF at) {
            clock.start();
            editor.send(type, at);
            times.push_back(double(clock.nsecsElapsed()) / 1e6);
        };
        timed(QEvent::MouseButtonPress, {60, 60});
        timed(QEvent::MouseMove, {3700, 2100});
        timed(QEvent::MouseButtonRelease, {3700, 2100});
        slowest.push_back(*std::ranges::max_element(times));
        together.push_back(times[0] + times[1] + times[2]);
    }
    state.counters["slowest_event_ms"] = percentile(slowest, 0.5);
    state.counters["together_ms"] = percentile(together, 0.5);
}

void openCapture(benchmark::State& state)
{
    const auto image = capture();
    for (auto _ : state)
        const Editor editor(image, false);
}

void resizeWindow(benchmark::State& state)
{
    Editor editor(capture());
    int step = 0;
    for (auto _ : state) {
        editor.view.resize(windowSize - QSize(++step % 40, 0));
        editor.paint();
    }
}

/// Resident memory that an editor adds, its picture, the cells of its redactions and 200 undo steps included.
void memory(benchmark::State& state)
{
    double editorMegabytes = 0;
    double historyMegabytes = 0;
    for (auto _ : state) {
        {
            const Editor warm(capture());
        }
        const double before = residentMegabytes();
        Editor editor(capture());
        QApplication::processEvents();
        const double opened = residentMegabytes();
        for (int i = 0; i < 200; ++i) {
            auto snapshot = editor.model.doc();
            const auto id = snapshot.annotations[i % 60].id;
            editor.model.updateWithoutUndo(id, [](Annotation& moved) { moved.offset({3, 2}); });
            editor.model.pushUndoCheckpoint(std::move(snapshot));
        }
        QApplication::processEvents();
        editorMegabytes = opened - before;
        historyMegabytes = residentMegabytes() - opened;
    }
    state.counters["editor_MB"] = editorMegabytes;
    state.counters["undo200_MB"] = historyMegabytes;
}

} // namespace

BENCHMARK(copyFrame)->Unit(benchmark::kMillisecond);
BENCHMARK(dragMark)->Arg(-1)->Arg(0)->Arg(30)->Unit(benchmark::kMillisecond)->Iterations(60);
BENCHMARK(drawStroke)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(firstRedaction)->Arg(0)->Arg(1)->ArgName("style")->Unit(benchmark::kMillisecond)->Iterations(9);
BENCHMARK(openCapture)->Unit(benchmark::kMillisecond);
BENCHMARK(resizeWindow)->Unit(benchmark::kMillisecond);
BENCHMARK(memory)->Unit(benchmark::kMillisecond)->Iterations(1);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
