// SPDX-License-Identifier: MIT
#include "platform/image/DeflateSegment.h"

#include <QtEndian>

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <new>

// The library compresses whole streams only: it marks the last block as such and pads the last byte with zero
// bits, and it does not say where either is. Both are found by walking through the codes; then the mark is
// taken off and an empty stored block leads to the next byte boundary.

namespace pintalux {

namespace {

constexpr int longestCode = 15;
constexpr int tableBits = 11;
constexpr int endOfBlock = 256;

/// What a code stands for, as far as walking on is concerned.
struct alignas(4) Entry {
    std::uint8_t codeLength; ///< 0 when the code is longer than the table's index
    std::uint8_t extraBits;
    enum Kind : std::uint8_t { literal, end, match } kind;
};

/// Decodes a canonical prefix code.
class CodeTable {
public:
    /// `entryOf` gives a symbol's entry, apart from the code length.
    template <typename EntryOf> void build(std::span<const std::uint8_t> lengths, const EntryOf& entryOf)
    {
        counts.fill(0);
        for (const std::uint8_t length : lengths)
            ++counts[length];
        counts[0] = 0;
        std::array<std::uint32_t, longestCode + 2> nextCode{};
        std::array<std::uint32_t, longestCode + 2> nextIndex{};
        for (std::size_t length = 1; length <= longestCode; ++length) {
            nextCode[length + 1] = (nextCode[length] + counts[length]) << 1;
            nextIndex[length + 1] = nextIndex[length] + counts[length];
        }
        table.fill({});
        for (std::size_t symbol = 0; symbol < lengths.size(); ++symbol) {
            const std::uint8_t length = lengths[symbol];
            if (length == 0)
                continue;
            Entry entry = entryOf(static_cast<int>(symbol));
            entry.codeLength = length;
            sorted[nextIndex[length]++] = entry;
            const std::uint32_t code = reversed(nextCode[length]++, length);
            for (std::size_t slot = code; length <= tableBits && slot < table.size(); slot += 1U << length)
                table[slot] = entry;
        }
    }

    /// The entry whose code is at the low end of `bits`.
    Entry lookUp(std::uint64_t bits) const
    {
        const Entry entry = table[bits & (table.size() - 1)];
        return entry.codeLength != 0 ? entry : lookUpLong(bits);
    }

private:
    static std::uint32_t reversed(std::uint32_t code, int length)
    {
        std::uint32_t result = 0;
        for (; length > 0; --length, code >>= 1)
            result = result << 1 | (code & 1);
        return result;
    }

    Entry lookUpLong(std::uint64_t bits) const
    {
        std::uint32_t code = 0, first = 0, index = 0;
        for (std::size_t length = 1; length <= longestCode; ++length, bits >>= 1) {
            code = code << 1 | (bits & 1);
            first <<= 1;
            if (code - first < counts[length])
                return sorted[index + code - first];
            index += counts[length];
            first += counts[length];
        }
        return {1, 0, Entry::end}; // no such code: only in a broken stream
    }

    std::array<std::uint16_t, longestCode + 1> counts{};
    std::array<Entry, 288> sorted{}; ///< in the order of the codes
    std::array<Entry, 1U << tableBits> table{};
};

Entry literalOrLengthEntry(int symbol)
{
    if (symbol < endOfBlock)
        return {0, 0, Entry::literal};
    if (symbol == endOfBlock)
        return {0, 0, Entry::end};
    const int length = symbol - 257; // four codes for each number of extra bits, after the first eight
    return {0, static_cast<std::uint8_t>(length < 8 || length == 28 ? 0 : length / 4 - 1), Entry::match};
}

Entry distanceEntry(int symbol)
{
    return {0, static_cast<std::uint8_t>(symbol < 4 ? 0 : symbol / 2 - 1), Entry::match};
}

class BlockWalker {
public:
    explicit BlockWalker(const std::uint8_t* stream)
        : stream(stream)
    {
    }

    LastBlock walk()
    {
        for (;;) {
            const std::size_t firstBit = position;
            const bool last = take(1) != 0;
            switch (take(2)) {
            case 0:
                skipStored();
                break;
            case 1:
                readFixedCodes();
                skipCodes();
                break;
            default:
                readDynamicCodes();
                skipCodes();
            }
            if (last)
                return {firstBit, position};
        }
    }

private:
    /// At least 57 bits from the position on.
    std::uint64_t peek() const { return qFromLittleEndian<quint64>(stream + position / 8) >> (position % 8); }

    unsigned take(int count)
    {
        const auto value = static_cast<unsigned>(peek() & ((1U << count) - 1));
        position += std::size_t(count);
        return value;
    }

    void skipStored()
    {
        position = (position + 7) / 8 * 8;
        const unsigned length = take(16);
        position += 16 + std::size_t(length) * 8;
    }

    void readFixedCodes()
    {
        std::array<std::uint8_t, 288> lengths{};
        for (int symbol = 0; symbol < 288; ++symbol)
            lengths[std::size_t(symbol)] = symbol < 144 ? 8 : symbol < 256 ? 9 : symbol < 280 ? 7 : 8;
        literals.build(lengths, literalOrLengthEntry);
        std::array<std::uint8_t, 30> distanceLengths{};
        distanceLengths.fill(5);
        distances.build(distanceLengths, distanceEntry);
    }

    void readDynamicCodes()
    {
        constexpr std::array<std::uint8_t, 19> order{
            16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
        const std::size_t literalCount = take(5) + 257;
        const std::size_t total = literalCount + take(5) + 1;
        const unsigned orderCount = take(4) + 4;
        std::array<std::uint8_t, 19> lengthLengths{};
        for (unsigned i = 0; i < orderCount; ++i)
            lengthLengths[order[i]] = static_cast<std::uint8_t>(take(3));
        // The symbol itself travels in the entry's other field.
        lengthCodes.build(lengthLengths, [](int symbol) {
            return Entry{0, static_cast<std::uint8_t>(symbol), Entry::literal};
        });

        std::array<std::uint8_t, 288 + 32 + 138> lengths{};
        for (std::size_t i = 0; i < total;) {
            const Entry entry = lengthCodes.lookUp(peek());
            position += entry.codeLength;
            const unsigned symbol = entry.extraBits;
            if (symbol < 16) {
                lengths[i++] = static_cast<std::uint8_t>(symbol);
                continue;
            }
            const std::uint8_t repeated = symbol == 16 && i > 0 ? lengths[i - 1] : 0;
            const unsigned count = symbol == 16 ? 3 + take(2) : symbol == 17 ? 3 + take(3) : 11 + take(7);
            std::fill_n(lengths.begin() + std::ptrdiff_t(i), count, repeated);
            i += count;
        }
        const std::span all(lengths);
        literals.build(all.first(literalCount), literalOrLengthEntry);
        distances.build(all.subspan(literalCount, total - literalCount), distanceEntry);
    }

    void skipCodes()
    {
        for (;;) {
            // 57 bits hold three codes of literals, or one match with everything that belongs to it.
            std::uint64_t bits = peek();
            Entry entry = literals.lookUp(bits);
            for (int more = 2; entry.kind == Entry::literal && more > 0; --more) {
                position += entry.codeLength;
                bits >>= entry.codeLength;
                entry = literals.lookUp(bits);
            }
            position += entry.codeLength;
            if (entry.kind == Entry::literal)
                continue;
            if (entry.kind == Entry::end)
                return;
            position += entry.extraBits;
            const Entry distance = distances.lookUp(peek());
            position += std::size_t(distance.codeLength) + distance.extraBits;
        }
    }

    const std::uint8_t* stream;
    std::size_t position = 0; ///< in bits
    CodeTable literals;
    CodeTable distances;
    CodeTable lengthCodes;
};

} // namespace

LastBlock findLastBlock(const std::uint8_t* stream) { return BlockWalker(stream).walk(); }

void SegmentCompressor::Free::operator()(libdeflate_compressor* compressor) const
{
    libdeflate_free_compressor(compressor);
}

SegmentCompressor::SegmentCompressor(int level)
    : compressor(libdeflate_alloc_compressor(level))
{
    if (!compressor)
        throw std::bad_alloc();
}

std::vector<std::uint8_t> SegmentCompressor::compress(std::span<const std::uint8_t> data)
{
    constexpr std::size_t room = 16; // for walking over the end, and for the empty block
    const std::size_t bound = libdeflate_deflate_compress_bound(compressor.get(), data.size());
    if (bufferSize < bound + room) {
        // Not a vector: most of the bound is never written, and need not be cleared.
        buffer = std::make_unique_for_overwrite<std::uint8_t[]>(bound + room);
        bufferSize = bound + room;
    }
    const std::size_t size
        = libdeflate_deflate_compress(compressor.get(), data.data(), data.size(), buffer.get(), bound);
    std::fill_n(buffer.get() + size, room, std::uint8_t(0));

    const auto [firstBit, endBit] = findLastBlock(buffer.get());
    buffer[firstBit / 8] &= static_cast<std::uint8_t>(~(1U << (firstBit % 8)));
    // Three zero bits start a stored block; its length, 0, and the complement follow on a byte boundary.
    const std::size_t boundary = (endBit + 3 + 7) / 8;
    buffer[boundary + 2] = 0xff;
    buffer[boundary + 3] = 0xff;
    return {buffer.get(), buffer.get() + boundary + 4};
}

} // namespace pintalux
