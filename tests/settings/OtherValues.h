// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Settings.h"

namespace pintalux::test {

/// Values of which none is the factory's.
inline SettingsValues otherValues()
{
    using namespace Qt::StringLiterals;
    SettingsValues values;
    values.autoCopy = false;
    values.autoSave = true;
    values.playSound = true;
    values.saveFolder = u"/tmp/ñ \"a\"\\/b"_s;
    values.shortcutPreset = ShortcutPreset::commandShift;
    values.afterCapture = AfterCapture::thumbnail;
    values.lastColor = QColor(0x12, 0xAB, 0xEF);
    values.strokeWidth = 7.5;
    values.arrowStyle = ArrowStyle::double_;
    values.handwritten = false;
    values.calloutText = false;
    values.paletteEdge = PaletteEdge::right;
    values.toolbarHidden = true;
    values.beautifyByDefault = true;
    values.lastGradient = -1;
    return values;
}

/// Sets them one by one.
inline void setAll(Settings& settings, const SettingsValues& values)
{
    settings.setAutoCopy(values.autoCopy);
    settings.setAutoSave(values.autoSave);
    settings.setPlaySound(values.playSound);
    settings.setAfterCapture(values.afterCapture);
    settings.setShortcutPreset(values.shortcutPreset);
    settings.setSaveFolder(values.saveFolder);
    settings.setLastColor(values.lastColor);
    settings.setStrokeWidth(values.strokeWidth);
    settings.setArrowStyle(values.arrowStyle);
    settings.setHandwritten(values.handwritten);
    settings.setCalloutText(values.calloutText);
    settings.setPaletteEdge(values.paletteEdge);
    settings.setToolbarHidden(values.toolbarHidden);
    settings.setBeautifyByDefault(values.beautifyByDefault);
    settings.setLastGradient(values.lastGradient);
}

} // namespace pintalux::test
