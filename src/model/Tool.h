// SPDX-License-Identifier: MIT
#pragma once

#include "platform/base/StringEnum.h"

namespace pintalux {

/// What the pointer does on the canvas.
enum class Tool { select, arrow, rectangle, ellipse, line, pen, highlighter, eraser, text, step, blur, crop };

/// How an arrow is drawn.
enum class ArrowStyle { sketch, outline, filled, line, double_ };

/// How a redaction is drawn.
enum class BlurStyle { pixelate, blur };

/// What a stored mark is. Selecting, erasing and cropping make no marks; pictures are inserted, not drawn.
enum class AnnotationKind { arrow, rectangle, ellipse, line, pen, highlighter, text, step, blur, image };

struct ToolRow {
    Tool value;
    QStringView rawValue; ///< also the identifier
    QStringView title;
    QStringView symbol; ///< name in the symbol set
    char16_t shortcut;  ///< lower-case letter that chooses the tool in the editor
    bool supportsFill;  ///< for text, filled means a callout bubble
    bool reshapesMarks; ///< the selected mark stays selected and shows its handles
};

inline constexpr std::array<ToolRow, 12> toolTable{{
    {Tool::select, u"select", u"Seleccionar y mover", u"cursorarrow", u'v', false, true},
    {Tool::arrow, u"arrow", u"Flecha", u"arrow.up.right", u'a', false, true},
    {Tool::rectangle, u"rectangle", u"Rectángulo", u"rectangle", u'r', true, false},
    {Tool::ellipse, u"ellipse", u"Elipse", u"circle", u'e', true, false},
    {Tool::line, u"line", u"Línea", u"line.diagonal", u'l', false, true},
    {Tool::pen, u"pen", u"Lápiz", u"scribble.variable", u'p', false, false},
    {Tool::highlighter, u"highlighter", u"Resaltador", u"highlighter", u'h', false, false},
    {Tool::eraser, u"eraser", u"Borrador", u"eraser", u'g', false, false},
    {Tool::text, u"text", u"Texto", u"textformat", u't', true, true},
    {Tool::step, u"step", u"Pasos numerados", u"1.circle", u'n', false, true},
    {Tool::blur, u"blur", u"Difuminar / pixelar", u"checkerboard.rectangle", u'b', false, false},
    {Tool::crop, u"crop", u"Recortar", u"crop", u'c', false, false},
}};
constexpr const auto& enumTable(Tool) { return toolTable; }

inline QString symbol(Tool tool) { return enumRow(tool).symbol.toString(); }
constexpr QChar shortcut(Tool tool) { return enumRow(tool).shortcut; }
constexpr bool supportsFill(Tool tool) { return enumRow(tool).supportsFill; }
constexpr bool reshapesMarks(Tool tool) { return enumRow(tool).reshapesMarks; }

inline constexpr std::array<TitledRow<ArrowStyle>, 5> arrowStyleTable{{
    {ArrowStyle::sketch, u"sketch", u"A mano"},
    {ArrowStyle::outline, u"outline", u"Contorno"},
    {ArrowStyle::filled, u"filled", u"Rellena"},
    {ArrowStyle::line, u"line", u"Línea"},
    {ArrowStyle::double_, u"double", u"Doble punta"},
}};
constexpr const auto& enumTable(ArrowStyle) { return arrowStyleTable; }

inline constexpr std::array<TitledRow<BlurStyle>, 2> blurStyleTable{{
    {BlurStyle::pixelate, u"pixelate", u"Pixelar"},
    {BlurStyle::blur, u"blur", u"Desenfocar"},
}};
constexpr const auto& enumTable(BlurStyle) { return blurStyleTable; }

/// Names of the kinds of mark in a marks file; the titles are those of the tools that make them.
inline constexpr std::array<TitledRow<AnnotationKind>, 10> annotationKindTable{{
    {AnnotationKind::arrow, u"arrow", u"Flecha"},
    {AnnotationKind::rectangle, u"rectangle", u"Rectángulo"},
    {AnnotationKind::ellipse, u"ellipse", u"Elipse"},
    {AnnotationKind::line, u"line", u"Línea"},
    {AnnotationKind::pen, u"pen", u"Lápiz"},
    {AnnotationKind::highlighter, u"highlighter", u"Resaltador"},
    {AnnotationKind::text, u"text", u"Texto"},
    {AnnotationKind::step, u"step", u"Pasos numerados"},
    {AnnotationKind::blur, u"blur", u"Difuminar / pixelar"},
    {AnnotationKind::image, u"image", u"Imagen"},
}};
constexpr const auto& enumTable(AnnotationKind) { return annotationKindTable; }

static_assert(isComplete<Tool>() && isComplete<ArrowStyle>() && isComplete<BlurStyle>()
    && isComplete<AnnotationKind>());

} // namespace pintalux
