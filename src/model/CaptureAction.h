// SPDX-License-Identifier: MIT
#pragma once

#include "platform/base/KeyModifiers.h"
#include "platform/base/StringEnum.h"

namespace pintalux {

/// What a person can start from anywhere.
enum class CaptureAction { area, window, fullScreen, text, color };

struct CaptureActionRow {
    CaptureAction value;
    QStringView rawValue;
    QStringView title;
    QStringView symbol;     ///< name in the symbol set
    char16_t keyEquivalent; ///< digit of the hot key and of the menu's key
    quint32 keyCode;        ///< where that digit lies in the main row, whatever the layout makes it type
};

inline constexpr std::array<CaptureActionRow, 5> captureActionTable{{
    {CaptureAction::area, u"area", u"Capturar área", u"rectangle.dashed", u'1', 10},
    {CaptureAction::window, u"window", u"Capturar ventana", u"macwindow", u'2', 11},
    {CaptureAction::fullScreen, u"fullScreen", u"Capturar pantalla completa", u"display", u'3', 12},
    {CaptureAction::text, u"text", u"Copiar texto de la pantalla (OCR)", u"text.viewfinder", u'4', 13},
    {CaptureAction::color, u"color", u"Selector de color", u"eyedropper", u'5', 14},
}};
constexpr const auto& enumTable(CaptureAction) { return captureActionTable; }

/// What the action's hot key is registered under: its place in the table, from 1.
constexpr quint32 hotKeyID(CaptureAction action) { return static_cast<quint32>(action) + 1; }

/// The pair of modifier keys that makes a digit a global hot key.
enum class ShortcutPreset { controlShift, optionShift, commandShift, controlOption };

struct ShortcutPresetRow {
    ShortcutPreset value;
    QStringView rawValue;
    QStringView title;   ///< as a list of presets shows it
    QStringView symbols; ///< the two modifiers alone
    KeyModifiers modifiers;
};

inline constexpr std::array<ShortcutPresetRow, 4> shortcutPresetTable{{
    {ShortcutPreset::controlShift, u"controlShift", u"⌃⇧ + número", u"⌃⇧",
        KeyModifier::control | KeyModifier::shift},
    {ShortcutPreset::optionShift, u"optionShift", u"⌥⇧ + número", u"⌥⇧",
        KeyModifier::option | KeyModifier::shift},
    {ShortcutPreset::commandShift, u"commandShift", u"⌘⇧ + número", u"⌘⇧",
        KeyModifier::command | KeyModifier::shift},
    {ShortcutPreset::controlOption, u"controlOption", u"⌃⌥ + número", u"⌃⌥",
        KeyModifier::control | KeyModifier::option},
}};
constexpr const auto& enumTable(ShortcutPreset) { return shortcutPresetTable; }

/// What a person is told of a hot key that another program has.
inline constexpr QStringView takenShortcutText
    = u"El atajo está en uso por otra app. Cambia la combinación en Ajustes.";

static_assert(isComplete<CaptureAction>() && isComplete<ShortcutPreset>());

} // namespace pintalux
