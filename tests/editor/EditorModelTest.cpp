// SPDX-License-Identifier: MIT
#include "editor/state/EditorModel.h"

#include "Pictures.h"
#include "platform/base/UserDefaults.h"
#include "settings/OtherValues.h"

using Field = EditorModel::Field;

namespace {

struct EditorModelTest : testing::Test {
    static QImage picture(int width = 200, int height = 100) { return test::plain({width, height}); }

    static Annotation mark(AnnotationKind kind = AnnotationKind::rectangle, int number = 0)
    {
        return {.kind = kind, .start = {10, 10}, .end = {50, 40}, .number = number};
    }

    static QRectF frame(const Annotation& mark) { return {mark.start, mark.end}; }

    UserDefaults store = UserDefaults::inMemory();
    Settings settings{store};
    EditorModel model{{picture(), 2, u"nombre"_s}, settings};
};

} // namespace

TEST_F(EditorModelTest, HistoryKeepsTheLast200CommitsAndCheckpointsWithoutACap)
{
    for (int i = 0; i < 201; ++i)
        model.add(mark());
    EXPECT_EQ(model.undoCount(), 200);
    while (model.undoCount() > 0)
        model.undo();
    EXPECT_EQ(model.doc().annotations.size(), 1);
    EXPECT_EQ(model.redoCount(), 200);
    while (model.redoCount() > 0)
        model.redo();
    EXPECT_EQ(model.doc().annotations.size(), 201);

    model.pushUndoCheckpoint(model.doc());
    EXPECT_EQ(model.undoCount(), 201);
    model.add(mark());
    EXPECT_EQ(model.undoCount(), 201) << "a commit over the cap forgets one step";
}

TEST_F(EditorModelTest, UndoClearsTheSelectionAndACommitEmptiesRedo)
{
    const auto first = mark();
    model.add(first);
    model.add(mark());
    model.setSelectedID(first.id);
    model.undo();
    EXPECT_FALSE(model.selectedID());
    model.setSelectedID(first.id);
    model.redo();
    EXPECT_EQ(model.selectedID(), first.id);

    model.undo();
    model.updateWithoutUndo(first.id, [](Annotation& changed) { changed.offset({5, 5}); });
    EXPECT_EQ(model.redoCount(), 1);
    model.setSelectedID(first.id);
    model.restyleSelected([](Annotation& changed) { changed.filled = true; });
    EXPECT_EQ(model.redoCount(), 0);
    EXPECT_TRUE(model.selected()->filled);
    EXPECT_EQ(model.selected()->start, QPointF(15, 15));
}

TEST_F(EditorModelTest, WhatChangesNothingLeavesNoStep)
{
    model.clearAnnotations();
    model.deleteSelected();
    model.restyleSelected([](Annotation& changed) { changed.filled = true; });
    model.setSelectedID(QUuid::createUuid());
    model.restyleSelected([](Annotation& changed) { changed.filled = true; });
    model.setTool(Tool::crop);
    for (const auto& tooSmall : {QRectF(10, 10, 1.5, 80), QRectF(199.2, 0, 50, 50), QRectF(300, 0, 50, 50)}) {
        model.setCropRect(tooSmall);
        model.applyCrop();
        EXPECT_FALSE(model.cropRect());
    }
    EXPECT_EQ(model.undoCount(), 0);
    EXPECT_EQ(model.doc().imageSize(), QSizeF(200, 100));
}

TEST_F(EditorModelTest, ToolsDecideWhatStaysChosen)
{
    const auto chosen = mark();
    model.add(chosen);
    for (const auto tool : allCases<Tool>()) {
        model.setTool(Tool::crop);
        model.setCropRect(QRectF(0, 0, 20, 20));
        model.setSelectedID(chosen.id);
        model.setTool(tool);
        const bool keeps = tool == Tool::select || tool == Tool::arrow || tool == Tool::line
            || tool == Tool::step || tool == Tool::text;
        EXPECT_EQ(model.selectedID().has_value(), keeps) << int(tool);
        EXPECT_EQ(model.cropRect().has_value(), tool == Tool::crop) << int(tool);
    }
    model.setTool(Tool::arrow);
    model.setShowArrowOptions(false);
    model.setTool(Tool::arrow);
    EXPECT_FALSE(model.showArrowOptions());
    model.setTool(Tool::pen);
    model.setTool(Tool::arrow);
    EXPECT_TRUE(model.showArrowOptions());
}

TEST_F(EditorModelTest, CropRoundsOutwardAndTakesTheMarksAlong)
{
    model.add(mark());
    model.setTool(Tool::crop);
    model.setCropRect(QRectF(20.6, 5.2, 500, 40.1));
    model.applyCrop();
    EXPECT_EQ(model.doc().imageSize(), QSizeF(180, 41));
    EXPECT_EQ(model.doc().annotations[0].start, QPointF(-10, 5));
    EXPECT_EQ(model.tool(), Tool::arrow);
    EXPECT_EQ(model.undoCount(), 2);
    model.undo();
    EXPECT_EQ(model.doc().imageSize(), QSizeF(200, 100));
}

TEST_F(EditorModelTest, InsertedPicturesAreCentredNeverEnlargedAndAtMost45Percent)
{
    model.insertImage(picture(400, 200), {100, 50}, 1);
    EXPECT_EQ(frame(*model.selected()), QRectF(100 - 45, 50 - 22.5, 90, 45));
    EXPECT_EQ(model.tool(), Tool::select);
    EXPECT_EQ(model.undoCount(), 1);
    model.insertImage(picture(10, 10), {50, 50}, 1);
    EXPECT_EQ(frame(*model.selected()), QRectF(40, 40, 20, 20)) << "a 1x picture on a 2x capture";
    model.insertImage(picture(10, 10), {50, 50}, 2);
    EXPECT_EQ(frame(*model.selected()), QRectF(45, 45, 10, 10));
}

TEST_F(EditorModelTest, StylesReachTheSettingsAndTheNextEditor)
{
    test::setAll(settings, test::otherValues());
    model.setColor(QColor(0x12, 0x34, 0x56));
    model.setStrokeWidth(12);
    model.setArrowStyle(ArrowStyle::sketch);
    model.setHandwritten(true);
    model.setCalloutText(true);
    model.setPaletteEdge(PaletteEdge::left);
    model.setToolbarHidden(false);
    model.setFilled(true);
    EditorModel next({picture(), 1, {}}, settings);
    const auto style = [](const EditorModel& of) {
        return std::tuple(of.color(), of.strokeWidth(), of.arrowStyle(), of.handwritten(), of.calloutText(),
            of.paletteEdge(), of.toolbarHidden());
    };
    EXPECT_EQ(style(next), style(model));
    EXPECT_FALSE(next.filled());
    // A gradient that is none, as of a later version's settings, would leave the frame without a ground.
    settings.setLastGradient(99);
    EXPECT_EQ(EditorModel({picture(), 1, {}}, settings).beautify().gradient, Palette::gradients().size() - 1);

    EXPECT_EQ(model.lineWidth(), 24);
    EXPECT_DOUBLE_EQ(model.fontSize(), 82);
    model.setStrokeWidth(1);
    EXPECT_DOUBLE_EQ(model.fontSize(), 35.2);
}

TEST_F(EditorModelTest, ACopyLiesAsideWithinThePictureAndIsSelected)
{
    auto step = mark(AnnotationKind::step, 4);
    model.duplicateSelected();
    EXPECT_EQ(model.undoCount(), 0) << "nothing is selected";
    model.add(mark());
    const auto first = model.doc().annotations.first();
    model.setSelectedID(first.id);
    model.duplicateSelected();
    ASSERT_TRUE(model.selected());
    EXPECT_NE(model.selected()->id, first.id);
    EXPECT_EQ(frame(*model.selected()), frame(first).translated(28, 28)) << "14 points at two pixels a point";
    EXPECT_EQ(model.undoCount(), 2);

    step.start = step.end = {170, 70};
    model.add(step);
    model.setSelectedID(step.id);
    model.duplicateSelected();
    EXPECT_EQ(model.selected()->number, 5);
    EXPECT_EQ(model.selected()->start, QPointF(142, 42)) << "at the other corner it goes the other way";
}

TEST_F(EditorModelTest, AMarkPassesTheNextOneThatItTouches)
{
    const auto at = [this](double x) {
        auto placed = mark();
        placed.start.rx() += x;
        placed.end.rx() += x;
        model.add(placed);
        return placed.id;
    };
    const auto moved = at(0), elsewhere = at(140), above = at(20), top = at(10);
    const auto order = [this] {
        QList<QUuid> ids;
        for (const auto& each : model.doc().annotations)
            ids << each.id;
        return ids;
    };
    using Order = DocumentEditing::Order;
    model.setSelectedID(moved);
    model.moveSelected(Order::forward);
    EXPECT_EQ(order(), (QList{elsewhere, above, moved, top}));
    EXPECT_EQ(model.undoCount(), 5);
    model.moveSelected(Order::forward);
    model.moveSelected(Order::forward);
    EXPECT_EQ(order(), (QList{elsewhere, above, top, moved}));
    EXPECT_EQ(model.undoCount(), 6) << "there is nothing above it any more";
    model.moveSelected(Order::backward);
    model.moveSelected(Order::backward);
    model.moveSelected(Order::backward);
    EXPECT_EQ(order(), (QList{elsewhere, moved, above, top})) << "what it does not touch stays below";
    EXPECT_EQ(model.selectedID(), moved);
}

TEST_F(EditorModelTest, WhoListensNeverSeesHalfOfAChange)
{
    const auto state = [this] {
        return std::tuple(model.doc(), model.tool(), model.showArrowOptions(), model.selectedID(),
            model.cropRect(), model.undoCount(), model.redoCount());
    };
    const auto startCrop = [this] {
        model.setTool(Tool::crop);
        model.setCropRect(QRectF(10, 10, 50, 50));
    };
    const auto leaveArrow = [this] {
        model.setTool(Tool::pen);
        model.setShowArrowOptions(false);
    };
    const struct {
        const char* name;
        std::function<void()> before, change;
    } rows[]{
        {"leave crop", startCrop, [this] { model.setTool(Tool::rectangle); }},
        {"come to arrow", leaveArrow, [this] { model.setTool(Tool::arrow); }},
        {"apply crop", startCrop, [this] { model.applyCrop(); }},
        {"add", [] {}, [this] { model.add(mark()); }},
        {"insert", [] {},
            [this] {
                model.insertImage(picture(), {50, 50}, 1);
            }},
        {"delete", [] {}, [this] { model.deleteSelected(); }},
        {"undo", [] {}, [this] { model.undo(); }},
        {"redo", [this] { model.undo(); }, [this] { model.redo(); }},
    };
    for (const auto& [name, before, change] : rows) {
        const auto chosen = mark();
        model.setTool(Tool::arrow);
        model.add(chosen);
        model.setSelectedID(chosen.id);
        before();
        QList<decltype(state())> seen;
        const auto listening
            = QObject::connect(&model, &EditorModel::changed, [&](Field) { seen.append(state()); });
        change();
        QObject::disconnect(listening);
        ASSERT_FALSE(seen.isEmpty()) << name;
        for (const auto& each : std::as_const(seen))
            EXPECT_EQ(each == state(), true) << name;
    }
}
