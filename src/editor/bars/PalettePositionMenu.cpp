// SPDX-License-Identifier: MIT
#include "editor/bars/PalettePositionMenu.h"

#include "controls/theme/Theme.h"
#include "platform/graphics/Symbol.h"

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// Points.
constexpr int cardWidth = 212;
constexpr QSize glyphSize{18, 18};

} // namespace

PalettePositionMenu::PalettePositionMenu(EditorModel& edited, QWidget* parent)
    : Menu(parent)
    , model(edited)
{
    setCardWidth(cardWidth);
    connect(this, &QMenu::aboutToShow, this, &PalettePositionMenu::fill);
    fill();
}

void PalettePositionMenu::fill()
{
    clear();
    auto* header = addAction(u"Posición de la paleta"_s);
    header->setEnabled(false);
    setLook(*header, Look::section);

    const auto& theme = Theme::of(palette());
    for (const auto& row : paletteEdgeTable) {
        auto* action = addAction(row.title.toString());
        action->setCheckable(true);
        action->setChecked(model.paletteEdge() == row.value);
        setPicture(*action,
            Symbol::icon(u"dock."_s + row.rawValue.toString(), {.normal = theme.icon, .active = Qt::white}),
            glyphSize);
        connect(action, &QAction::triggered, this, [this, edge = row.value] { model.setPaletteEdge(edge); });
    }
    addSeparator();
    const bool hidden = model.toolbarHidden();
    connect(addAction(hidden ? u"Mostrar herramientas"_s : u"Ocultar herramientas"_s), &QAction::triggered,
        this, [this, hidden] { model.setToolbarHidden(!hidden); });
}

} // namespace pintalux
