// SPDX-License-Identifier: MIT
#pragma once

#include <QBrush>
#include <QIcon>
#include <QPainterPath>
#include <QRectF>
#include <QString>
#include <QStringList>

class QPainter;

namespace pintalux {

class GraphicsContext;

/// The icons of the interface by name, in one line style: glyphs of an icon font that is part of the program,
/// and a few of our own on the same grid of 24 units.
///
/// A symbol is an outline, so it is crisp at any size and takes any colour or gradient. Needs the toolkit's
/// application object; the font is loaded when the first symbol is asked for. For the main thread.
namespace Symbol {

/// True for the names of `allNames`.
bool exists(QStringView name);
/// Every name that can be drawn, in the order of the table.
QStringList allNames();

/// The symbol's outline in a square of `pointSize` whose top-left corner is the origin. Empty, with a warning
/// in the log, for a name that does not exist.
QPainterPath path(QStringView name, double pointSize);

/// Fills the symbol into `rect`, centred and as large as its shorter side. The brush lies in the painter's
/// user space.
void draw(QStringView name, const QRectF& rect, const QBrush& brush, QPainter& painter);
void draw(QStringView name, const QRectF& rect, const QBrush& brush, GraphicsContext& context);

/// How an icon looks when its action is disabled or highlighted; an invalid colour means the ordinary one,
/// faint for a disabled action.
struct IconColors {
    QColor normal;
    QColor disabled{};
    QColor active{};
};

/// An icon drawn anew for each size and device pixel ratio.
QIcon icon(QStringView name, const IconColors& colors);
inline QIcon icon(QStringView name, const QColor& color) { return icon(name, IconColors{color}); }

} // namespace Symbol

} // namespace pintalux
