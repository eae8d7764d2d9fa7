// SPDX-License-Identifier: MIT

// The pixel kernels on whole 4K frames, each beside a memory copy of the same frame. Prints a table.

#include "Pictures.h"
#include "platform/image/ImageFilter.h"
#include "platform/image/PngEncoder.h"
#include "render/EffectCache.h"

#include <QBuffer>
#include <QColorSpace>
#include <QGuiApplication>
#include <QImageWriter>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <functional>
#include <vector>

namespace {

using namespace pintalux;

/// Milliseconds, as the median of some rounds.
struct Cost {
    double wall;      ///< by the clock: what a person waits, and what other programs disturb
    double processor; ///< of all threads together
};

Cost measure(int rounds, const std::function<void()>& work)
{
    std::vector<double> wall;
    std::vector<double> processor;
    for (int round = 0; round <= rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        const std::clock_t processorStart = std::clock();
        work();
        const std::clock_t processorEnd = std::clock();
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
        if (round == 0)
            continue; // it warms up
        wall.push_back(time.count());
        processor.push_back(1e3 * double(processorEnd - processorStart) / CLOCKS_PER_SEC);
    }
    std::ranges::sort(wall);
    std::ranges::sort(processor);
    return {wall[wall.size() / 2], processor[processor.size() / 2]};
}

class Table {
public:
    explicit Table(const QImage& frame)
        : frame(frame)
        , copy(frame.copy())
    {
    }

    /// One line; `budget` in milliseconds, 0 for none.
    double line(const char* name, double budget, const std::function<void()>& work, int rounds = 15)
    {
        const auto [copyTime, ignored] = measure(
            rounds, [&] { std::memcpy(copy.bits(), frame.constBits(), std::size_t(frame.sizeInBytes())); });
        const auto [time, processor] = measure(rounds, work);
        std::printf("%-32s %8.2f ms  processor %8.2f ms  copy %5.2f ms", name, time, processor, copyTime);
        if (budget > 0)
            std::printf("  budget %6.1f ms %s", budget, time <= budget ? "met" : "MISSED");
        std::printf("\n");
        return time;
    }

private:
    QImage frame;
    QImage copy;
};

/// A redaction of the whole frame, all made anew.
void benchRedactions(const QImage& frame, Table& table)
{
    for (const double scale : {1.0, 2.0}) {
        for (const auto style : allCases<BlurStyle>()) {
            const bool cells = style == BlurStyle::pixelate;
            const auto name = QString::asprintf("%s, scale %g", cells ? "pixellate" : "blur", scale);
            table.line(qPrintable(name), cells ? 12 : 60, [&, style = style] {
                EffectCache cache;
                cache.image(style, frame, scale);
            });
        }
        const auto name = QString::asprintf("cells alone, scale %g", scale);
        table.line(qPrintable(name), 0, [&] { RedactionCells(frame, EffectCache::cellSide(scale)); });
    }
}

void benchMasks(Table& table)
{
    struct Case {
        QSize size;
        double sigma;
    };
    for (const auto& [size, sigma] : {Case{{100, 100}, 3}, {{100, 100}, 20}, {{400, 300}, 8},
             {{1000, 700}, 1}, {{1000, 700}, 8}, {{1000, 700}, 50}, {{3840, 2160}, 44}}) {
        QImage mask(size, QImage::Format_Alpha8);
        mask.fill(0);
        QPainter painter(&mask);
        painter.drawEllipse(mask.rect());
        painter.end();
        const auto name = QString::asprintf("mask %d x %d, sigma %g", size.width(), size.height(), sigma);
        table.line(qPrintable(name), 0, [&, s = sigma] { ImageFilter::blurMask(mask, s); });
    }
}

QByteArray toolkitPng(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter(&buffer, "png").write(image);
    return bytes;
}

void benchPng(const char* name, const QImage& picture)
{
    Table table(picture);
    QByteArray theirs, ours;
    const double theirTime = table.line(
        qPrintable(QString::asprintf("PNG %s, toolkit", name)), 0, [&] { theirs = toolkitPng(picture); }, 3);
    table.line(
        qPrintable(QString::asprintf("PNG %s, ours", name)), theirTime / 4,
        [&] { ours = PngEncoder::encode(picture, 2).value(); }, 9);
    std::printf("%-32s %8lld KiB toolkit %lld KiB   %s\n", "    size", ours.size() / 1024,
        theirs.size() / 1024, ours.size() <= theirs.size() ? "met" : "MISSED");
    QImage read;
    read.loadFromData(ours);
    read.setColorSpace(picture.colorSpace());
    if (read.convertToFormat(picture.format()) != picture)
        std::printf("    NOT THE SAME PIXELS\n");
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QImage screen = bench::screenPicture();
    benchPng("screen", screen);
    benchPng("photo", bench::photoPicture());
    if (argc > 1)
        return 0;
    Table table(screen);
    benchRedactions(screen, table);
    benchMasks(table);
}
