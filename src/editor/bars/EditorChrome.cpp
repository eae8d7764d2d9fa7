// SPDX-License-Identifier: MIT
#include "editor/bars/EditorChrome.h"

#include "controls/BarButton.h"
#include "controls/Popover.h"
#include "controls/PushButton.h"
#include "controls/theme/Theme.h"
#include "editor/bars/BrandMarkView.h"
#include "editor/bars/InfoText.h"
#include "editor/bars/PalettePositionMenu.h"
#include "editor/state/HoverInfo.h"
#include "editor/style/BeautifyPanel.h"
#include "editor/style/KeyboardGroup.h"
#include "platform/desktop/KeyLabel.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// Points.
constexpr int side = 12;
constexpr int rightSide = 10;
constexpr int beforeSave = 10;
constexpr int groupGap = 9; ///< between buttons and a divider
constexpr int infoGap = 12; ///< between texts and a divider
constexpr int betweenValues = 16;
constexpr int menuGap = 6;

QString sizeText(const QSize& pixels) { return u"%1 × %2"_s.arg(pixels.width()).arg(pixels.height()); }

QString drawnCaption(HoverInfo::Drawn::Kind kind)
{
    return kind == HoverInfo::Drawn::Kind::crop ? u"recorte"_s : u"forma"_s;
}

QString zoomText(int percent) { return u"%1\u00a0%"_s.arg(percent); }

} // namespace

EditorChrome::EditorChrome(
    EditorModel& edited, HoverInfo& hovered, RunCommand runCommand, const DragOut& dragOut, QWidget* parent)
    : QWidget(parent)
    , model(edited)
    , hover(hovered)
    , run(std::move(runCommand))
{
    setFixedHeight(barHeight);
    auto* layout = new QHBoxLayout(this);
    layout->setSpacing(0);
    layout->setContentsMargins(side, 0, rightSide, 0);
    layout->addWidget(new BrandMarkView(dragOut, this));
    layout->addWidget(new BarDivider(side, groupGap, this));
    addCommands(*layout, {Command::undo, Command::redo, Command::clear});
    layout->addWidget(new BarDivider(groupGap, infoGap, this));
    addInformation(*layout);
    layout->addStretch();
    addToolsToggle(*layout);
    layout->addWidget(new BarDivider(groupGap, groupGap, this));
    addActions(*layout);
    layout->addSpacing(beforeSave);
    auto* save = new PushButton(u"Guardar PNG"_s, PushButton::Kind::gradient, this);
    save->setToolTip(KeyLabel::text(help(Command::saveAs)));
    save->setFocusPolicy(Qt::TabFocus);
    connect(save, &QAbstractButton::clicked, this, [this] { run(Command::saveAs); });
    layout->addWidget(save);

    new KeyboardGroup(*this, 0);
    for (const bool forward : {true, false}) {
        auto* key = new QShortcut(QKeySequence(forward ? Qt::Key_F6 : Qt::SHIFT | Qt::Key_F6), this);
        connect(
            key, &QShortcut::activated, this, [this, forward] { KeyboardGroup::walk(*window(), forward); });
    }
    using Field = EditorModel::Field;
    connect(&model, &EditorModel::changed, this, &EditorChrome::refresh);
    connect(&hover, &HoverInfo::changed, this, &EditorChrome::refreshHover);
    for (const auto field : {Field::doc, Field::toolbarHidden, Field::beautify})
        refresh(field);
    refreshHover();
}

void EditorChrome::addCommands(QBoxLayout& layout, std::initializer_list<Command> offered)
{
    for (const auto command : offered) {
        auto* button = new BarButton(symbol(command), help(command), this);
        connect(button, &QAbstractButton::clicked, this, [this, command] { run(command); });
        layout.addWidget(button);
        commands.append({command, button});
    }
}

void EditorChrome::addInformation(QBoxLayout& layout)
{
    const auto widest = sizeText(model.doc().image.size());
    pixels = new InfoText(u"píxeles"_s, widest, this);
    zoom = new InfoText(u"zoom"_s, zoomText(100), this);
    drawn = new InfoText(drawnCaption(HoverInfo::Drawn::Kind::crop), widest, this);
    color = new HoverColorButton(this);
    connect(color, &QAbstractButton::clicked, this, [this] { run(Command::copyHoverColor); });
    layout.addWidget(pixels);
    layout.addSpacing(betweenValues);
    layout.addWidget(zoom);
    layout.addWidget(new BarDivider(infoGap, infoGap - HoverColorButton::chipInset, this));
    layout.addWidget(color);
    layout.addSpacing(betweenValues);
    layout.addWidget(drawn);
}

void EditorChrome::addToolsToggle(QBoxLayout& layout)
{
    const int height = BarButton::barHeight;
    tools = new BarButton({}, {}, this, {.size = {30, height}, .part = BarButton::Part::leading});
    edges = new BarButton(u"chevron"_s, u"Posición de la paleta"_s, this,
        {.size = {20, height}, .symbolSize = 14, .part = BarButton::Part::trailing});
    connect(
        tools, &QAbstractButton::clicked, this, [this] { model.setToolbarHidden(!model.toolbarHidden()); });
    connect(edges, &QAbstractButton::pressed, this, &EditorChrome::openPositionMenu);
    layout.addWidget(tools);
    layout.addSpacing(1);
    layout.addWidget(edges);
}

void EditorChrome::addActions(QBoxLayout& layout)
{
    beautify = new BarButton(u"sparkles"_s, u"Embellecer: fondo con degradado, esquinas y sombra"_s, this);
    connect(beautify, &QAbstractButton::clicked, this, &EditorChrome::toggleBeautify);
    layout.addWidget(beautify);
    addCommands(layout,
        {Command::copy, Command::quickSave, Command::insertImage, Command::pin, Command::extractText});
}

void EditorChrome::openPositionMenu()
{
    auto* menu = new PalettePositionMenu(model, this);
    edges->setOpen(true);
    connect(menu, &QMenu::aboutToHide, this, [this, menu] {
        edges->setOpen(false);
        edges->setDown(false);
        menu->deleteLater();
    });
    menu->popUpAt(mapToGlobal(QPoint(tools->x(), height() + menuGap)));
}

void EditorChrome::toggleBeautify()
{
    auto* popover = new Popover(new BeautifyPanel(model));
    popover->setAttribute(Qt::WA_DeleteOnClose);
    beautify->setOpen(true);
    connect(popover, &Popover::closed, this, [this] { beautify->setOpen(false); });
    popover->setClearOf(this);
    popover->popUp(beautify);
}

void EditorChrome::refresh(EditorModel::Field field)
{
    using Field = EditorModel::Field;
    switch (field) {
    case Field::undoCount:
    case Field::redoCount:
        refreshCommands();
        break;
    case Field::doc:
        refreshCommands();
        pixels->setValue(sizeText(model.doc().image.size()));
        break;
    case Field::toolbarHidden: {
        const bool shown = !model.toolbarHidden();
        tools->setSymbol(shown ? u"paintpalette.fill"_s : u"paintpalette"_s);
        tools->setHelp(shown ? u"Ocultar herramientas (Tab)"_s : u"Mostrar herramientas (Tab)"_s);
        tools->setMarked(shown);
        edges->setMarked(shown);
        break;
    }
    case Field::beautify:
        beautify->setMarked(model.beautify().enabled);
        break;
    default:
        break;
    }
}

void EditorChrome::refreshCommands()
{
    for (const auto& [command, button] : std::as_const(commands))
        button->setEnabled(isPossible(command, model));
}

void EditorChrome::refreshHover()
{
    zoom->setValue(zoomText(hover.zoom()));
    color->setColor(hover.color(), hover.hex());
    drawn->setVisible(hover.drawn().has_value());
    if (hover.drawn())
        drawn->setValue(sizeText(hover.drawn()->pixels), drawnCaption(hover.drawn()->kind));
}

void EditorChrome::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const auto& theme = Theme::of(palette());
    painter.fillRect(rect(), theme.bar);
    const double hairline = 1 / devicePixelRatioF();
    painter.fillRect(QRectF(0, height() - hairline, width(), hairline), theme.hair);
}

} // namespace pintalux
