// The pixel kernels on whole 4K frames, each beside a memory copy of the same frame. Prints a table.

#include "Pictures.h"
#include "platform/ImageFilter.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImageWriter>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <vector>

namespace {

using namespace pintalux;

double median(int rounds, const std::function<void()>& work)
{
    std::vector<double> times;
    for (int round = 0; round <= rounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
        if (round > 0) // the first one warms up
            times.push_back(time.count());
    }
    std::ranges::sort(times);
    return times[times.size() / 2];
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
        const double copyTime = median(
            rounds, [&] { std::memcpy(copy.bits(), frame.constBits(), std::size_t(frame.sizeInBytes())); });
        const double time = median(rounds, work);
        std::printf("%-44s %8.2f ms   copy %5.2f ms", name, time, copyTime);
        if (budget > 0)
            std::printf("   budget %6.1f ms %s", budget, time <= budget ? "met" : "MISSED");
        std::printf("\n");
        return time;
    }

private:
    QImage frame;
    QImage copy;
};

void benchFilters(const QImage& frame, Table& table)
{
    table.line("pixellate, cells of 9", 12, [&] { ImageFilter::pixellate(frame, 9); });
    table.line("pixellate, cells of 18", 12, [&] { ImageFilter::pixellate(frame, 18); });
    for (const double sigma : {1.0, 3.0, 6.0, 12.0, 24.0, 60.0, 200.0})
        table.line(qPrintable(QString::asprintf("Gaussian blur, sigma %g", sigma)), sigma == 24 ? 60 : 0,
            [&] { ImageFilter::gaussianBlur(frame, sigma); });
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

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QImage screen = bench::screenPicture();
    Table table(screen);
    benchFilters(screen, table);
    benchMasks(table);
}
