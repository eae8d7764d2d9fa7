// SPDX-License-Identifier: MIT
#include "CanvasStage.h"
#include "Pictures.h"
#include "editor/canvas/CanvasTextField.h"
#include "render/export/Exporter.h"

namespace {

struct CanvasTextTest : CanvasStage {
    void SetUp() override
    {
        CanvasStage::SetUp();
        model->setTool(Tool::text);
        model->setCalloutText(false);
    }

    CanvasTextField* field() const
    {
        for (auto* child : view->findChildren<CanvasTextField*>())
            if (child->isVisible())
                return child;
        return nullptr;
    }

    Annotation placeText(const QString& text, bool filled = false)
    {
        return place({.kind = Kind::text,
            .start = {100, 100},
            .color = Qt::red,
            .filled = filled,
            .text = text,
            .fontSize = 24});
    }

    void compose(const QString& preedit, const QString& commit)
    {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QApplication::sendEvent(field(), &event);
    }
};

} // namespace

TEST_F(CanvasTextTest, ReturnKeepsWhatWasTypedAsOneStep)
{
    click({100, 100});
    ASSERT_TRUE(field());
    for (const auto reason : {Qt::ActiveWindowFocusReason, Qt::PopupFocusReason}) {
        QFocusEvent out(QEvent::FocusOut, reason);
        QApplication::sendEvent(field(), &out);
        ASSERT_TRUE(field()) << "other windows and menus leave it open";
        QFocusEvent in(QEvent::FocusIn, reason);
        QApplication::sendEvent(field(), &in);
    }
    type(u"va"_s); // letters of tools
    compose({}, u"ñ"_s);
    key(Qt::Key_Return, Qt::AltModifier);
    type(u"2"_s);
    EXPECT_EQ(model->undoCount(), 0);
    EXPECT_EQ(model->tool(), Tool::text);
    key(Qt::Key_Return);
    EXPECT_FALSE(field());
    ASSERT_EQ(marks().size(), 1);
    EXPECT_EQ(marks().first().text, u"vañ\n2"_s);
    EXPECT_EQ(marks().first().start, QPointF(100, 100));
    EXPECT_EQ(model->undoCount(), 1);
    EXPECT_FALSE(model->selectedID()) << "a plain text is not selected";
    EXPECT_TRUE(view->hasFocus());
}

// Each way out of the field but Escape.
TEST_F(CanvasTextTest, NoWayOutLosesATextHalfTyped)
{
    const std::vector<std::pair<const char*, std::function<void()>>> ways{
        {"a press beside it",
            [&] {
                pressView({300, 300});
            }},
        {"another tool", [&] { model->setTool(Tool::pen), QApplication::processEvents(); }},
        {"the window", [&] { view->commitText(); }},
        {"Tab", [&] { key(Qt::Key_Tab); }},
        {"the focus elsewhere",
            [&] {
                QFocusEvent out(QEvent::FocusOut, Qt::OtherFocusReason);
                QApplication::sendEvent(field(), &out);
            }},
    };
    for (const auto& [name, leave] : ways) {
        open(1);
        model->setTool(Tool::text);
        QApplication::processEvents();
        click({100, 100});
        ASSERT_TRUE(field()) << name;
        type(u"medio"_s);
        leave();
        ASSERT_EQ(marks().size(), 1) << name;
        EXPECT_EQ(marks().first().text, u"medio"_s) << name;
        EXPECT_EQ(model->undoCount(), 1) << name;
    }
}

TEST_F(CanvasTextTest, SpacesAndEscapeLeaveNothing)
{
    click({100, 100});
    type(u"   "_s);
    key(Qt::Key_Return);
    click({100, 100});
    type(u"no"_s);
    key(Qt::Key_Escape);
    EXPECT_FALSE(field());
    EXPECT_TRUE(marks().isEmpty());
    EXPECT_EQ(model->undoCount(), 0);
}

TEST_F(CanvasTextTest, UndoMeansThePictureWhenThereIsNothingToUndoInTheText)
{
    const auto isTakenByTheText = [this] {
        QKeyEvent event(QEvent::ShortcutOverride, Qt::Key_Z, Qt::ControlModifier);
        event.ignore();
        QApplication::sendEvent(field(), &event);
        return event.isAccepted();
    };
    click({100, 100});
    EXPECT_FALSE(isTakenByTheText());
    type(u"no"_s);
    EXPECT_TRUE(isTakenByTheText());
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(field()->text(), u""_s);
    EXPECT_FALSE(isTakenByTheText());
}

TEST_F(CanvasTextTest, EditingChangesRemovesOrLeavesTheMark)
{
    placeText(u"uno"_s);
    click({110, 115});
    ASSERT_TRUE(field());
    EXPECT_EQ(field()->text(), u"uno"_s);
    key(Qt::Key_Return);
    EXPECT_EQ(newSteps(), 0) << "unchanged";

    model->setTool(Tool::select);
    doubleClick({110, 115});
    ASSERT_TRUE(field());
    type(u"s"_s);
    key(Qt::Key_Return);
    EXPECT_EQ(marks().first().text, u"unos"_s);
    EXPECT_EQ(newSteps(), 1);

    doubleClick({110, 115});
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_Backspace);
    key(Qt::Key_Return);
    EXPECT_TRUE(marks().isEmpty());
    EXPECT_EQ(newSteps(), 2);
}

TEST_F(CanvasTextTest, CalloutsGetAPointerAreSelectedAndMoveByTheirBody)
{
    model->setCalloutText(true);
    click({100, 100});
    type(u"aviso"_s);
    key(Qt::Key_Return);
    ASSERT_EQ(marks().size(), 1);
    EXPECT_EQ(model->selectedID(), marks().first().id);
    EXPECT_EQ(marks().first().pointer, marks().first().suggestedPointer());

    const auto inside = marks().first().textBubble().center();
    gesture(inside, inside + QPointF(20, 0));
    EXPECT_EQ(marks().first().start, QPointF(120, 100));
    doubleClick(inside + QPointF(20, 0));
    EXPECT_TRUE(field());
}

TEST_F(CanvasTextTest, PastedTextLeavesItsLooksBehind)
{
    auto* rich = new QMimeData;
    rich->setHtml(u"<h1 style='color:blue'>Gran<b>de</b></h1>"_s);
    rich->setText(u"Grande"_s);
    QApplication::clipboard()->setMimeData(rich);
    click({100, 100});
    const auto height = field()->height();
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field()->text(), u"Grande"_s);
    EXPECT_EQ(field()->height(), height);
}

// The glyphs of the open field against those of the finished mark: line breaks, line height, emoji, right to
// left, and a zoom at which no length is whole.
TEST_F(CanvasTextTest, TheFieldShowsTheTextWhereItWillStand)
{
    for (const auto& text : {u"Ágil y señalado"_s, u"dos\nlíneas, la segunda más larga"_s,
             u"שלום עולם\nabc"_s, u"hola 🙂 qué tal"_s, u"una nota que se parte en varias"_s}) {
        open(1);
        model->setTool(Tool::select);
        const auto mark
            = placeText(text, true); // a bubble has no shadow of glyphs, which the field leaves out
        if (text.startsWith(u"una"_s))
            model->updateWithoutUndo(mark.id, [](Annotation& boxed) { boxed.boxWidth = 130; });
        model->setSelectedID({});
        const auto finished = view->grab().toImage();
        QApplication::processEvents();
        doubleClick(marks().first().textBubble().center());
        ASSERT_TRUE(field());
        QFocusEvent away(QEvent::FocusOut, Qt::ActiveWindowFocusReason); // takes the caret off
        QApplication::sendEvent(field(), &away);
        const auto open = view->grab().toImage();
        EXPECT_EQ(test::difference(open, finished, 2), QRect()) << text.toStdString();
    }
}

// The toolkit's own caret inverts its ground, which makes it cyan on a red bubble.
TEST_F(CanvasTextTest, TheCaretHasTheColourOfTheText)
{
    open(1);
    model->setTool(Tool::select);
    placeText(u"l"_s, true);
    model->setSelectedID({});
    doubleClick(marks().first().textBubble().center());
    ASSERT_TRUE(field());
    const auto withCaret = view->grab().toImage();
    QFocusEvent away(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(field(), &away);
    const auto without = view->grab().toImage();
    const auto lighter = test::countPixels(without, [&](int x, int y) {
        return qGreen(withCaret.pixel(x, y)) > qGreen(without.pixel(x, y))
            && qRed(withCaret.pixel(x, y)) > 240;
    });
    EXPECT_GE(lighter, 20) << "a white line as high as a letter";
    EXPECT_EQ(test::countPixels(without,
                  [&](int x, int y) { return qRed(withCaret.pixel(x, y)) < qRed(without.pixel(x, y)) - 2; }),
        0);
}

TEST_F(CanvasTextTest, OpeningATextAndClosingItChangesNothing)
{
    const QString noBreak(QChar::Nbsp);
    const QString separated(QChar::LineSeparator);
    for (const QString& text : {u"25"_s + noBreak + u"€ y"_s + noBreak + u"más"_s, u"uno\ndos"_s,
             u"uno"_s + separated + u"dos"_s, u" con espacios "_s}) {
        for (const bool filled : {false, true}) {
            const auto mark = placeText(text, filled);
            doubleClick({110, 110});
            ASSERT_TRUE(field());
            key(Qt::Key_Return);
            EXPECT_EQ(newSteps(), 0) << qPrintable(text);
            EXPECT_EQ(model->doc().annotation(mark.id)->text, text);
            model->clearAnnotations();
        }
    }
}
