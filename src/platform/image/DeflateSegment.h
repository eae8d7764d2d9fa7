// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

struct libdeflate_compressor;

namespace pintalux {

/// Compresses pieces of one stream independently of each other, so that several threads can share the work:
/// the pieces' bytes put one after another, and `streamEnd` after the last, are one deflate stream.
///
/// A compressor belongs to one thread at a time.
class SegmentCompressor {
public:
    /// `level` runs from 1, the fastest, to 12.
    explicit SegmentCompressor(int level);

    /// The compressed form of `data`: whole blocks, none of them the stream's last, up to a byte boundary.
    std::vector<std::uint8_t> compress(std::span<const std::uint8_t> data);

private:
    struct Free {
        void operator()(libdeflate_compressor* compressor) const;
    };
    std::unique_ptr<libdeflate_compressor, Free> compressor;
    std::unique_ptr<std::uint8_t[]> buffer; ///< kept, as fresh memory costs more than a good deal of work
    std::size_t bufferSize = 0;
};

/// The empty last block that ends a stream of segments.
inline constexpr std::uint8_t streamEnd[] = {0x03, 0x00};

/// Where the last block of a deflate stream starts and where its data ends, in bits.
struct LastBlock {
    std::size_t firstBit;
    std::size_t endBit;
};

/// Walks through the codes of a stream, without unpacking it, until its last block has ended. The stream must
/// be sound, and eight more bytes must be readable behind it.
LastBlock findLastBlock(const std::uint8_t* stream);

} // namespace pintalux
