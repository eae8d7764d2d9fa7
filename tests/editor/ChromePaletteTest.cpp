// SPDX-License-Identifier: MIT
#include "ChromeStage.h"
#include "controls/ChromeButton.h"
#include "controls/PushButton.h"
#include "editor/bars/InstrumentView.h"
#include "editor/bars/ToolButton.h"
#include "editor/style/StyleButtons.h"
#include "model/Palette.h"

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

struct ChromePalette : ChromeStage {
    QAbstractButton* grip()
    {
        return button(u"Arrastra para mover la paleta (abajo, arriba o a los lados)"_s);
    }

    /// What the palette offers besides tools, colours and widths.
    QStringList extras()
    {
        QStringList found;
        for (const auto& name : {u"Relleno (F)"_s, u"Letra manuscrita"_s,
                 u"Llamada: texto en un bocadillo con puntero. Arrastra el nodo para apuntar"_s, u"Pixelar"_s,
                 u"Desenfocar"_s})
            if (button(name))
                found << name.section(u':', 0, 0);
        return found;
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

TEST_F(ChromePalette, ToolsAreInOrderAndChosenByAClick)
{
    QList<Tool> order;
    for (auto* view : tools.findChildren<InstrumentView*>())
        order << view->tool();
    for (auto* shape : tools.findChildren<ToolButton*>())
        order << shape->tool();
    EXPECT_EQ(order,
        (QList{Tool::pen, Tool::highlighter, Tool::eraser, Tool::select, Tool::arrow, Tool::line,
            Tool::rectangle, Tool::ellipse, Tool::text, Tool::step, Tool::blur, Tool::crop}));
    int right = 0;
    for (const auto tool : order) {
        const auto help = u"%1 (%2)"_s.arg(title(tool), QChar(shortcut(tool)).toUpper());
        click(help);
        EXPECT_EQ(model.tool(), tool);
        EXPECT_GE(button(help)->x(), right);
        right = button(help)->geometry().right();
        for (const auto* other : tools.findChildren<ToolButton*>())
            EXPECT_EQ(other->isMarked(), other->tool() == tool);
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

    for (const auto& [name, points] : {std::pair(u"Fino"_s, 2.0), std::pair(u"Medio"_s, 4.0)}) {
        click(name);
        EXPECT_EQ(model.strokeWidth(), points);
        EXPECT_TRUE(button(name)->isChecked());
    }
    model.setStrokeWidth(4.5);
    EXPECT_FALSE(button(u"Medio"_s)->isChecked());
    for (const auto& swatch : Palette::annotation()) {
        model.setColor(swatch.color);
        for (const auto* offered : tools.findChildren<SwatchButton*>())
            EXPECT_EQ(offered->isMarked(), offered->color() == swatch.color);
    }
    EXPECT_EQ(model.undoCount(), 1) << "without a selection nothing is restyled";
}

TEST_F(ChromePalette, ExtrasAreThoseOfTheToolAndMoveNothing)
{
    const QMap<Tool, QStringList> expected{
        {Tool::rectangle, {u"Relleno (F)"_s}},
        {Tool::ellipse, {u"Relleno (F)"_s}},
        {Tool::text, {u"Relleno (F)"_s, u"Letra manuscrita"_s, u"Llamada"_s}},
        {Tool::blur, {u"Pixelar"_s, u"Desenfocar"_s}},
    };
    const auto size = tools.sizeHint();
    const auto crop = button(u"Recortar (C)"_s)->geometry();
    for (const auto& row : toolTable) {
        model.setTool(row.value);
        EXPECT_EQ(extras(), expected.value(row.value)) << qPrintable(title(row.value));
        EXPECT_EQ(tools.sizeHint(), size);
        EXPECT_EQ(button(u"Recortar (C)"_s)->geometry(), crop);
    }
    model.setTool(Tool::select);
    select(Kind::text);
    EXPECT_EQ(extras(), (QStringList{u"Letra manuscrita"_s, u"Llamada"_s}));
    model.deleteSelected();
    EXPECT_EQ(extras(), QStringList());
}

TEST_F(ChromePalette, ExtrasChangeTheDefaultAndTheMarksTheyMean)
{
    model.setTool(Tool::rectangle);
    click(u"Relleno (F)"_s);
    EXPECT_TRUE(model.filled());
    EXPECT_EQ(model.undoCount(), 0);
    click(u"Relleno (F)"_s);
    EXPECT_FALSE(model.filled());

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

TEST_F(ChromePalette, ACropRectangleBringsItsTwoButtons)
{
    model.setTool(Tool::crop);
    EXPECT_FALSE(button(u"Cancelar"_s));
    model.setCropRect(QRectF(100, 100, 300, 200));
    EXPECT_FALSE(button(u"Menta"_s) || button(u"Fino"_s));
    click(u"Cancelar"_s);
    EXPECT_FALSE(model.cropRect());
    EXPECT_EQ(model.doc().image.width(), 1180);
    model.setCropRect(QRectF(100, 100, 300, 200));
    click(u"Recortar"_s);
    EXPECT_EQ(model.doc().image.size(), QSize(300, 200));
    EXPECT_TRUE(button(u"Menta"_s));
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
    send(*grip(), QEvent::MouseButtonPress, {9, 20}, Qt::LeftButton);
    send(*grip(), QEvent::MouseMove, {10, 21}, Qt::LeftButton);
    send(*grip(), QEvent::MouseButtonRelease, {10, 21}, {});
    EXPECT_EQ(tools.pos(), start);
    EXPECT_EQ(snaps, 0) << "a click would dock the palette where the grip happens to be";

    send(*grip(), QEvent::MouseButtonPress, {9, 20}, Qt::LeftButton);
    const auto from = grip()->mapToGlobal(QPointF(9, 20));
    for (const QPointF step : {QPointF(-40, -100), QPointF(-90, -300)}) {
        send(*grip(), QEvent::MouseMove, grip()->mapFromGlobal(from + step), Qt::LeftButton);
        EXPECT_EQ(tools.pos(), start + step.toPoint());
        EXPECT_EQ(snaps, 0);
    }
    send(*grip(), QEvent::MouseButtonRelease, {9, 20}, {});
    EXPECT_EQ(snaps, 1);
}
