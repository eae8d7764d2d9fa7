// SPDX-License-Identifier: MIT
#include "platform/image/PngEncoder.h"

#include "platform/base/Parallel.h"
#include "platform/image/DeflateSegment.h"
#include "platform/image/PngFilter.h"

#include <QColorSpace>
#include <QtEndian>

#include <libdeflate.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <vector>

// The picture is cut into segments of rows, which are filtered and compressed on all processors; every
// segment becomes an IDAT chunk of its own. What screens show repeats itself and compresses best as it is;
// photographs never repeat a byte and want a filter. Which of the two it is is asked for every few rows, as
// screens show photographs too.

namespace pintalux::PngEncoder {

namespace {

/// Rows that are filtered, or not, together: changing row by row would hide repetitions from the compressor.
constexpr int bandHeight = 16;
/// A band is left unfiltered when at least this part of its pixels repeats a neighbour.
constexpr double repetitionOfScreens = 0.5;
/// Bytes of pixels in a segment: few enough to balance the threads, enough not to lose repetitions.
constexpr std::size_t segmentLength = 1'500'000;
/// The first level at which photographs are no larger than the toolkit's; for screens it costs no time.
///
/// ISA-L compresses a 4K screen in 8 ms of processor time instead of 51 and a photograph in 75 instead of
/// 620, but its files are 30 and 10 % larger (bench/deflate.cpp): more than the toolkit's. Hardly anybody
/// waits for these threads, and a file is kept, sent and read for years.
constexpr int compressionLevel = 5;
/// What a filter reads to the left of the first pixel.
constexpr std::size_t zerosBefore = 4;

/// The pixels as they will be read: `RGB32`, or 32-bit with transparency.
struct Source {
    QImage image;
    bool opaque;

    std::size_t bytesPerPixel() const { return opaque ? 3 : 4; }
    std::size_t rowLength() const { return std::size_t(image.width()) * bytesPerPixel(); }
};

std::span<const std::uint32_t> pixels(const QImage& image, int y)
{
    return {reinterpret_cast<const std::uint32_t*>(image.constScanLine(y)), std::size_t(image.width())};
}

Source prepare(QImage image)
{
    if (image.colorSpace().isValid() && image.colorSpace() != QColorSpace(QColorSpace::SRgb))
        image = image.convertedToColorSpace(QColorSpace::SRgb);
    if (!image.hasAlphaChannel())
        return {image.convertToFormat(QImage::Format_RGB32), true};
    if (image.format() != QImage::Format_ARGB32_Premultiplied)
        image.convertTo(QImage::Format_ARGB32);
    bool opaque = !image.isNull();
    for (int y = 0; opaque && y < image.height(); ++y)
        opaque = allOpaque(pixels(image, y));
    return {image, opaque};
}

/// A part of the compressed picture, ready for the file.
struct Segment {
    std::vector<std::uint8_t> data;
    std::uint32_t adler = 1; ///< the checksum of the bytes before compression
    std::size_t length = 0;  ///< their number
};

/// Reads rows as PNG has them.
class RowReader {
public:
    explicit RowReader(const Source& source)
        : source(source)
    {
    }

    /// Rows are asked for from top to bottom.
    void read(int y, std::uint8_t* target)
    {
        if (source.opaque)
            return packRgb(pixels(source.image, y), target);
        if (y < straightTop || y >= straightTop + straight.height())
            convertBand(y);
        std::memcpy(target, straight.constScanLine(y - straightTop), source.rowLength());
    }

private:
    void convertBand(int top)
    {
        const QImage& image = source.image;
        const int height = std::min(bandHeight, image.height() - top);
        const QImage band(
            image.constScanLine(top), image.width(), height, image.bytesPerLine(), image.format());
        straight = band.convertToFormat(QImage::Format_RGBA8888);
        straightTop = top;
        if (straight.isNull())
            throw std::bad_alloc();
    }

    const Source& source;
    QImage straight; ///< a band with its transparency not premultiplied
    int straightTop = 0;
};

/// True when a band's pixels repeat their neighbours as those of screens do.
bool repeatsItself(const QImage& image, int first, int last)
{
    std::size_t repeated = 0;
    for (int y = first; y < last; ++y)
        repeated += repeatedPixels(pixels(image, y), y > 0 ? pixels(image, y - 1).data() : nullptr);
    return double(repeated) >= repetitionOfScreens * image.width() * (last - first);
}

/// Turns rows into segments, one after another; one per thread.
class SegmentEncoder {
public:
    explicit SegmentEncoder(const Source& source)
        : source(source)
        , reader(source)
        , above(zerosBefore + source.rowLength())
        , current(zerosBefore + source.rowLength())
        , candidate(source.rowLength())
        , best(source.rowLength())
    {
    }

    Segment encode(int first, int last)
    {
        filtered.clear();
        filtered.reserve((source.rowLength() + 1) * std::size_t(last - first));
        if (first > 0)
            reader.read(first - 1, above.data() + zerosBefore);
        for (int top = first; top < last; top += bandHeight) {
            const int bottom = std::min(top + bandHeight, last);
            const bool plain = repeatsItself(source.image, top, bottom);
            for (int y = top; y < bottom; ++y)
                append(y, plain);
        }
        return {compressor.compress(filtered), libdeflate_adler32(1, filtered.data(), filtered.size()),
            filtered.size()};
    }

private:
    /// Appends row `y`: as it is, or filtered with what brings its bytes nearest to zero.
    void append(int y, bool plain)
    {
        reader.read(y, current.data() + zerosBefore);
        const std::span row = std::span<const std::uint8_t>(current).subspan(zerosBefore);
        if (plain) {
            store(PngFilter::none, row);
        } else {
            const PngFilter filter = filterIntoBest(row);
            store(filter, best);
        }
        above.swap(current);
    }

    PngFilter filterIntoBest(std::span<const std::uint8_t> row)
    {
        PngFilter chosen = PngFilter::none;
        std::uint64_t least = std::numeric_limits<std::uint64_t>::max();
        for (const PngFilter filter : {PngFilter::sub, PngFilter::up, PngFilter::average, PngFilter::paeth}) {
            filterRow(filter, row, above.data() + zerosBefore, source.bytesPerPixel(), candidate.data());
            const std::uint64_t distance = distanceFromZero(candidate);
            if (distance >= least)
                continue;
            least = distance;
            chosen = filter;
            best.swap(candidate);
        }
        return chosen;
    }

    void store(PngFilter filter, std::span<const std::uint8_t> row)
    {
        filtered.push_back(static_cast<std::uint8_t>(filter));
        filtered.insert(filtered.end(), row.begin(), row.end());
    }

    const Source& source;
    RowReader reader;
    std::vector<std::uint8_t> above; ///< with zeros before its first byte, as has the next
    std::vector<std::uint8_t> current;
    std::vector<std::uint8_t> candidate;
    std::vector<std::uint8_t> best;
    std::vector<std::uint8_t> filtered; ///< rows with their filter's number before them
    SegmentCompressor compressor{compressionLevel};
};

/// The checksum of two runs of bytes after each other, from theirs.
std::uint32_t joinedAdler(std::uint32_t first, std::uint32_t second, std::size_t secondLength)
{
    constexpr std::uint64_t base = 65521;
    const std::uint64_t a1 = first & 0xffff, b1 = first >> 16, a2 = second & 0xffff, b2 = second >> 16;
    const std::uint64_t a = (a1 + a2 + base - 1) % base;
    const std::uint64_t b = (b1 + b2 + secondLength % base * (a1 + base - 1)) % base;
    return static_cast<std::uint32_t>(b << 16 | a);
}

void appendNumber(QByteArray& file, std::uint32_t number)
{
    const quint32 bigEndian = qToBigEndian(number);
    file.append(reinterpret_cast<const char*>(&bigEndian), sizeof bigEndian);
}

template <typename... Parts> void appendChunk(QByteArray& file, const char* type, const Parts&... parts)
{
    appendNumber(file, static_cast<std::uint32_t>((std::size_t(0) + ... + std::size(parts))));
    const auto checked = file.size();
    file.append(type, 4);
    (file.append(reinterpret_cast<const char*>(std::data(parts)), static_cast<qsizetype>(std::size(parts))),
        ...);
    const auto* start = file.constData() + checked;
    appendNumber(file, libdeflate_crc32(0, start, std::size_t(file.size() - checked)));
}

QByteArray header(const Source& source)
{
    QByteArray bytes;
    appendNumber(bytes, static_cast<std::uint32_t>(source.image.width()));
    appendNumber(bytes, static_cast<std::uint32_t>(source.image.height()));
    const char colourType = source.opaque ? 2 : 6;
    for (const char value : {char(8), colourType, char(0), char(0), char(0)})
        bytes.append(value);
    return bytes;
}

QByteArray physicalSize(double pixelScale)
{
    constexpr double metresPerInch = 0.0254;
    const double scale = pixelScale > 0 ? std::min(pixelScale, 1000.) : 1; // not a number counts as 1
    const auto dotsPerMetre = static_cast<std::uint32_t>(std::lround(72 * scale / metresPerInch));
    QByteArray bytes;
    appendNumber(bytes, dotsPerMetre);
    appendNumber(bytes, dotsPerMetre);
    bytes.append('\1'); // the unit is the metre
    return bytes;
}

QByteArray assemble(const Source& source, double pixelScale, const std::vector<Segment>& segments)
{
    std::size_t length = 200;
    for (const Segment& segment : segments)
        length += segment.data.size() + 12;
    QByteArray file;
    file.reserve(static_cast<qsizetype>(length));
    file.append("\x89PNG\r\n\x1a\n");
    appendChunk(file, "IHDR", header(source));
    appendChunk(file, "sRGB", QByteArray(1, '\0')); // perceptual
    appendChunk(file, "pHYs", physicalSize(pixelScale));
    std::uint32_t adler = 1;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        adler = joinedAdler(adler, segments[i].adler, segments[i].length);
        const QByteArray streamHeader = i == 0 ? QByteArray("\x78\x5e") : QByteArray();
        QByteArray tail;
        if (i + 1 == segments.size()) {
            tail.append(reinterpret_cast<const char*>(streamEnd), sizeof streamEnd);
            appendNumber(tail, adler);
        }
        appendChunk(file, "IDAT", streamHeader, segments[i].data, tail);
    }
    appendChunk(file, "IEND", QByteArray());
    return file;
}

} // namespace

std::optional<QByteArray> encode(const QImage& image, double pixelScale)
try {
    if (image.isNull())
        return std::nullopt;
    const Source source = prepare(image);
    if (source.image.isNull())
        return std::nullopt;
    const int height = source.image.height();
    const int rows = std::max(1, static_cast<int>(segmentLength / source.rowLength()));
    const int wanted = (height + rows - 1) / rows;
    std::vector<Segment> segments(static_cast<std::size_t>(wanted));
    const auto bound = [&](int segment) { return static_cast<int>(std::int64_t(height) * segment / wanted); };
    parallelItems(wanted, usefulThreads(), [&] {
        return [&, encoder = std::make_shared<SegmentEncoder>(source)](
                   int item) { segments[std::size_t(item)] = encoder->encode(bound(item), bound(item + 1)); };
    });
    return assemble(source, pixelScale, segments);
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

} // namespace pintalux::PngEncoder
