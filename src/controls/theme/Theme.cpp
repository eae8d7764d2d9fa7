// SPDX-License-Identifier: MIT
#include "controls/theme/Theme.h"

#include "model/Palette.h"
#include "platform/graphics/Color.h"

#include <QGuiApplication>
#include <QPalette>
#include <QRectF>

namespace pintalux {

const Theme& Theme::light()
{
    static const QColor ink(0x18, 0x14, 0x30);
    static const QColor shade(0x1C, 0x14, 0x40);
    static const QColor text(0x1C, 0x1B, 0x22);
    static const Theme theme{
        .dark = false,
        .bar = {0xFA, 0xFA, 0xFC},
        .canvas = {0xE6, 0xE6, 0xEB},
        .card = {0xFF, 0xFF, 0xFF},
        .well = {0xF0, 0xF0, 0xF4},
        .form = {0xF3, 0xF3, 0xF7},
        .field = {0xFF, 0xFF, 0xFF},
        .hair = withAlpha(ink, 0.10),
        .control = withAlpha(ink, 0.20),
        .text = text,
        .text2 = {0x5F, 0x5D, 0x6B},
        .icon = {0x45, 0x43, 0x52},
        .disabled = withAlpha(text, 0.30),
        .hover = withAlpha(shade, 0.06),
        .press = withAlpha(shade, 0.12),
        .selected = withAlpha(Palette::brand, 0.13),
        .onSelected = {0x5A, 0x41, 0xE0},
        .brand = Palette::brand,
        .focus = Palette::brand,
        .track = {0xDA, 0xDA, 0xE2},
        .off = {0x8C, 0x8A, 0x99},
        .ok = {0x14, 0x80, 0x4A},
        .warn = {0xA6, 0x5A, 0x00},
        .bad = {0xC0, 0x27, 0x3A},
        .raised = {0xFF, 0xFF, 0xFF},
    };
    return theme;
}

const Theme& Theme::darkTheme()
{
    static const QColor text(0xF1, 0xF0, 0xF6);
    static const Theme theme{
        .dark = true,
        .bar = {0x20, 0x1F, 0x26},
        .canvas = {0x16, 0x15, 0x1B},
        .card = {0x29, 0x28, 0x31},
        .well = {0x1F, 0x1E, 0x25},
        .form = {0x1F, 0x1E, 0x25},
        .field = {0x1D, 0x1C, 0x23},
        .hair = withAlpha(Qt::white, 0.10),
        .control = withAlpha(Qt::white, 0.20),
        .text = text,
        .text2 = {0xAA, 0xA8, 0xB8},
        .icon = {0xCD, 0xCB, 0xD8},
        .disabled = withAlpha(text, 0.28),
        .hover = withAlpha(Qt::white, 0.08),
        .press = withAlpha(Qt::white, 0.15),
        .selected = withAlpha(QColor(0x8B, 0x76, 0xFF), 0.26),
        .onSelected = {0xC4, 0xB9, 0xFF},
        .brand = Palette::brand,
        .focus = Palette::brandLight,
        .track = {0x45, 0x43, 0x4F},
        .off = {0x77, 0x75, 0x84},
        .ok = {0x58, 0xD3, 0x9A},
        .warn = {0xF2, 0xB2, 0x5C},
        .bad = {0xFF, 0x8A, 0x93},
        .raised = {0x41, 0x3F, 0x4C},
    };
    return theme;
}

QColor Theme::buttonFill() const { return dark ? withAlpha(Qt::white, 0.07) : field; }

QColor Theme::buttonBorder() const { return dark ? withAlpha(Qt::white, 0.12) : control; }

QColor Theme::swatchEdge() const { return dark ? withAlpha(Qt::white, 0.34) : withAlpha(Qt::black, 0.14); }

QLinearGradient Theme::brandGradient(const QRectF& rect)
{
    QLinearGradient gradient(rect.topLeft(), rect.bottomRight());
    gradient.setColorAt(0, Palette::brand);
    gradient.setColorAt(1, QColor(0x9A, 0x5C, 0xF2));
    return gradient;
}

QLinearGradient Theme::gradientVeil(const QRectF& rect, bool pressed)
{
    const QColor veil(0x0A, 0x00, 0x28);
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, withAlpha(veil, pressed ? 0.16 : 0.05));
    gradient.setColorAt(1, withAlpha(veil, pressed ? 0.26 : 0.15));
    return gradient;
}

const Theme& Theme::of(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() < 128 ? darkTheme() : light();
}

const Theme& Theme::current() { return of(QGuiApplication::palette()); }

QEasingCurve Theme::slideCurve()
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment({0.2, 0.9}, {0.25, 1}, {1, 1});
    return curve;
}

} // namespace pintalux
