// SPDX-License-Identifier: MIT
#include "ChromeStage.h"
#include "controls/BarButton.h"
#include "editor/bars/BrandMarkView.h"
#include "editor/bars/InfoText.h"
#include "editor/bars/PalettePositionMenu.h"
#include "editor/style/BeautifyPanel.h"

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

using ChromeBar = ChromeStage;

} // namespace

TEST_F(ChromeBar, ButtonsStandInOrderAndAskForTheirCommands)
{
    select(Kind::arrow);
    model.add({});
    model.undo();
    model.add({});
    model.undo(); // one step to undo, one to redo
    int right = 0;
    for (const auto command :
        {Command::undo, Command::redo, Command::clear, Command::copyHoverColor, Command::copy,
            Command::quickSave, Command::insertImage, Command::pin, Command::extractText, Command::saveAs}) {
        const auto name = command == Command::saveAs ? u"Guardar PNG"_s : help(command);
        auto* control = button(name);
        ASSERT_TRUE(control) << qPrintable(name);
        EXPECT_EQ(control->toolTip(), KeyLabel::text(help(command)));
        if (const auto* plain = qobject_cast<BarButton*>(control)) {
            EXPECT_EQ(plain->symbolName(), symbol(command));
        }
        asked.clear();
        click(name);
        EXPECT_EQ(asked, QList{command}) << qPrintable(name);
        EXPECT_GE(control->x(), right) << qPrintable(name);
        right = control->geometry().right();
    }
}

TEST_F(ChromeBar, HistoryIsOfferedOnlyWhenThereIsSome)
{
    const auto offered = [this] {
        return std::tuple(button(u"Deshacer (⌘Z)"_s)->isEnabled(), button(u"Rehacer (⇧⌘Z)"_s)->isEnabled(),
            button(u"Borrar todas las anotaciones"_s)->isEnabled());
    };
    EXPECT_EQ(offered(), std::tuple(false, false, false));
    click(u"Deshacer (⌘Z)"_s);
    EXPECT_TRUE(asked.isEmpty());
    select(Kind::arrow);
    EXPECT_EQ(offered(), std::tuple(true, false, true));
    model.undo();
    EXPECT_EQ(offered(), std::tuple(false, true, false));
    model.redo();
    model.clearAnnotations();
    EXPECT_EQ(offered(), std::tuple(true, false, false));
}

TEST_F(ChromeBar, InformationFollowsTheDocumentAndThePointer)
{
    const auto values = [this] {
        QStringList found;
        for (const auto* text : bar.findChildren<InfoText*>())
            found << text->value();
        return found;
    };
    EXPECT_EQ(values().value(0), u"1180 × 700"_s);
    canvas.hover().setZoom(54);
    canvas.hover().setColor(QColor(0x0F, 0x8F, 0x83));
    EXPECT_EQ(values().value(1), u"54\u00a0%"_s);
    EXPECT_EQ(
        button(u"Color bajo el cursor. ⇧C o clic para copiarlo"_s)->accessibleDescription(), u"#0F8F83"_s);
    model.setTool(Tool::crop);
    model.setCropRect(QRectF(0.5, 0, 399.2, 300));
    QApplication::processEvents();
    EXPECT_EQ(values().value(2), u"400 × 300"_s) << "what would remain";
    model.applyCrop();
    EXPECT_EQ(values().value(0), u"400 × 300"_s);
}

TEST_F(ChromeBar, ToolsAreHiddenShownAndMoved)
{
    click(u"Ocultar herramientas (Tab)"_s);
    EXPECT_TRUE(model.toolbarHidden());
    auto* toggle = qobject_cast<BarButton*>(button(u"Mostrar herramientas (Tab)"_s));
    ASSERT_TRUE(toggle);
    EXPECT_EQ(toggle->symbolName(), u"paintpalette"_s);
    EXPECT_FALSE(toggle->isMarked());
    click(*toggle);
    EXPECT_FALSE(model.toolbarHidden());
    EXPECT_EQ(toggle->symbolName(), u"paintpalette.fill"_s);

    PalettePositionMenu menu(model, &window);
    QStringList titles;
    for (const auto* action : menu.actions())
        titles << action->text() + (action->isChecked() ? u" *"_s : QString());
    EXPECT_EQ(titles,
        (QStringList{u"Posición de la paleta"_s, u"Abajo *"_s, u"Arriba"_s, u"Izquierda"_s, u"Derecha"_s,
            QString(), u"Ocultar herramientas"_s}));
    menu.actions().at(3)->trigger();
    EXPECT_EQ(model.paletteEdge(), PaletteEdge::left);
    menu.actions().constLast()->trigger();
    EXPECT_TRUE(model.toolbarHidden());
}

TEST_F(ChromeBar, FramingOpensAndShowsThatItIsOn)
{
    const auto help = u"Embellecer: fondo con degradado, esquinas y sombra"_s;
    EXPECT_FALSE(qobject_cast<BarButton*>(button(help))->isMarked());
    auto frame = model.beautify();
    frame.enabled = true;
    model.setBeautify(frame);
    EXPECT_TRUE(qobject_cast<BarButton*>(button(help))->isMarked());

    const auto panel = [] {
        for (auto* top : QApplication::topLevelWidgets())
            if (top->isVisible() && top->findChild<BeautifyPanel*>())
                return top;
        return static_cast<QWidget*>(nullptr);
    };
    click(help);
    ASSERT_TRUE(panel());
    panel()->close();
    EXPECT_FALSE(panel());
}

TEST_F(ChromeBar, DraggingTheMarkTakesThePictureOut)
{
    auto* mark = bar.findChild<BrandMarkView*>();
    ASSERT_TRUE(mark);
    EXPECT_EQ(mark->toolTip(), u"Arrastra para llevarte la imagen"_s);
    drag(*mark, {5, 5}, {mark->mapTo(&window, QPointF(7, 6))});
    EXPECT_EQ(dragsOut, 0) << "a click with an unsteady hand is no drag";
    drag(*mark, {5, 5}, {{60, 90}, {200, 300}});
    EXPECT_EQ(dragsOut, 1);
}

TEST_F(ChromeBar, HasRoomForItsContentsInTheSmallestWindow)
{
    EXPECT_LE(bar.minimumSizeHint().width(), 900);
    canvas.hover().setDrawn({{HoverInfo::Drawn::Kind::shape, {1180, 700}}});
    resize({900, 560});
    const QWidget* previous = nullptr;
    auto controls = bar.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    std::sort(controls.begin(), controls.end(), [](auto* a, auto* b) { return a->x() < b->x(); });
    for (const auto* control : controls) {
        EXPECT_TRUE(bar.rect().contains(control->geometry()));
        EXPECT_GE(control->width(), control->sizeHint().width());
        if (previous) {
            EXPECT_LT(previous->geometry().right(), control->x());
        }
        previous = control;
    }
}
