// SPDX-License-Identifier: MIT

// The delegate on a desktop in memory.

#include "app/AppDelegate.h"

#include "Gestures.h"
#include "Pictures.h"
#include "app/HotKeyCenter.h"
#include "app/messages/HUD.h"
#include "editor/window/EditorWindowController.h"
#include "fakes/FakeHotKeys.h"
#include "fakes/FakeScreenSource.h"
#include "fakes/FakeWindowSystem.h"
#include "fakes/FakeWorkspace.h"
#include "platform/base/UserDefaults.h"
#include "settings/Settings.h"

namespace {

HotKey keyOf(CaptureAction action)
{
    return {enumRow(action).keyCode, enumRow(ShortcutPreset::controlShift).modifiers};
}

class AppDelegateTest : public testing::Test {
protected:
    AppDelegateTest()
    {
        screens->content.screens.resize(1);
        screens->content.screens[0].attached = true;
        ScreenCapture::setSource(screens);
        settings.setAfterCapture(AfterCapture::copyOnly);
        workspace->front = WindowHandle{77, 5};
        QGuiApplication::clipboard()->setText(u"antes"_s);
        HUD::dismiss();
    }
    ~AppDelegateTest() override { ScreenCapture::setSource(nullptr); }

    static bool isImageCopied()
    {
        return QGuiApplication::clipboard()->mimeData()->hasFormat(u"image/png"_s);
    }

    std::shared_ptr<FakeScreenSource> screens = std::make_shared<FakeScreenSource>();
    UserDefaults store = UserDefaults::inMemory();
    Settings settings{store};
    FakeHotKeys* keyboard = new FakeHotKeys; // the center's
    HotKeyCenter hotKeys{std::unique_ptr<HotKeyBackend>(keyboard)};
    FakeWorkspace* workspace = new FakeWorkspace; // the delegate's
    AppDelegate delegate{settings, hotKeys, std::unique_ptr<Workspace>(workspace)};
};

} // namespace

TEST_F(AppDelegateTest, ASettingThatCannotBeWrittenIsTold)
{
    ASSERT_TRUE(store.onWriteFailure);
    store.onWriteFailure(Error(Error::fileDomain, 1, u"No queda espacio."_s));
    EXPECT_EQ(HUD::currentMessage(), u"No se pudo guardar la configuración: No queda espacio.");
}

TEST_F(AppDelegateTest, AKeyOfAnotherProgramFailsAloneAndIsRemembered)
{
    keyboard->taken = {keyOf(CaptureAction::fullScreen)};
    delegate.registerShortcuts();
    EXPECT_EQ(delegate.failedShortcuts(), QSet{CaptureAction::fullScreen});
    EXPECT_EQ(keyboard->grabbed.size(), 4);

    keyboard->lose(keyOf(CaptureAction::color));
    EXPECT_EQ(delegate.failedShortcuts(), (QSet{CaptureAction::fullScreen, CaptureAction::color}));
    keyboard->taken.clear();
    delegate.registerShortcuts();
    EXPECT_TRUE(delegate.failedShortcuts().isEmpty());
}

TEST_F(AppDelegateTest, AFullScreenGoesFromTheKeyToTheClipboardAndTheFocusBack)
{
    delegate.registerShortcuts();
    ASSERT_TRUE(keyboard->press(keyOf(CaptureAction::fullScreen)));
    ASSERT_TRUE(gesture::waitFor([] { return HUD::currentMessage() == u"Captura copiada"; }));
    EXPECT_TRUE(isImageCopied());
    EXPECT_EQ(workspace->log, QStringList{u"activate 77"_s});
}

TEST_F(AppDelegateTest, ASecondKeyBeforeTheScreensAreFrozenDoesNothing)
{
    delegate.perform(CaptureAction::area);
    delegate.perform(CaptureAction::color);
    // The screens in memory have no window, so that the selection ends at once and the focus goes back.
    ASSERT_TRUE(gesture::waitFor([&] { return !workspace->log.isEmpty(); }));
    delegate.perform(CaptureAction::fullScreen);
    ASSERT_TRUE(gesture::waitFor([] { return HUD::currentMessage() == u"Captura copiada"; }));
    EXPECT_EQ(screens->log.count(u"content"_s), 2);
}

TEST_F(AppDelegateTest, AMinimisedWindowIsBroughtBack)
{
    delegate.run(Command::showPreferences);
    const auto windows = QApplication::topLevelWidgets();
    const auto found = std::ranges::find(windows, u"Ajustes de Pintalux"_s, &QWidget::windowTitle);
    ASSERT_NE(found, windows.end());
    (*found)->showMinimized();
    ASSERT_TRUE((*found)->isMinimized());
    delegate.run(Command::showPreferences);
    EXPECT_FALSE((*found)->isMinimized());
    (*found)->close();
}

TEST_F(AppDelegateTest, AFailedCaptureIsToldAndDeliversNothing)
{
    screens->failures = {Error(u"X"_s, 9, u"Se fue la luz."_s)};
    delegate.perform(CaptureAction::fullScreen);
    ASSERT_TRUE(gesture::waitFor([] { return HUD::currentMessage().has_value(); }));
    EXPECT_EQ(HUD::currentMessage(), u"No se pudo capturar: Se fue la luz.");
    EXPECT_FALSE(isImageCopied());
    EXPECT_EQ(delegate.currentOverlay(), nullptr);
}

// Who asked may be gone again before the capture begins; nobody waits for what the overlay would ask then.
TEST_F(AppDelegateTest, ACaptureForSomebodyThatIsCancelledAtOnceShowsNothing)
{
    QList<CaptureAnswer::Kind> answers;
    const auto begin = [&] {
        return delegate.captureFor(
            CaptureAction::area, {}, [&](const CaptureAnswer& answer) { answers.append(answer.kind); });
    };
    const auto cancel = begin();
    ASSERT_TRUE(cancel);
    cancel();
    ASSERT_TRUE(gesture::waitFor([&] { return !answers.isEmpty(); }));
    EXPECT_EQ(answers, QList{CaptureAnswer::Kind::cancelled});
    EXPECT_EQ(screens->log, QStringList()) << "it was begun";
    EXPECT_TRUE(begin()) << "and stands in the way of the next one";
}

TEST_F(AppDelegateTest, ACaptureOpensAnEditorInFrontAndKeepsTheFocusThere)
{
    settings.setAfterCapture(AfterCapture::editor);
    EXPECT_EQ(delegate.activationPolicy(), ActivationPolicy::accessory);
    delegate.perform(CaptureAction::fullScreen);
    ASSERT_TRUE(gesture::waitFor([&] { return !workspace->log.isEmpty(); }));
    ASSERT_EQ(delegate.editors().size(), 1);
    auto& window = delegate.editors().front()->window();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(workspace->log, QStringList{u"activate %1"_s.arg(window.winId())}) << "not the former window";
    EXPECT_EQ(delegate.activationPolicy(), ActivationPolicy::regular);
}

TEST_F(AppDelegateTest, EditorsStandInOpeningOrderUntilTheyClose)
{
    for (const auto& name : {u"uno"_s, u"dos"_s, u"tres"_s})
        delegate.openEditor({test::plain({40, 30}), 1, name});
    const auto names = [&] {
        QStringList list;
        for (const auto& editor : delegate.editors())
            list << editor->model().suggestedName().value_or(u"?"_s);
        return list;
    };
    EXPECT_EQ(names(), (QStringList{u"uno"_s, u"dos"_s, u"tres"_s}));
    EXPECT_NE(delegate.editors()[0]->window().pos(), delegate.editors()[1]->window().pos());
    const QPointer closing(delegate.editors()[1].get());
    closing->window().close();
    EXPECT_EQ(names(), (QStringList{u"uno"_s, u"tres"_s}));
    EXPECT_TRUE(closing) << "its window is still in use by whoever closed it";
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(closing);
    delegate.editors()[1]->window().close();
    EXPECT_EQ(delegate.activationPolicy(), ActivationPolicy::regular);
    delegate.editors()[0]->window().close();
    EXPECT_EQ(delegate.activationPolicy(), ActivationPolicy::accessory);
}

TEST_F(AppDelegateTest, ItsDialogsAreInTaskBarsWhileAnEditorIsOpen)
{
    const FakeWindowSystem desk;
    delegate.run(Command::showAbout);
    const auto windows = QApplication::topLevelWidgets();
    const auto about = std::ranges::find(windows, u"Acerca de Pintalux"_s, &QWidget::windowTitle);
    ASSERT_NE(about, windows.end());
    EXPECT_EQ(desk.isInTaskBar(**about), false);
    delegate.openEditor({test::plain({40, 30}), 1, {}});
    EXPECT_EQ(desk.isInTaskBar(**about), true);
    delegate.editors()[0]->window().close();
    EXPECT_EQ(desk.isInTaskBar(**about), false);
    (*about)->close();
}

TEST_F(AppDelegateTest, FilesThatAreNoPicturesAreRefusedInWords)
{
    const QTemporaryDir folder;
    const auto picture = folder.filePath(u"foto.png"_s);
    ASSERT_TRUE(test::plain({4, 4}).save(picture));
    delegate.openImageFile(picture);
    ASSERT_TRUE(gesture::waitFor([&] { return delegate.editors().size() == 1; }));
    EXPECT_EQ(delegate.editors()[0]->model().suggestedName(), u"foto");
    QFile(picture).resize(20);
    delegate.openImageFile(picture);
    EXPECT_TRUE(gesture::waitFor([] { return HUD::currentMessage() == u"No se pudo abrir la imagen"; }));
    EXPECT_EQ(delegate.editors().size(), 1);
}
