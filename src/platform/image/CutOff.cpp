// SPDX-License-Identifier: MIT
#include "platform/image/CutOff.h"

#include <cstdlib>

namespace pintalux {

namespace {

/// The byte at an offset, 0 beyond the end.
unsigned byteAt(const QByteArray& bytes, qsizetype at)
{
    return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0;
}

/// Looks for the end marker behind the start of the scan: one before that would be a preview's.
bool isWholeJpeg(const QByteArray& bytes)
{
    constexpr unsigned fill = 0xff, startOfScan = 0xda;
    for (qsizetype at = 2; at < bytes.size();) {
        const unsigned marker = byteAt(bytes, at + 1);
        if (byteAt(bytes, at) != 0xff || marker == fill) {
            ++at; // stray bytes between segments are passed over, as decoders do
            continue;
        }
        if (marker == startOfScan)
            return bytes.indexOf(QByteArrayView("\xff\xd9"), at) >= 0;
        const bool standsAlone = marker <= 0x01 || (marker >= 0xd0 && marker <= 0xd9);
        at += 2 + (standsAlone ? 0 : byteAt(bytes, at + 2) << 8 | byteAt(bytes, at + 3));
    }
    return false;
}

/// Walks over the blocks up to the end of the first picture.
bool isWholeGif(const QByteArray& bytes)
{
    constexpr unsigned picture = 0x2c, extension = 0x21;
    const auto colours = [&](qsizetype flags) {
        const unsigned value = byteAt(bytes, flags);
        return value & 0x80 ? qsizetype(3) << ((value & 7) + 1) : qsizetype(0);
    };
    const auto skipSubBlocks = [&](qsizetype at) {
        while (byteAt(bytes, at) != 0)
            at += 1 + qsizetype(byteAt(bytes, at));
        return at + 1;
    };
    qsizetype at = 13 + colours(10);
    while (byteAt(bytes, at) == extension)
        at = skipSubBlocks(at + 2);
    return byteAt(bytes, at) == picture && skipSubBlocks(at + 10 + colours(at + 9) + 1) <= bytes.size();
}

/// A number of `count` bytes, lowest first.
quint32 numberAt(const QByteArray& bytes, qsizetype at, int count)
{
    quint32 number = 0;
    for (int index = count - 1; index >= 0; --index)
        number = number << 8 | byteAt(bytes, at + index);
    return number;
}

/// The decoder fills with whatever is in memory what the file does not hold.
bool isWholeBitmap(const QByteArray& bytes)
{
    constexpr quint32 oldHeader = 12;
    constexpr quint32 eightBitRuns = 1, fourBitRuns = 2;
    const bool isOld = numberAt(bytes, 14, 4) == oldHeader;
    const qint64 pixels = numberAt(bytes, 10, 4);
    const auto packing = isOld ? 0 : numberAt(bytes, 30, 4);
    if (packing == eightBitRuns || packing == fourBitRuns)
        return pixels + numberAt(bytes, 34, 4) <= bytes.size();
    const qint64 width = isOld ? numberAt(bytes, 18, 2) : numberAt(bytes, 18, 4);
    // Rows from the top have a negative height.
    const qint64 height
        = isOld ? qint64(numberAt(bytes, 20, 2)) : std::abs(qint64(qint32(numberAt(bytes, 22, 4))));
    const qint64 bits = numberAt(bytes, isOld ? 24 : 28, 2);
    if (height == 0)
        return true; // the decoder will say
    const qint64 fitting = (bytes.size() - pixels) / height;
    return pixels <= bytes.size() && (width * bits + 31) / 32 * 4 <= fitting;
}

} // namespace

bool isCutOff(const QByteArray& bytes)
{
    if (bytes.startsWith("\xff\xd8"))
        return !isWholeJpeg(bytes);
    if (bytes.startsWith("GIF8"))
        return !isWholeGif(bytes);
    if (bytes.startsWith("BM"))
        return !isWholeBitmap(bytes);
    if (bytes.startsWith("#define"))
        return !bytes.contains('}'); // numbers as a program's source text
    return false;
}

} // namespace pintalux
