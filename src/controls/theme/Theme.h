// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QEasingCurve>
#include <QLinearGradient>

class QPalette;
class QRectF;

namespace pintalux {

/// The colours of the interface by what they are for, in their light and dark form.
///
/// Widgets ask for the theme when they paint, so that a change shows at once.
struct Theme {
    bool dark;

    QColor bar;     ///< menu bar, top bar
    QColor canvas;  ///< backdrop around a picture
    QColor card;    ///< menus, popovers, groups
    QColor well;    ///< sunken trays, key caps
    QColor form;    ///< background of the preferences
    QColor field;   ///< text fields
    QColor hair;    ///< hairlines and separators
    QColor control; ///< borders of fields and buttons
    QColor text;
    QColor text2;      ///< secondary text
    QColor icon;       ///< icons at rest
    QColor disabled;   ///< disabled icons and text
    QColor hover;      ///< fill under the pointer
    QColor press;      ///< fill while pressed
    QColor selected;   ///< fill of what is toggled
    QColor onSelected; ///< icons and text on it, and links
    QColor brand;      ///< highlighted menu rows, solid buttons, rings of what is chosen
    QColor focus;      ///< ring of the keyboard focus
    QColor track;      ///< of sliders
    QColor off;        ///< switch that is off
    QColor ok;
    QColor warn;
    QColor bad;
    QColor raised; ///< the chosen segment on its well

    static const Theme& light();
    static const Theme& darkTheme();
    /// Dark when the palette's windows are darker than the middle.
    static const Theme& of(const QPalette& palette);
    /// Of the application's palette.
    static const Theme& current();

    /// Fill and border of buttons and pop-up lists, which lie lighter than fields on a dark ground.
    QColor buttonFill() const;
    QColor buttonBorder() const;

    /// The line just within the edge of discs and chips of colour.
    QColor swatchEdge() const;

    /// From the top left to the bottom right corner of what it fills: the chosen tool, switches that are on.
    static QLinearGradient brandGradient(const QRectF& rect);
    /// Laid over the gradient where text stands on it; `pressed` makes it darker.
    static QLinearGradient gradientVeil(const QRectF& rect, bool pressed);

    /// The curve of what slides to its place: an instrument that rises, the thumbnail that comes in.
    static QEasingCurve slideCurve();

    /// Radii, lengths and durations that several surfaces share; points and milliseconds.
    static constexpr double controlRadius = 8;
    static constexpr double groupRadius = 12;
    static constexpr double popoverRadius = 14;
    static constexpr double screenMargin = 8; ///< least distance of popovers to the screen's edge
    static constexpr double menuRadius = 12;
    static constexpr double thumbnailRadius = 22;
    static constexpr double thumbnailImageRadius = 14;
    static constexpr double pinRadius = 10;
    static constexpr double menuRowRadius = 7;
    static constexpr double shadowMargin = 48;         ///< transparent margin of floating widgets
    static constexpr double pictureShadowAlpha = 0.28; ///< black, under the picture on the canvas
    static constexpr double pictureShadowDrop = 8;
    static constexpr double pictureShadowBlur = 30;
    static constexpr int hoverInMilliseconds = 90;
    static constexpr int hoverOutMilliseconds = 140;
    static constexpr int toggleMilliseconds = 140; ///< cross-fade of what is toggled or chosen
    static constexpr int knobMilliseconds = 160;
    static constexpr int paletteFadeMilliseconds = 160;
    static constexpr int toolTipDelayMilliseconds = 500;
    static constexpr int thumbnailInMilliseconds = 320;
    static constexpr int thumbnailOutMilliseconds = 250;
    static constexpr int popoverOpenMilliseconds = 140;
    static constexpr int popoverCloseMilliseconds = 90;
    static constexpr double dragRadius = 10; ///< of a picture that hangs from the pointer
    static constexpr double dragOpacity = 0.85;
    static constexpr int dockMilliseconds = 250; ///< of the palette, and the canvas making room
    static constexpr double paletteRadius = 18;
    static constexpr double optionsRadius = 16;
    static constexpr double trayRadius = 12;
    static constexpr double toolRadius = 10;
    static constexpr double toggleRadius = 9;
    static constexpr double chipRadius = 6;
    static constexpr double disabledOpacity = 0.4; ///< of controls that are drawn whole
    static constexpr int instrumentMilliseconds = 180;
};

} // namespace pintalux
