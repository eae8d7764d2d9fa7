#include "platform/CutOff.h"

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

} // namespace

bool isCutOff(const QByteArray& bytes)
{
    if (bytes.startsWith("\xff\xd8"))
        return !isWholeJpeg(bytes);
    if (bytes.startsWith("GIF8"))
        return !isWholeGif(bytes);
    return false;
}

} // namespace pintalux
