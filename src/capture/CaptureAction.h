#pragma once

#include "platform/StringEnum.h"

namespace pintalux {

/// What a person can start from anywhere.
enum class CaptureAction { area, window, fullScreen, text, color };

struct CaptureActionRow {
    CaptureAction value;
    QStringView rawValue;
    QStringView title;
    QStringView symbol;     ///< name in the symbol set
    char16_t keyEquivalent; ///< digit of the hot key and of the menu's key
};

inline constexpr std::array<CaptureActionRow, 5> captureActionTable{{
    {CaptureAction::area, u"area", u"Capturar área", u"rectangle.dashed", u'1'},
    {CaptureAction::window, u"window", u"Capturar ventana", u"macwindow", u'2'},
    {CaptureAction::fullScreen, u"fullScreen", u"Capturar pantalla completa", u"display", u'3'},
    {CaptureAction::text, u"text", u"Copiar texto de la pantalla (OCR)", u"text.viewfinder", u'4'},
    {CaptureAction::color, u"color", u"Selector de color", u"eyedropper", u'5'},
}};
constexpr const auto& enumTable(CaptureAction) { return captureActionTable; }

/// The pair of modifier keys that makes a digit a global hot key.
enum class ShortcutPreset { controlShift, optionShift, commandShift, controlOption };

struct ShortcutPresetRow {
    ShortcutPreset value;
    QStringView rawValue;
    QStringView title;   ///< as a list of presets shows it
    QStringView symbols; ///< the two modifiers alone
};

inline constexpr std::array<ShortcutPresetRow, 4> shortcutPresetTable{{
    {ShortcutPreset::controlShift, u"controlShift", u"⌃⇧ + número", u"⌃⇧"},
    {ShortcutPreset::optionShift, u"optionShift", u"⌥⇧ + número", u"⌥⇧"},
    {ShortcutPreset::commandShift, u"commandShift", u"⌘⇧ + número", u"⌘⇧"},
    {ShortcutPreset::controlOption, u"controlOption", u"⌃⌥ + número", u"⌃⌥"},
}};
constexpr const auto& enumTable(ShortcutPreset) { return shortcutPresetTable; }

static_assert(isOrdered<CaptureAction>() && isOrdered<ShortcutPreset>());

} // namespace pintalux
