// SPDX-License-Identifier: MIT
#include "editor/style/ColorChooser.h"

#include "controls/Popover.h"
#include "controls/PushButton.h"
#include "controls/TextField.h"
#include "controls/theme/ControlPainting.h"
#include "controls/theme/Theme.h"
#include "editor/state/StyleActions.h"
#include "editor/style/ColorPanelBridge.h"
#include "editor/style/KeyboardGroup.h"
#include "editor/style/StyleButtons.h"
#include "model/Palette.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// Points.
constexpr QSize whole{280, 169};
constexpr int side = 16;
constexpr QRectF titlePlace(side, 14, 248, 17);
constexpr int firstRow = 41;
constexpr int cell = 26;
constexpr int cellGap = 6;
constexpr int rowGap = 8;
constexpr double disc = 22;
constexpr double lineY = 115;
constexpr QRectF chip(side, 128, 28, 28);
constexpr QRect fieldPlace(52, 128, 170, 28);
constexpr QRect panelPlace(230, 128, 34, 28);

constexpr std::array<QRgb, 8> greys{
    0x141414, 0x333333, 0x555555, 0x777777, 0x999999, 0xBBBBBB, 0xD6D6D6, 0xEEEEEE};

} // namespace

ColorChooser::ColorChooser(EditorModel& edited, std::function<void()> close, QWidget* parent)
    : QWidget(parent)
    , model(edited)
    , dismiss(std::move(close))
{
    setFixedSize(whole);
    setAccessibleName(u"Color"_s);
    QList<std::pair<QColor, QString>> colors;
    for (const auto& swatch : Palette::annotation())
        colors << std::pair(swatch.color, swatch.name);
    addRow(0, colors);
    colors.clear();
    for (const auto grey : greys)
        colors << std::pair(QColor(grey), u"Gris"_s);
    addRow(1, colors);
    addTextRow();
    new KeyboardGroup(*this, 0);
    connect(&model, &EditorModel::shownStyleChanged, this, &ColorChooser::refresh);
    refresh();
}

void ColorChooser::open(EditorModel& model, ChromeButton& button, const QWidget* clearOf)
{
    // The popover is made around its contents, which close it.
    auto popover = std::make_shared<QPointer<Popover>>();
    auto* contents = new ColorChooser(model, [popover] {
        if (*popover)
            (*popover)->close();
    });
    *popover = new Popover(contents);
    (*popover)->setAttribute(Qt::WA_DeleteOnClose);
    button.setOpen(true);
    connect(popover->data(), &Popover::closed, &button, [&button] { button.setOpen(false); });
    (*popover)->setClearOf(clearOf);
    (*popover)->popUp(&button);
}

QSize ColorChooser::sizeHint() const { return whole; }

void ColorChooser::addRow(int row, const QList<std::pair<QColor, QString>>& colors)
{
    int x = side;
    const int y = firstRow + row * (cell + rowGap);
    for (const auto& [color, name] : colors) {
        auto* swatch = new SwatchButton(color, name, this);
        swatch->setMetrics({.disc = disc, .hoveredDisc = disc + 2});
        // The ring around the chosen one is wider than the cell.
        swatch->setGeometry(x - cellGap / 2, y - rowGap / 2, cell + cellGap, cell + rowGap);
        connect(swatch, &QAbstractButton::clicked, this, [this, color = color] { choose(color); });
        swatches << swatch;
        x += cell + cellGap;
    }
}

void ColorChooser::addTextRow()
{
    hex = new TextField(this);
    hex->setGeometry(fieldPlace);
    hex->setFont(toolkitFont(Draw::monospacedFont(12, FontWeight::medium)));
    hex->setPlaceholderText(u"#RRGGBB"_s);
    hex->setAccessibleName(u"Color en hexadecimal"_s);
    connect(hex, &QLineEdit::returnPressed, this, &ColorChooser::submit);

    auto* panel = new PushButton({}, PushButton::Kind::bordered, this);
    panel->setSymbol(u"paintpalette.fill"_s);
    panel->setGeometry(panelPlace);
    panel->setToolTip(u"Otro color"_s);
    panel->setAccessibleName(u"Otro color"_s);
    connect(panel, &QAbstractButton::clicked, this, [this] {
        auto& edited = model;
        dismiss();
        ColorPanelBridge::shared().open(edited);
    });
}

void ColorChooser::choose(const QColor& color)
{
    StyleActions::chooseColor(model, color);
    refresh();
}

void ColorChooser::submit()
{
    if (const auto color = colorFromHex(hex->text()))
        choose(*color);
    else
        hex->setWrong(true);
}

void ColorChooser::refresh()
{
    const auto color = model.shownStyle().color;
    for (auto* swatch : swatches)
        swatch->setMarked(swatch->color() == color);
    hex->setText(hexString(color));
    hex->setWrong(false);
    update();
}

void ColorChooser::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto& theme = Theme::of(palette());
    ControlPainting::text(u"Color"_s, Draw::systemFont(13, FontWeight::semibold), theme.text, titlePlace,
        Qt::AlignLeft, painter);
    painter.fillRect(QRectF(side, lineY, width() - 2 * side, 1), theme.hair);
    ControlPainting::box(
        chip, Theme::controlRadius, model.shownStyle().color, theme.swatchEdge(), 1, painter);
}

} // namespace pintalux
