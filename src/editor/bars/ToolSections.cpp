// SPDX-License-Identifier: MIT
#include "editor/bars/ToolSections.h"

#include "controls/BarButton.h"
#include "controls/PushButton.h"
#include "controls/theme/Theme.h"
#include "editor/state/StyleActions.h"
#include "editor/style/BlurPicker.h"
#include "editor/style/ColorChooser.h"
#include "editor/style/StrokeSample.h"
#include "editor/style/StyleButtons.h"
#include "model/Palette.h"

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

struct WidthRow {
    double barHeight;
    QStringView title;
};
/// In the order of `EditorModel::widths`.
constexpr std::array widthTable{WidthRow{2, u"Fino"}, WidthRow{4, u"Medio"}, WidthRow{7, u"Grueso"}};
static_assert(widthTable.size() == EditorModel::widths.size());

/// Where the controls lie in one arrangement; points.
struct Layout {
    QSize whole;
    QRect swatch; ///< the first cell
    QSize pitch;  ///< to the next column and row
    int columns;
    SwatchButton::Metrics disc;
    QRect chooser;
    QRect width; ///< the first one
    int widthPitch;
    QRect extras;
};

const Layout& layoutOf(ToolSections::Arrangement arrangement)
{
    static const Layout wide{{436, 60}, {0, 12, 25, 36}, {25, 0}, 8, {}, {200, 12, 30, 36}, {236, 12, 30, 36},
        31, {336, 12, 100, 36}};
    static const Layout compact{{330, 60}, {0, 6, 24, 24}, {24, 24}, 4, {14, 16, 1.5}, {96, 12, 30, 36},
        {130, 12, 30, 36}, 31, {230, 12, 100, 36}};
    static const Layout upright{{100, 161}, {0, 0, 32, 27}, {34, 27}, 3, {}, {68, 54, 32, 27},
        {0, 87, 32, 32}, 34, {0, 125, 100, 36}};
    using Arrangement = ToolSections::Arrangement;
    return arrangement == Arrangement::wide ? wide : arrangement == Arrangement::compact ? compact : upright;
}

constexpr QSize toggleSize{32, 36};
constexpr int toggleGap = 2;
constexpr int cropHeight = 32;
constexpr int cropGap = 8;
/// The ring around a chosen colour is wider than its cell.
constexpr int overhang = 1;
constexpr int ringRoom = 6;

} // namespace

ToolSections::ToolSections(EditorModel& edited, QWidget* parent)
    : QWidget(parent)
    , model(edited)
{
    makeStyleControls();
    makeExtras();
    makeCropButtons();
    connect(&model, &EditorModel::shownStyleChanged, this, &ToolSections::refreshStyle);
    connect(&model, &EditorModel::changed, this, &ToolSections::refresh);
    refreshStyle();
    refreshVisibility();
}

void ToolSections::makeStyleControls()
{
    for (const auto& swatch : Palette::annotation()) {
        auto* button = new SwatchButton(swatch.color, swatch.name, this);
        connect(button, &QAbstractButton::clicked, this,
            [this, color = swatch.color] { StyleActions::chooseColor(model, color); });
        swatches << button;
    }
    chooser = new ColorChooserButton(u"Más colores"_s, this);
    connect(chooser, &QAbstractButton::clicked, this, &ToolSections::openColorChooser);
    for (std::size_t i = 0; i < widths.size(); ++i) {
        widths[i] = new WidthButton(widthTable[i].barHeight, widthTable[i].title.toString(), this);
        connect(widths[i], &QAbstractButton::clicked, this,
            [this, i] { StyleActions::chooseWidth(model, EditorModel::widths[i]); });
    }
}

void ToolSections::makeExtras()
{
    const BarButton::Metrics metrics{.size = toggleSize, .radius = Theme::toggleRadius, .symbolSize = 20};
    const auto toggle = [&](const QString& symbol, const QString& help, void (*action)(EditorModel&)) {
        auto* button = new BarButton(symbol, help, this, metrics);
        connect(button, &QAbstractButton::clicked, this, [this, action] { action(model); });
        return button;
    };
    fill = toggle(u"square"_s, u"Relleno (F)"_s, &StyleActions::toggleFilled);
    handwriting = toggle(u"signature"_s, u"Letra manuscrita"_s, &StyleActions::toggleHandwritten);
    callout = toggle(u"bubble.left.fill"_s,
        u"Llamada: texto en un bocadillo con puntero. Arrastra el nodo para apuntar"_s,
        &StyleActions::toggleCallout);
    blurPicker = new BlurPicker(model, this);
    sample = new StrokeSample(model, this);
}

void ToolSections::makeCropButtons()
{
    applyCrop = new PushButton(u"Recortar"_s, PushButton::Kind::solid, this);
    applyCrop->setSymbol(u"crop"_s);
    cancelCrop = new PushButton(u"Cancelar"_s, PushButton::Kind::bordered, this);
    for (auto* button : {applyCrop, cancelCrop}) {
        button->setButtonHeight(cropHeight);
        button->setRadius(Theme::toolRadius);
        button->setFocusPolicy(Qt::TabFocus);
    }
    connect(applyCrop, &QAbstractButton::clicked, this, [this] { model.applyCrop(); });
    connect(cancelCrop, &QAbstractButton::clicked, this, [this] { model.setCropRect({}); });
}

QSize ToolSections::sizeFor(Arrangement arrangement) { return layoutOf(arrangement).whole; }

void ToolSections::arrange(Arrangement arrangement, const QRect& place)
{
    setGeometry(place.adjusted(-ringRoom, -ringRoom, ringRoom, ringRoom));
    constexpr QPoint corner(ringRoom, ringRoom);
    const auto& layout = layoutOf(arrangement);
    for (int i = 0; i < int(swatches.size()); ++i) {
        const QPoint cell(
            i % layout.columns * layout.pitch.width(), i / layout.columns * layout.pitch.height());
        swatches[i]->setGeometry(layout.swatch.translated(corner + cell).adjusted(-overhang, 0, overhang, 0));
        swatches[i]->setMetrics(layout.disc);
    }
    chooser->setGeometry(layout.chooser.translated(corner));
    for (int i = 0; i < int(widths.size()); ++i)
        widths[std::size_t(i)]->setGeometry(
            layout.width.translated(corner + QPoint(i * layout.widthPitch, 0)));
    slot = layout.extras.translated(corner);
    placeExtras();
    placeCropButtons(arrangement, corner);
}

void ToolSections::placeExtras()
{
    QPoint corner = slot.topLeft();
    for (auto* toggle : {fill, handwriting, callout}) {
        toggle->move(corner);
        if (!toggle->isHidden())
            corner.rx() += toggleSize.width() + toggleGap;
    }
    blurPicker->setGeometry(slot.adjusted(0, 1, 0, -1));
    sample->setGeometry(slot);
}

void ToolSections::placeCropButtons(Arrangement arrangement, QPoint corner)
{
    const QRect whole(corner, layoutOf(arrangement).whole);
    QRect apply({}, QSize(applyCrop->sizeHint().width(), cropHeight));
    QRect cancel({}, QSize(cancelCrop->sizeHint().width(), cropHeight));
    if (arrangement == Arrangement::upright) {
        apply.setWidth(whole.width());
        cancel.setWidth(whole.width());
        apply.moveTopLeft({whole.left(), whole.top() + (whole.height() - 2 * cropHeight - cropGap) / 2});
        cancel.moveTopLeft({whole.left(), apply.bottom() + 1 + cropGap});
    } else {
        const int together = apply.width() + cropGap + cancel.width();
        const int top = whole.top() + (whole.height() - cropHeight) / 2;
        apply.moveTopLeft({whole.left() + (whole.width() - together) / 2, top});
        cancel.moveTopLeft({apply.right() + 1 + cropGap, top});
    }
    applyCrop->setGeometry(apply);
    cancelCrop->setGeometry(cancel);
}

void ToolSections::openColorChooser()
{
    ColorChooser::open(model, *chooser, isVertical(model.paletteEdge()) ? nullptr : parentWidget());
}

void ToolSections::refresh(EditorModel::Field field)
{
    using Field = EditorModel::Field;
    switch (field) {
    case Field::tool:
    case Field::cropRect:
    case Field::selectedID:
    case Field::doc:
        refreshVisibility();
        break;
    default:
        break;
    }
}

void ToolSections::refreshStyle()
{
    const auto style = model.shownStyle();
    for (auto* swatch : swatches)
        swatch->setMarked(swatch->color() == style.color);
    chooser->setColor(style.color);
    for (std::size_t i = 0; i < widths.size(); ++i)
        widths[i]->setMarked(style.strokeWidth == EditorModel::widths[i]);
    fill->setSymbol(style.filled ? u"square.fill"_s : u"square"_s);
    fill->setMarked(style.filled);
    handwriting->setMarked(style.handwritten);
    callout->setMarked(style.calloutText);
}

void ToolSections::refreshVisibility()
{
    const auto tool = model.tool();
    const auto* selected = model.selected();
    const bool cropping = tool == Tool::crop && model.cropRect();
    const bool fillable = supportsFill(tool);
    const bool texts = tool == Tool::text || (selected && selected->kind == AnnotationKind::text);
    const bool blurs = tool == Tool::blur;
    for (auto* swatch : swatches)
        swatch->setVisible(!cropping);
    chooser->setVisible(!cropping);
    for (auto* width : widths)
        width->setVisible(!cropping);
    fill->setVisible(!cropping && fillable);
    handwriting->setVisible(!cropping && texts);
    callout->setVisible(!cropping && texts);
    blurPicker->setVisible(!cropping && blurs);
    sample->setVisible(!cropping && !fillable && !texts && !blurs);
    applyCrop->setVisible(cropping);
    cancelCrop->setVisible(cropping);
    placeExtras();
}

} // namespace pintalux
