// SPDX-License-Identifier: MIT

// An editor's window and its commands, on the toolkit's display in memory.

#include "Gestures.h"
#include "Pictures.h"
#include "Stage.h"
#include "app/messages/HUD.h"
#include "editor/bars/ToolPalette.h"
#include "editor/canvas/CanvasView.h"
#include "editor/style/ArrowOptionsPanel.h"
#include "editor/style/ColorPanelBridge.h"
#include "editor/window/EditorWindowController.h"
#include "editor/window/EditorWindowDrag.h"
#include "editor/window/MainMenu.h"
#include "platform/base/UserDefaults.h"
#include "platform/base/Worker.h"
#include "render/export/Exporter.h"

namespace {

QImage picture(int width = 400, int height = 200) { return test::plain({width, height}); }

class EditorWindowTest : public testing::Test {
protected:
    EditorWindowTest()
    {
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
        settings.setSaveFolder(folder.filePath(u"capturas"_s));
        settings.setAutoCopy(true);
        QGuiApplication::clipboard()->setText(u"antes"_s);
        HUD::dismiss();
    }

    void edit() { editor.model().add({.kind = AnnotationKind::rectangle, .end = {50, 50}}); }

    static bool isImageCopied()
    {
        return QGuiApplication::clipboard()->mimeData()->hasFormat(u"image/png"_s);
    }

    /// The message on screen, now or in a moment.
    static QString told()
    {
        gesture::waitFor([] { return HUD::currentMessage().has_value(); });
        return HUD::currentMessage().value_or(QString());
    }

    /// Saves over the dialog under a name as a person types it.
    void saveAs(const QString& typed)
    {
        editor.saveAs();
        auto* dialog = editor.window().findChild<QFileDialog*>();
        ASSERT_TRUE(dialog);
        dialog->selectFile(typed);
        QMetaObject::invokeMethod(dialog, "accept");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QTemporaryDir folder;
    QTemporaryDir runtime;
    UserDefaults store = UserDefaults::inMemory();
    Settings settings{store};
    QList<Command> asked; ///< of the program
    RunCommand program = [this](Command command) { asked << command; };
    EditorWindowController editor{{picture(), 2, u"Informe"_s}, settings, program};
};

} // namespace

TEST_F(EditorWindowTest, ClosingCopiesWhatWasEditedAndOnlyIfWanted)
{
    struct Row {
        bool autoCopy;
        bool edited;
        bool copied;
    };
    for (const auto& row : {Row{true, false, false}, Row{false, true, false}, Row{true, true, true}}) {
        settings.setAutoCopy(row.autoCopy);
        EditorWindowController closing({picture(), 2, {}}, settings, program);
        int told = 0;
        closing.onClose = [&] { ++told; };
        if (row.edited)
            closing.model().add({.kind = AnnotationKind::rectangle, .end = {50, 50}});
        closing.window().show();
        closing.window().close();
        closing.window().close();
        EXPECT_EQ(isImageCopied(), row.copied) << row.autoCopy << row.edited;
        EXPECT_EQ(told, 1);
    }
    EXPECT_EQ(HUD::currentMessage(), u"Copiada con tus anotaciones");
}

TEST_F(EditorWindowTest, DroppingThePaletteDocksItAndMakesRoom)
{
    auto& palette = editor.window().palettePanel();
    const auto isDocked = [&] { return palette.geometry().right() + 1 + 14 == editor.window().width(); };
    editor.window().resize(1200, 800);
    editor.window().show();
    editor.window().dockPalette({1190, 300});
    EXPECT_EQ(settings.paletteEdge(), PaletteEdge::right);
    QSet<int> passed;
    ASSERT_TRUE(gesture::waitFor([&] {
        passed.insert(palette.x());
        return isDocked();
    }));
    EXPECT_GT(passed.size(), 3) << "it glides there";
    EXPECT_EQ(palette.size(), palette.sizeHint());
    EXPECT_TRUE(gesture::waitFor(
        [&] { return editor.canvas().insets() == QMargins(28, 18, palette.width() + 14 + 28, 22); }));

    palette.move(500, 300); // dragged about, then let go on the same side
    editor.window().dockPalette({1190, 300});
    EXPECT_TRUE(gesture::waitFor(isDocked)) << "it goes back to its place";
    editor.window().resize(1000, 700);
    EXPECT_TRUE(gesture::waitFor(isDocked)) << "follows the window";
    editor.model().setToolbarHidden(true);
    EXPECT_TRUE(gesture::waitFor([&] { return palette.isHidden(); }));
    EXPECT_TRUE(gesture::waitFor([&] { return editor.canvas().insets() == QMargins(28, 18, 28, 22); }));
}

TEST_F(EditorWindowTest, TheSavePanelCompletesTheNameButReplacesNothingUnasked)
{
    const QDir captures(settings.saveFolder());
    editor.saveAs();
    auto* dialog = editor.window().findChild<QFileDialog*>();
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->directory(), captures) << "made when missing";
    EXPECT_TRUE(QFileInfo(dialog->selectedFiles().value(0)).fileName().startsWith(u"Pintalux Informe 2"));
    delete dialog;

    saveAs(captures.filePath(u"a las 14.07"_s));
    EXPECT_EQ(told(), u"Guardado como a las 14.07.png");
    EXPECT_FALSE(QImage(captures.filePath(u"a las 14.07.png"_s)).isNull());

    HUD::dismiss();
    saveAs(captures.filePath(u"Acta \"final\" de 15\".png"_s));
    EXPECT_EQ(told(), u"Guardado como Acta \"final\" de 15\".png");
    EXPECT_TRUE(captures.exists(u"Acta \"final\" de 15\".png"_s));

    for (const auto& name : {u"b"_s, u"la \"b\".png"_s}) {
        HUD::dismiss();
        const auto path = captures.filePath(name.endsWith(u".png") ? name : name + u".png"_s);
        stage::put(path, "valioso");
        saveAs(captures.filePath(name));
        auto* question = editor.window().findChild<QMessageBox*>();
        ASSERT_TRUE(question);
        question->reject();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        Exporter::savingThread().waitForDone();
        EXPECT_EQ(stage::contents(path), "valioso");
        EXPECT_FALSE(HUD::currentMessage());
    }
}

TEST_F(EditorWindowTest, InsertedFilesCascadeAndWhatIsNoPictureIsSkipped)
{
    const auto path = folder.filePath(u"doble.png"_s);
    auto fine = picture(40, 20);
    fine.setDotsPerMeterX(5669);
    fine.setDotsPerMeterY(5669);
    ASSERT_TRUE(QImageWriter(path).write(fine));
    const auto broken = folder.filePath(u"roto.png"_s);
    stage::put(broken, "no");
    const auto center = editor.canvas().visibleImageCenter();
    editor.insertFiles({path, broken, path, path});
    const auto& marks = editor.model().doc().annotations;
    ASSERT_TRUE(gesture::waitFor([&] { return marks.size() == 3; }));
    for (int i = 0; i < 3; ++i) {
        const QRectF frame(marks[i].start, marks[i].end);
        EXPECT_LT((frame.center() - center - QPointF(48, 48) * i).manhattanLength(), 0.01) << i;
        EXPECT_EQ(frame.size(), QSizeF(40, 20)) << "144 dots per inch on a 2x capture";
    }
}

TEST_F(EditorWindowTest, APictureDraggedOutIsAFileOnlyOnceSomebodyAsks)
{
    edit();
    const DraggedPicture dragged(editor.model().renderFinal(), 2, u"Informe"_s);
    const QDir temporary(runtime.filePath(u"Pintalux"_s));
    EXPECT_TRUE(dragged.hasImage() || dragged.hasFormat(u"image/png"_s));
    EXPECT_TRUE(dragged.hasUrls());
    EXPECT_LE(dragged.thumbnail(2).deviceIndependentSize().width(), 200);
    EXPECT_FALSE(temporary.exists());
    const auto addresses = dragged.urls();
    ASSERT_EQ(addresses.size(), 1);
    const auto path = addresses[0].toLocalFile();
    EXPECT_TRUE(QFileInfo(path).fileName().startsWith(u"Pintalux Informe 2"));
    EXPECT_EQ(stage::contents(path), dragged.data(u"image/png"_s));
    EXPECT_EQ(QImage(path).size(), QSize(400, 200));
}

TEST_F(EditorWindowTest, ADragInTheColourPanelIsLiveAndOneUndoStep)
{
    edit();
    editor.model().setSelectedID(editor.model().doc().annotations[0].id);
    auto& bridge = ColorPanelBridge::shared();
    bridge.open(editor.model());
    auto& panel = *bridge.panel();
    EXPECT_EQ(panel.currentColor(), editor.model().color());
    auto* part = panel.findChild<QLabel*>(); // which does nothing by itself
    const auto send = [&](QEvent::Type type) {
        QMouseEvent event(type, {1, 1}, part->mapToGlobal(QPointF(1, 1)), Qt::LeftButton, Qt::NoButton, {});
        QCoreApplication::sendEvent(part, &event);
    };
    send(QEvent::MouseButtonPress);
    for (const auto& color : {QColor(16, 32, 48), QColor(32, 48, 64), QColor(48, 64, 80)}) {
        panel.setCurrentColor(color);
        EXPECT_EQ(editor.model().selected()->color, color);
        EXPECT_EQ(settings.lastColor(), color);
    }
    send(QEvent::MouseButtonRelease);
    EXPECT_EQ(editor.model().undoCount(), 2);
    panel.setCurrentColor(QColor(1, 2, 3));
    EXPECT_EQ(editor.model().undoCount(), 3) << "a later choice is a step of its own";
    {
        EditorWindowController other({picture(), 1, {}}, settings, program);
        bridge.open(other.model());
        EXPECT_TRUE(panel.isVisible());
    }
    EXPECT_FALSE(panel.isVisible()) << "goes with the editor that opened it";
    panel.setCurrentColor(Qt::blue);
    EXPECT_EQ(editor.model().color(), QColor(1, 2, 3));
}

TEST_F(EditorWindowTest, MenusShowWhatIsPossibleAndTheirKeysAlwaysReachTheirCommand)
{
    const auto rowOf = [this](Command command) {
        const auto rows = editor.window().findChildren<QAction*>();
        const auto row = std::ranges::find_if(
            rows, [=](const auto* action) { return MainMenu::commandOf(*action) == command; });
        return row == rows.end() ? nullptr : *row;
    };
    auto* undo = rowOf(Command::undo);
    ASSERT_TRUE(undo);
    Q_EMIT qobject_cast<QMenu*>(undo->parent())->aboutToShow();
    EXPECT_FALSE(undo->isEnabled());
    Q_EMIT qobject_cast<QMenu*>(undo->parent())->aboutToHide();
    edit();
    undo->trigger();
    EXPECT_EQ(editor.model().undoCount(), 0);
    EXPECT_TRUE(rowOf(Command::redo)->shortcuts().contains(QKeySequence(Qt::CTRL | Qt::Key_Y)));
    EXPECT_TRUE(rowOf(Command::deleteMark)->shortcuts().isEmpty()) << "in a text it deletes letters";
    rowOf(Command::redo)->trigger();
    EXPECT_EQ(editor.model().undoCount(), 1);
    rowOf(Command::copy)->trigger();
    EXPECT_EQ(HUD::currentMessage(), u"Copiado al portapapeles");
    EXPECT_TRUE(isImageCopied());
    rowOf(Command::terminate)->trigger();
    rowOf(Command::cut)->trigger(); // nothing is being typed
    EXPECT_EQ(asked, QList{Command::terminate});
}

TEST_F(EditorWindowTest, ARightClickOnAMarkOffersWhatCanBeDoneWithIt)
{
    auto& canvas = editor.canvas();
    edit();
    editor.model().setTool(Tool::pen);
    const auto menuAt = [&](QPointF documentPoint) -> QMenu* {
        const auto at = canvas.viewPoint(documentPoint).toPoint();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, canvas.mapToGlobal(at));
        QApplication::sendEvent(&canvas, &event);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    };
    EXPECT_FALSE(menuAt({200, 150})) << "there is no mark";
    EXPECT_EQ(editor.model().tool(), Tool::pen);

    auto* menu = menuAt({50, 25});
    ASSERT_TRUE(menu);
    EXPECT_EQ(editor.model().tool(), Tool::select) << "the pen does not show what is selected";
    QStringList possible;
    for (auto* row : menu->actions())
        if (row->isEnabled() && !row->isSeparator())
            possible << row->text();
    EXPECT_EQ(possible, (QStringList{u"Duplicar"_s, u"Eliminar"_s})) << "there is nothing to pass";
    menu->actions().first()->trigger();
    EXPECT_EQ(editor.model().doc().annotations.size(), 2);
    menu->actions().last()->trigger();
    EXPECT_EQ(editor.model().doc().annotations.size(), 1);
    menu->close();
}

TEST_F(EditorWindowTest, KeysReachThePictureFromAnOpenPopoverAndAfterAMenu)
{
    auto& window = editor.window();
    window.show();
    window.activateWindow();
    editor.canvas().setFocus();
    QApplication::processEvents();
    edit();
    auto frames = window.findChildren<QAbstractButton*>();
    const auto frame = std::ranges::find_if(
        frames, [](const auto* button) { return button->accessibleName().startsWith(u"Embellecer"); });
    ASSERT_NE(frame, frames.end());
    (*frame)->click();
    ASSERT_TRUE(QApplication::activePopupWidget());
    gesture::key(Qt::Key_E);
    EXPECT_EQ(editor.model().tool(), Tool::ellipse);
    gesture::key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(editor.model().redoCount(), 1);
    gesture::key(Qt::Key_Escape);
    EXPECT_FALSE(QApplication::activePopupWidget());

    auto* bar = window.findChild<QMenuBar*>();
    const auto title = bar->actionGeometry(bar->actions().at(2)).center();
    gesture::press(*bar, title);
    ASSERT_TRUE(QApplication::activePopupWidget());
    gesture::key(Qt::Key_Escape);
    EXPECT_FALSE(QApplication::activePopupWidget());
    EXPECT_FALSE(bar->activeAction()) << "the bar still has the keyboard";
    EXPECT_EQ(QApplication::focusWidget(), &editor.canvas());
}
