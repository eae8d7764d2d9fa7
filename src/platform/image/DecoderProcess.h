// SPDX-License-Identifier: MIT
#pragma once

#include "platform/image/ImageDecoder.h"

#include <chrono>
#include <optional>

namespace pintalux {

/// Decoding in a process of its own.
///
/// Decoders of rarer formats are large, foreign, and fed with what strangers wrote: they recurse, take all
/// memory, never end, or end the process that they run in, with everything that a person has open there. So
/// they run in the same program started anew, with limits on memory, threads and time, and what comes back is
/// pixels or nothing. Starting it costs some 20 ms.
namespace DecoderProcess {

/// First thing in `main`: a process that was started to decode does so here, and the result is its status.
/// None in all others, which may have pictures decoded from then on.
std::optional<int> serve(int argc, char** argv);

constexpr std::chrono::seconds patience{20};

/// Decodes the first picture of the bytes there; `tooSlow` when that takes longer than `limit`. Any thread.
DecodedImage decode(const QByteArray& bytes, std::chrono::milliseconds limit = patience);

} // namespace DecoderProcess

} // namespace pintalux
