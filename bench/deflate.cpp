// SPDX-License-Identifier: MIT

// The segments of a PNG as the program compresses them, beside ISA-L's deflate where that is installed:
// processor time of one thread and size, for a 4K picture of each kind.

#include "Pictures.h"
#include "platform/image/DeflateSegment.h"
#include "platform/image/PngFilter.h"

#include <QGuiApplication>

#ifdef WITH_ISAL
#include <isa-l/igzip_lib.h>
#endif

#include <cstdio>
#include <ctime>
#include <functional>
#include <span>
#include <vector>

using namespace pintalux;

namespace {

using Bytes = std::vector<std::uint8_t>;
using Compress = std::function<std::size_t(std::span<const std::uint8_t>)>; ///< the compressed size

constexpr std::size_t segmentLength = 1'500'000;
constexpr int rounds = 7;

/// The rows of a picture as PNG has them, all with one filter.
Bytes filteredRows(const QImage& picture, PngFilter filter)
{
    constexpr std::size_t zerosBefore = 4;
    const auto length = std::size_t(picture.width()) * 3;
    Bytes above(zerosBefore + length), row(zerosBefore + length), rows;
    rows.resize((length + 1) * std::size_t(picture.height()));
    auto* target = rows.data();
    for (int y = 0; y < picture.height(); ++y, target += length + 1, above.swap(row)) {
        packRgb(
            {reinterpret_cast<const std::uint32_t*>(picture.constScanLine(y)), std::size_t(picture.width())},
            row.data() + zerosBefore);
        *target = std::uint8_t(filter);
        filterRow(filter, {row.data() + zerosBefore, length}, above.data() + zerosBefore, 3, target + 1);
    }
    return rows;
}

double processorMilliseconds()
{
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

void measure(const char* name, std::span<const std::uint8_t> bytes, const Compress& compress)
{
    double best = 1e9;
    std::size_t size = 0;
    for (int round = 0; round < rounds; ++round) {
        size = 0;
        const double start = processorMilliseconds();
        for (std::size_t at = 0; at < bytes.size(); at += segmentLength)
            size += compress(bytes.subspan(at, std::min(segmentLength, bytes.size() - at)));
        best = std::min(best, processorMilliseconds() - start);
    }
    std::printf("  %-22s %7.1f ms %9.0f KB\n", name, best, double(size) / 1024);
}

#ifdef WITH_ISAL
Compress isal(int level)
{
    constexpr std::array<std::uint32_t, 4> memory{
        ISAL_DEF_LVL0_DEFAULT, ISAL_DEF_LVL1_DEFAULT, ISAL_DEF_LVL2_DEFAULT, ISAL_DEF_LVL3_DEFAULT};
    return [level, work = Bytes(memory[std::size_t(level)]), out = Bytes(2 * segmentLength)](
               std::span<const std::uint8_t> data) mutable {
        isal_zstream stream;
        isal_deflate_init(&stream);
        stream.level = std::uint32_t(level);
        stream.level_buf = work.data();
        stream.level_buf_size = std::uint32_t(work.size());
        stream.flush = FULL_FLUSH;
        stream.end_of_stream = 0;
        stream.next_in = const_cast<std::uint8_t*>(data.data());
        stream.avail_in = std::uint32_t(data.size());
        stream.next_out = out.data();
        stream.avail_out = std::uint32_t(out.size());
        isal_deflate(&stream);
        return std::size_t(stream.total_out);
    };
}
#endif

void compare(const char* name, const QImage& picture, PngFilter filter)
{
    const auto rows = filteredRows(picture, filter);
    std::printf("%s, %.1f MB\n", name, double(rows.size()) / 1e6);
    for (const int level : {1, 3, 5}) {
        SegmentCompressor compressor(level);
        measure(qPrintable(QString::asprintf("segments, level %d", level)), rows,
            [&](std::span<const std::uint8_t> data) { return compressor.compress(data).size(); });
    }
#ifdef WITH_ISAL
    for (const int level : {0, 1, 2, 3})
        measure(qPrintable(QString::asprintf("ISA-L, level %d", level)), rows, isal(level));
#endif
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    compare("Screen, unfiltered", bench::screenPicture(), PngFilter::none);
    compare("Photograph, Paeth", bench::photoPicture(), PngFilter::paeth);
#ifndef WITH_ISAL
    std::printf("ISA-L is not installed (libisal-dev).\n");
#endif
    return 0;
}
