// SPDX-License-Identifier: MIT
#pragma once

#include <QUuid>

#include <cstdint>

namespace pintalux {

/// The random numbers that make a sketch arrow look drawn by hand: the same ones for the same seed, on every
/// run and machine. The generator is SplitMix64.
struct SeededRandom {
    std::uint64_t state;

    /// Seeds from the 16 bytes of `id` in the order in which its text shows them.
    static SeededRandom fromUuid(const QUuid& id)
    {
        std::uint64_t hash = 0x9E3779B97F4A7C15U;
        for (const char byte : id.toRfc4122())
            hash = hash * 31 ^ static_cast<unsigned char>(byte);
        return {hash};
    }

    /// The next number in [0, 1).
    double next()
    {
        state += 0x9E3779B97F4A7C15U;
        auto z = state;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
        z ^= z >> 31;
        return double(z >> 11) / double(std::uint64_t(1) << 53);
    }
};

} // namespace pintalux
