// SPDX-License-Identifier: MIT
#include "ChromeStage.h"
#include "controls/BarButton.h"
#include "editor/bars/BrandMarkView.h"
#include "editor/bars/InfoText.h"

namespace {

using ChromeBar = ChromeStage;

} // namespace

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

TEST_F(ChromeBar, DraggingTheMarkTakesThePictureOut)
{
    auto* mark = bar.findChild<BrandMarkView*>();
    ASSERT_TRUE(mark);
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
