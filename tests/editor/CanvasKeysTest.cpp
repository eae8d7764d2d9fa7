// SPDX-License-Identifier: MIT
#include "CanvasStage.h"
#include "Gestures.h"
#include "app/messages/HUD.h"
#include "editor/canvas/CanvasPasteboard.h"
#include "render/export/Clipboard.h"

namespace {

struct CanvasKeysTest : CanvasStage {
    Annotation placeBox()
    {
        return place({.kind = Kind::rectangle, .start = {100, 100}, .end = {200, 180}, .color = Qt::red});
    }
};

} // namespace

TEST_F(CanvasKeysTest, LettersChooseToolsOnAnyLayout)
{
    for (const auto& row : toolTable) {
        EXPECT_TRUE(key(QChar(row.shortcut).toUpper().unicode(), {}, QChar(row.shortcut)));
        EXPECT_EQ(model->tool(), row.value);
    }
    constexpr quint32 placeOfP = 33;
    EXPECT_TRUE(key(0x417, {}, u"з"_s, placeOfP)); // the same key of a Cyrillic keyboard
    EXPECT_EQ(model->tool(), Tool::pen);
    EXPECT_FALSE(key(Qt::Key_A, Qt::ControlModifier)) << "commands are the window's";
    EXPECT_FALSE(key(Qt::Key_Ntilde, {}, u"ñ"_s));
    EXPECT_EQ(model->tool(), Tool::pen);
}

TEST_F(CanvasKeysTest, EscapeGoesOneStepBackAtATime)
{
    placeBox();
    model->setTool(Tool::crop);
    model->setCropRect(QRectF(10, 10, 50, 50));
    key(Qt::Key_Escape);
    EXPECT_FALSE(model->cropRect());
    model->setTool(Tool::select);
    model->setSelectedID(marks().first().id);
    key(Qt::Key_Escape);
    EXPECT_FALSE(model->selectedID());
    EXPECT_TRUE(view->isVisible());
    key(Qt::Key_Escape);
    EXPECT_FALSE(view->isVisible()) << "then it closes the window";
}

TEST_F(CanvasKeysTest, EscapeInADragUndoesTheDragAlone)
{
    placeBox();
    const auto placed = marks();
    model->setTool(Tool::select);
    for (const auto tool : {Tool::select, Tool::rectangle, Tool::eraser, Tool::crop, Tool::pen}) {
        model->setTool(tool);
        press(placed.first().start);
        drag(placed.first().end + QPointF(60, 40));
        key(Qt::Key_Escape);
        drag(placed.first().end + QPointF(90, 90));
        release();
        EXPECT_EQ(marks(), placed) << int(tool);
        EXPECT_FALSE(model->cropRect());
    }
    EXPECT_EQ(newSteps(), 0);
    EXPECT_TRUE(view->isVisible());
}

TEST_F(CanvasKeysTest, ArrowsMoveReturnCropsDeleteRemovesTabHides)
{
    open(2);
    placeBox();
    model->setTool(Tool::select);
    key(Qt::Key_Right);
    key(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(marks().first().start, QPointF(102, 80));
    EXPECT_EQ(newSteps(), 2);
    key(Qt::Key_Backspace);
    EXPECT_TRUE(marks().isEmpty());
    model->setTool(Tool::crop);
    model->setCropRect(QRectF(10, 10, 100, 50));
    key(Qt::Key_Enter);
    EXPECT_EQ(model->doc().imageSize(), QSizeF(100, 50));
    const bool hidden = model->toolbarHidden();
    key(Qt::Key_Tab);
    EXPECT_EQ(model->toolbarHidden(), !hidden);
}

TEST_F(CanvasKeysTest, DigitsAndFRestyleTheSelectionInOneStep)
{
    placeBox();
    model->setTool(Tool::select);
    key(Qt::Key_3);
    EXPECT_EQ(model->color(), Palette::annotation()[2].color);
    EXPECT_EQ(marks().first().color, model->color());
    EXPECT_EQ(newSteps(), 1);
    key(Qt::Key_3);
    EXPECT_EQ(newSteps(), 1) << "the colour it has";
    EXPECT_FALSE(key(Qt::Key_9));
    key(Qt::Key_F);
    EXPECT_TRUE(model->filled() && marks().first().filled);
    EXPECT_EQ(newSteps(), 2);
    model->setTool(Tool::line);
    EXPECT_FALSE(key(Qt::Key_F));
    EXPECT_TRUE(model->filled());
}

TEST_F(CanvasKeysTest, ShiftCCopiesTheHoveredColour)
{
    send(QEvent::MouseMove, view->viewPoint({200.5, 100.5}), {}, {});
    model->setTool(Tool::pen);
    key(Qt::Key_C, Qt::ShiftModifier, u"C"_s);
    EXPECT_EQ(QApplication::clipboard()->text(), u"#C864AC"_s);
    EXPECT_EQ(HUD::currentMessage(), u"Color #C864AC copiado"_s);
    EXPECT_EQ(model->tool(), Tool::pen);
    HUD::dismiss();
}

TEST_F(CanvasKeysTest, PastesAndTakesDropsOfFilesAndImageData)
{
    const QTemporaryDir folder;
    const auto good = folder.filePath(u"foto.png"_s);
    const auto bad = folder.filePath(u"roto.png"_s);
    picture(40, 30).save(good);
    QFile(bad).open(QIODevice::WriteOnly);

    auto* copied = new QMimeData;
    copied->setUrls(
        {QUrl(u"https://ejemplo.es/a.png"_s), QUrl::fromLocalFile(bad), QUrl::fromLocalFile(good)});
    QApplication::clipboard()->setMimeData(copied);
    view->paste();
    ASSERT_TRUE(gesture::waitFor([&] { return marks().size() == 1; }));
    EXPECT_EQ(marks().first().image.size(), QSize(40, 30));
    expectNear(marks().first().rect().center(), view->visibleImageCenter());
    EXPECT_EQ(model->tool(), Tool::select);

    QApplication::clipboard()->setText(u"solo texto"_s);
    view->paste();
    view->commitText();
    EXPECT_EQ(marks().size(), 1);

    QMimeData dragged;
    dragged.setImageData(picture(20, 20));
    const auto at = view->viewPoint({300, 200});
    QDragEnterEvent enter(at.toPoint(), Qt::CopyAction | Qt::MoveAction, &dragged, Qt::LeftButton, {});
    enter.ignore();
    QApplication::sendEvent(view.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    EXPECT_EQ(enter.dropAction(), Qt::CopyAction);
    QDropEvent drop(at, Qt::CopyAction, &dragged, Qt::LeftButton, {});
    QApplication::sendEvent(view.get(), &drop);
    EXPECT_TRUE(drop.isAccepted());
    ASSERT_TRUE(gesture::waitFor([&] { return marks().size() == 2; }));
    expectNear(marks().last().rect().center(), {300, 200}, 0.001);

    QMimeData text;
    text.setText(u"nada"_s);
    QDragEnterEvent refused(at.toPoint(), Qt::CopyAction, &text, Qt::LeftButton, {});
    refused.ignore();
    QApplication::sendEvent(view.get(), &refused);
    EXPECT_FALSE(refused.isAccepted());
}

TEST_F(CanvasKeysTest, WhatFollowsAPasteFindsThePictureThere)
{
    const auto former = place({.kind = Kind::rectangle, .start = {10, 10}, .end = {60, 50}});
    for (const auto& size : {QSize(2400, 1600), QSize(30, 20)}) {
        Clipboard::copy(picture(size.width(), size.height()), 1); // what the program itself has copied
        view->paste();
    }
    key(Qt::Key_Delete);
    ASSERT_EQ(marks().size(), 2) << "the later one is taken away again";
    EXPECT_EQ(marks()[0], former);
    EXPECT_EQ(marks()[1].image.size(), QSize(2400, 1600));
    view->paste();
    view->close();
    EXPECT_EQ(marks().size(), 3);
}
