// SPDX-License-Identifier: MIT
#pragma once

#include "platform/base/StringEnum.h"

namespace pintalux {

/// What a gesture on the overlay selects.
enum class OverlayMode { area, window, text, color };

inline constexpr std::array<TitledRow<OverlayMode>, 4> overlayModeTable{{
    {OverlayMode::area, u"area", u"Área"},
    {OverlayMode::window, u"window", u"Ventana"},
    {OverlayMode::text, u"text", u"Texto"},
    {OverlayMode::color, u"color", u"Color"},
}};
constexpr const auto& enumTable(OverlayMode) { return overlayModeTable; }
static_assert(isComplete<OverlayMode>());

} // namespace pintalux
