// SPDX-License-Identifier: MIT
#pragma once

#include "model/CaptureResult.h"
#include "platform/desktop/ScreenSource.h"

#include <variant>

namespace pintalux {

/// What a person chose, one type for each way out.
namespace Outcome {

/// A part of a screen, or the whole of it.
struct Image {
    CaptureResult result;
};
/// A window that is still to be captured.
struct Window {
    WindowInfo window;
    QString title; ///< the candidate's, for the file's name
};
/// A part of a screen whose text is wanted.
struct Text {
    CaptureResult result;
};
/// "#" and six upper-case digits.
struct Color {
    QString hex;
};
struct Cancelled { };

} // namespace Outcome

using OverlayOutcome
    = std::variant<Outcome::Image, Outcome::Window, Outcome::Text, Outcome::Color, Outcome::Cancelled>;

} // namespace pintalux
