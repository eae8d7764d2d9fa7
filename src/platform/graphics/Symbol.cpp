// SPDX-License-Identifier: MIT
#include "platform/graphics/Symbol.h"

#include "platform/graphics/GraphicsContext.h"
#include "platform/graphics/PathData.h"
#include "platform/graphics/VectorIcon.h"

#include <QFontDatabase>
#include <QGlyphRun>
#include <QHash>
#include <QPainter>
#include <QRawFont>
#include <QTextLayout>
#include <QTransform>

#include <array>

using namespace Qt::StringLiterals;

namespace pintalux::Symbol {

namespace {

/// How a glyph of the icon font becomes the symbol.
enum class Form { plain, mirrored, contour };

struct FontRow {
    QStringView name;
    QStringView ligature; ///< the letters that the font joins into the glyph
    Form form = Form::plain;
};

constexpr std::array fontTable{
    FontRow{u"cursorarrow", u"near_me", Form::mirrored},
    FontRow{u"arrow.up.right", u"call_made"},
    FontRow{u"rectangle", u"crop_5_4"},
    FontRow{u"circle", u"panorama_fish_eye"},
    FontRow{u"scribble.variable", u"gesture"},
    FontRow{u"highlighter", u"border_color"},
    FontRow{u"textformat", u"title"},
    FontRow{u"crop", u"crop"},
    FontRow{u"blur", u"blur_on"},
    FontRow{u"rectangle.dashed", u"highlight_alt"},
    FontRow{u"macwindow", u"web_asset"},
    FontRow{u"display", u"desktop_windows"},
    FontRow{u"text.viewfinder", u"document_scanner"},
    FontRow{u"eyedropper", u"colorize"},
    FontRow{u"photo", u"crop_original"},
    FontRow{u"folder", u"folder_open"},
    FontRow{u"exclamationmark.triangle", u"warning_amber"},
    FontRow{u"exclamationmark.triangle.fill", u"warning"},
    FontRow{u"pencil.tip", u"edit"},
    FontRow{u"square.and.arrow.down", u"file_download"},
    FontRow{u"square.and.arrow.up", u"ios_share"},
    FontRow{u"arrow.uturn.backward", u"undo"},
    FontRow{u"arrow.uturn.forward", u"redo"},
    FontRow{u"trash", u"delete_outline"},
    FontRow{u"paintpalette.fill", u"palette"},
    FontRow{u"paintpalette", u"palette", Form::contour},
    FontRow{u"sparkles", u"auto_awesome"},
    FontRow{u"doc.on.doc", u"content_copy"},
    FontRow{u"tray.and.arrow.down", u"save_alt"},
    FontRow{u"photo.badge.plus", u"add_photo_alternate"},
    FontRow{u"pin", u"push_pin"},
    FontRow{u"pin.fill", u"push_pin"},
    FontRow{u"signature", u"draw"},
    FontRow{u"bubble.left.fill", u"chat_bubble"},
    FontRow{u"checkmark", u"check"},
    FontRow{u"chevron.left", u"chevron_left"},
    FontRow{u"doc.on.clipboard", u"content_paste"},
    FontRow{u"doc.on.clipboard.fill", u"assignment_turned_in"},
    FontRow{u"xmark.octagon", u"dangerous"},
    FontRow{u"checkmark.circle.fill", u"check_circle"},
    FontRow{u"text.magnifyingglass", u"find_in_page"},
    FontRow{u"checkmark.seal.fill", u"verified"},
    FontRow{u"arrow.uturn.backward.circle", u"restore"},
    FontRow{u"arrow.counterclockwise.circle", u"replay"},
    FontRow{u"close", u"close"},
    FontRow{u"grip", u"drag_indicator"},
    FontRow{u"chevron", u"expand_more"},
    FontRow{u"popup", u"unfold_more"},
};

/// A drawing of ours: lines of one width with round caps and joins, and areas.
struct OwnRow {
    QStringView name;
    QStringView lines;
    double lineWidth = 2;
    QStringView areas{};
};

// The cubic arcs stand for circles and round corners.
constexpr QStringView dockScreen
    = u"M5.6 5H18.4C19.84 5 21 6.16 21 7.6V16.4C21 17.84 19.84 19 18.4 19H5.6C4.16 19 3 17.84 3 16.4V7.6"
      "C3 6.16 4.16 5 5.6 5Z";
constexpr QStringView square
    = u"M8.1 4.5H15.9C17.89 4.5 19.5 6.11 19.5 8.1V15.9C19.5 17.89 17.89 19.5 15.9 19.5"
      "H8.1C6.11 19.5 4.5 17.89 4.5 15.9V8.1C4.5 6.11 6.11 4.5 8.1 4.5Z";

constexpr std::array ownTable{
    OwnRow{u"line.diagonal", u"M5.5 18.5 18.5 5.5"},
    OwnRow{u"eraser", u"M14.2 4.6 19.4 9.8 11 18.2H7.6L4.6 15.2Q3.9 14.5 4.6 13.8ZM9 9.2 14.8 15M11 18.2H20"},
    OwnRow{u"1.circle",
        u"M20.6 12C20.6 16.75 16.75 20.6 12 20.6 7.25 20.6 3.4 16.75 3.4 12 3.4 7.25 7.25 3.4 12 3.4"
        " 16.75 3.4 20.6 7.25 20.6 12ZM10 9.7 12.4 8V16.2"},
    OwnRow{u"checkerboard.rectangle", dockScreen, 1.9,
        u"M5.5 7.2h3.25v3.2h-3.25ZM12 7.2h3.25v3.2h-3.25ZM8.75 10.4h3.25v3.2h-3.25Z"
        "M15.25 10.4h3.25v3.2h-3.25ZM5.5 13.6h3.25v3.2h-3.25ZM12 13.6h3.25v3.2h-3.25Z"},
    OwnRow{u"square", square},
    OwnRow{u"square.fill", square, 2, square},
    OwnRow{u"dock.bottom", dockScreen, 1.7,
        u"M7.5 13.6h9c.55 0 1 .45 1 1v1c0 .55-.45 1-1 1h-9c-.55 0-1-.45-1-1v-1c0-.55.45-1 1-1Z"},
    OwnRow{u"dock.top", dockScreen, 1.7,
        u"M7.5 7.4h9c.55 0 1 .45 1 1v1c0 .55-.45 1-1 1h-9c-.55 0-1-.45-1-1v-1c0-.55.45-1 1-1Z"},
    OwnRow{u"dock.left", dockScreen, 1.7,
        u"M6.4 7.6h1c.55 0 1 .45 1 1v6.8c0 .55-.45 1-1 1h-1c-.55 0-1-.45-1-1v-6.8c0-.55.45-1 1-1Z"},
    OwnRow{u"dock.right", dockScreen, 1.7,
        u"M16.6 7.6h1c.55 0 1 .45 1 1v6.8c0 .55-.45 1-1 1h-1c-.55 0-1-.45-1-1v-6.8c0-.55.45-1 1-1Z"},
};

constexpr double grid = 24;
constexpr double contourWidth = 1.2;

QPainterPath outlined(const QPainterPath& lines, double width)
{
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    return stroker.createStroke(lines).simplified();
}

/// The icon font at the size of the grid, times ten for the precision of its outlines.
QFont iconFont()
{
    static const QString family = [] {
        const int id = QFontDatabase::addApplicationFont(u":/fonts/MaterialIcons-Regular.ttf"_s);
        return QFontDatabase::applicationFontFamilies(id).value(0);
    }();
    QFont font(family);
    font.setPixelSize(int(grid) * 10);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::NoFontMerging);
    return font;
}

/// The one glyph that the ligature stands for, on the grid; empty when the font does not join its letters.
QPainterPath glyph(QStringView ligature)
{
    QTextLayout layout(ligature.toString(), iconFont());
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const auto runs = layout.glyphRuns();
    if (runs.size() != 1)
        return {};
    // The letters that a ligature swallowed may stay behind as empty glyphs.
    const auto font = runs.front().rawFont();
    QPainterPath outline;
    for (const auto index : runs.front().glyphIndexes()) {
        const auto next = font.pathForGlyph(index);
        if (next.isEmpty())
            continue;
        if (!outline.isEmpty() || index == 0)
            return {};
        outline = next;
    }
    QTransform onGrid;
    onGrid.scale(grid / font.pixelSize(), grid / font.pixelSize());
    onGrid.translate(0, font.ascent());
    return onGrid.map(outline);
}

QPainterPath fromFont(const FontRow& row)
{
    const auto outline = glyph(row.ligature);
    switch (row.form) {
    case Form::plain:
        break;
    case Form::mirrored:
        return QTransform(-1, 0, 0, 1, grid, 0).map(outline);
    case Form::contour:
        return outlined(outline, contourWidth);
    }
    return outline;
}

QPainterPath fromDrawing(const OwnRow& row)
{
    auto path = outlined(pathFromData(row.lines), row.lineWidth);
    if (!row.areas.isEmpty())
        path = path.united(pathFromData(row.areas));
    return path;
}

QPainterPath onGrid(QStringView name)
{
    if (const auto* row = std::ranges::find(fontTable, name, &FontRow::name); row != fontTable.end())
        return fromFont(*row);
    if (const auto* row = std::ranges::find(ownTable, name, &OwnRow::name); row != ownTable.end())
        return fromDrawing(*row);
    return {};
}

/// The square that a symbol fills within `rect`.
QRectF place(const QRectF& rect)
{
    const double side = std::min(rect.width(), rect.height());
    return {rect.center() - QPointF(side, side) / 2, QSizeF(side, side)};
}

class Engine : public VectorIcon {
public:
    Engine(QStringView symbol, const IconColors& byState)
        : name(symbol.toString())
        , colors(byState)
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        painter->save();
        auto color = colors.normal;
        if (mode == QIcon::Disabled && colors.disabled.isValid())
            color = colors.disabled;
        else if (mode == QIcon::Disabled)
            painter->setOpacity(0.3);
        else if ((mode == QIcon::Active || mode == QIcon::Selected) && colors.active.isValid())
            color = colors.active;
        draw(name, rect, color, *painter);
        painter->restore();
    }

    QIconEngine* clone() const override { return new Engine(*this); }

private:
    QString name;
    IconColors colors;
};

} // namespace

bool exists(QStringView name)
{
    return std::ranges::find(fontTable, name, &FontRow::name) != fontTable.end()
        || std::ranges::find(ownTable, name, &OwnRow::name) != ownTable.end();
}

QStringList allNames()
{
    QStringList names;
    for (const auto& row : fontTable)
        names.append(row.name.toString());
    for (const auto& row : ownTable)
        names.append(row.name.toString());
    return names;
}

QPainterPath path(QStringView name, double pointSize)
{
    static QHash<QString, QPainterPath> known;
    const auto key = name.toString();
    auto found = known.constFind(key);
    if (found == known.constEnd()) {
        found = known.insert(key, onGrid(name));
        if (found->isEmpty())
            qWarning("There is no symbol named \"%s\".", qPrintable(key));
    }
    return QTransform::fromScale(pointSize / grid, pointSize / grid).map(*found);
}

void draw(QStringView name, const QRectF& rect, const QBrush& brush, QPainter& painter)
{
    const auto square = place(rect);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(path(name, square.width()).translated(square.topLeft()), brush);
    painter.restore();
}

void draw(QStringView name, const QRectF& rect, const QBrush& brush, GraphicsContext& context)
{
    const auto square = place(rect);
    context.fill(path(name, square.width()).translated(square.topLeft()), brush);
}

QIcon icon(QStringView name, const IconColors& colors) { return QIcon(new Engine(name, colors)); }

} // namespace pintalux::Symbol
