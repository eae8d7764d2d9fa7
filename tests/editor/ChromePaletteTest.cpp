// SPDX-License-Identifier: MIT
#include "ChromeStage.h"
#include "controls/ChromeButton.h"
#include "controls/PushButton.h"
#include "editor/bars/ToolButton.h"
#include "editor/style/StyleButtons.h"

namespace {

struct ChromePalette : ChromeStage {
    QAbstractButton* grip()
    {
        return button(u"Arrastra para mover la paleta (abajo, arriba o a los lados)"_s);
    }

    QList<ChromeButton*> visibleButtons()
    {
        auto found = tools.findChildren<ChromeButton*>();
        found.removeIf([](const auto* control) { return !control->isVisible(); });
        return found;
    }
};

constexpr std::array everyEdge{PaletteEdge::bottom, PaletteEdge::top, PaletteEdge::left, PaletteEdge::right};

} // namespace

TEST_F(ChromePalette, ToolsAreChosenByAClick)
{
    for (const auto& row : toolTable) {
        click(u"%1 (%2)"_s.arg(title(row.value), QChar(shortcut(row.value)).toUpper()));
        EXPECT_EQ(model.tool(), row.value);
        for (const auto* other : tools.findChildren<ToolButton*>())
            EXPECT_EQ(other->isMarked(), other->tool() == row.value);
    }
}

TEST_F(ChromePalette, AColourAndAWidthRestyleTheSelectedMarkInOneStep)
{
    select(Kind::arrow);
    const auto before = *model.selected();
    click(u"Grueso"_s);
    EXPECT_EQ(model.strokeWidth(), 7);
    EXPECT_EQ(model.selected()->lineWidth, 14) << "7 points at two pixels a point";
    EXPECT_EQ(model.undoCount(), 2);
    click(u"Menta"_s);
    EXPECT_EQ(model.color(), QColor(0x2B, 0xD6, 0x7B));
    EXPECT_EQ(model.selected()->color, QColor(0x2B, 0xD6, 0x7B));
    EXPECT_EQ(model.undoCount(), 3);
    model.undo();
    model.undo();
    EXPECT_EQ(model.doc().annotations, QList{before});

    model.setStrokeWidth(4.5);
    EXPECT_FALSE(button(u"Medio"_s)->isChecked());
    click(u"Medio"_s);
    EXPECT_EQ(model.strokeWidth(), 4);
    EXPECT_TRUE(button(u"Medio"_s)->isChecked());
    EXPECT_EQ(model.undoCount(), 1) << "without a selection nothing is restyled";
}

TEST_F(ChromePalette, ExtrasAreThoseOfTheToolAndMoveNothing)
{
    const auto size = tools.sizeHint();
    const auto crop = button(u"Recortar (C)"_s)->geometry();
    for (const auto& row : toolTable) {
        model.setTool(row.value);
        EXPECT_EQ(bool(button(u"Relleno (F)"_s)), supportsFill(row.value)) << qPrintable(title(row.value));
        EXPECT_EQ(bool(button(u"Letra manuscrita"_s)), row.value == Tool::text);
        EXPECT_EQ(bool(button(u"Pixelar"_s)), row.value == Tool::blur);
        EXPECT_EQ(tools.sizeHint(), size);
        EXPECT_EQ(button(u"Recortar (C)"_s)->geometry(), crop);
    }
    model.setTool(Tool::select);
    select(Kind::text);
    EXPECT_TRUE(button(u"Letra manuscrita"_s)) << "that of the selected mark";
    model.deleteSelected();
    EXPECT_FALSE(button(u"Letra manuscrita"_s));
}

TEST_F(ChromePalette, ExtrasChangeTheDefaultAndTheMarksTheyMean)
{
    model.setTool(Tool::rectangle);
    click(u"Relleno (F)"_s);
    EXPECT_TRUE(model.filled());
    EXPECT_EQ(model.undoCount(), 0);
    click(u"Relleno (F)"_s);

    model.setTool(Tool::text);
    model.setHandwritten(false);
    model.setCalloutText(false);
    select(Kind::text);
    click(u"Letra manuscrita"_s);
    EXPECT_TRUE(model.handwritten() && model.selected()->handwritten);
    click(u"Llamada: texto en un bocadillo con puntero. Arrastra el nodo para apuntar"_s);
    EXPECT_TRUE(model.calloutText() && model.selected()->filled && model.selected()->pointer);
    EXPECT_EQ(model.undoCount(), 3);
    click(u"Llamada: texto en un bocadillo con puntero. Arrastra el nodo para apuntar"_s);
    EXPECT_FALSE(model.selected()->filled || model.selected()->pointer);

    select(Kind::arrow); // stays selected with the text tool, but has no letters
    const auto steps = model.undoCount();
    click(u"Letra manuscrita"_s);
    EXPECT_EQ(model.undoCount(), steps);

    model.setTool(Tool::blur);
    select(Kind::blur);
    click(u"Desenfocar"_s);
    EXPECT_EQ(model.blurStyle(), BlurStyle::blur);
    EXPECT_EQ(model.selected()->blurStyle, BlurStyle::blur);
}

TEST_F(ChromePalette, ASelectedMarkShowsItsOwnValuesAndTogglesThem)
{
    model.setColor(Palette::annotation()[0].color);
    model.setStrokeWidth(4);
    model.setFilled(true);
    model.setTool(Tool::rectangle);
    const Annotation mark{.kind = Kind::rectangle,
        .start = {10, 10},
        .end = {90, 60},
        .color = Palette::annotation()[2].color,
        .lineWidth = 14};
    model.add(mark);
    const auto shown = [&](int swatch, const QString& width, bool fills) {
        for (const auto* offered : tools.findChildren<SwatchButton*>())
            EXPECT_EQ(offered->isMarked(), offered->color() == Palette::annotation()[swatch].color);
        for (const auto& each : {u"Fino"_s, u"Medio"_s, u"Grueso"_s})
            EXPECT_EQ(button(each)->isChecked(), each == width) << qPrintable(each);
        EXPECT_EQ(button(u"Relleno (F)"_s)->isChecked(), fills);
    };
    shown(0, u"Medio"_s, true);
    model.setSelectedID(mark.id);
    shown(2, u"Grueso"_s, false);
    EXPECT_EQ(model.color(), Palette::annotation()[0].color) << "selecting changes no style";
    EXPECT_EQ(settings.strokeWidth(), 4);
    click(u"Relleno (F)"_s);
    EXPECT_TRUE(model.selected()->filled) << "what is seen is toggled";
    model.setSelectedID({});
    shown(0, u"Medio"_s, true);
}

TEST_F(ChromePalette, NothingOverlapsOrIsCutOnAnyEdgeAndWidth)
{
    for (const int width : {900, 989, 990, 1380}) {
        for (const auto edge : everyEdge) {
            model.setPaletteEdge(edge);
            resize({width, 560});
            EXPECT_LE(tools.height(), 560 - EditorChrome::barHeight - 28);
            EXPECT_LE(tools.width(), width - 2 * 14);
            for (const auto& row : toolTable) {
                model.setTool(row.value);
                const auto controls = visibleButtons();
                for (const auto* a : controls) {
                    const QRect place(a->mapTo(&tools, QPoint()), a->size());
                    EXPECT_TRUE(tools.rect().contains(place)) << qPrintable(a->accessibleName());
                    EXPECT_GE(std::min(place.width(), place.height()), 18);
                    for (const auto* b : controls)
                        // Rings of colours reach one point into the neighbour.
                        EXPECT_TRUE(a == b
                            || !place.adjusted(1, 1, -1, -1)
                                    .intersects(
                                        QRect(b->mapTo(&tools, QPoint()), b->size()).adjusted(1, 1, -1, -1)))
                            << qPrintable(a->accessibleName() + u" / "_s + b->accessibleName());
                }
            }
            model.setTool(Tool::crop);
            model.setCropRect(QRectF(0, 0, 300, 200));
            for (const auto* push : tools.findChildren<PushButton*>()) {
                // The upright palette takes a little from the sides, not from the text.
                EXPECT_GE(push->width(), push->sizeHint().width() - 4) << qPrintable(push->text());
                EXPECT_TRUE(tools.rect().contains(QRect(push->mapTo(&tools, QPoint()), push->size())));
            }
        }
    }
}

TEST_F(ChromePalette, TheGripCarriesThePaletteAndAsksForItsPlaceOnce)
{
    const auto start = tools.pos();
    gesture::mouse(*grip(), QEvent::MouseButtonPress, {9, 20}, Qt::LeftButton);
    gesture::mouse(*grip(), QEvent::MouseMove, {10, 21}, Qt::LeftButton);
    gesture::mouse(*grip(), QEvent::MouseButtonRelease, {10, 21}, {});
    EXPECT_EQ(tools.pos(), start);
    EXPECT_EQ(snaps, 0) << "a click would dock the palette where the grip happens to be";

    gesture::mouse(*grip(), QEvent::MouseButtonPress, {9, 20}, Qt::LeftButton);
    const auto from = grip()->mapToGlobal(QPointF(9, 20));
    for (const QPointF step : {QPointF(-40, -100), QPointF(-90, -300)}) {
        gesture::mouse(*grip(), QEvent::MouseMove, grip()->mapFromGlobal(from + step), Qt::LeftButton);
        EXPECT_EQ(tools.pos(), start + step.toPoint());
        EXPECT_EQ(snaps, 0);
    }
    gesture::mouse(*grip(), QEvent::MouseButtonRelease, {9, 20}, {});
    EXPECT_EQ(snaps, 1);
}
