// SPDX-License-Identifier: MIT
#include "app/HotKeyCenter.h"

#include "fakes/FakeHotKeys.h"
#include "model/CaptureAction.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

// A center on a keyboard in memory, with the program's five hot keys, which write their ids down.
class HotKeyCenterTest : public testing::Test {
protected:
    HotKeyCenterTest()
        : keyboard(static_cast<FakeHotKeys*>(backend.get()))
        , center(std::move(backend))
    {
    }

    // The ids that failed.
    QList<quint32> registerAll(ShortcutPreset preset)
    {
        QList<quint32> failed;
        for (const auto action : allCases<CaptureAction>()) {
            const auto id = hotKeyID(action);
            if (!center.registerHotKey(
                    id, enumRow(action).keyCode, enumRow(preset).modifiers, [this, id] { ran.append(id); }))
                failed.append(id);
        }
        return failed;
    }

    static HotKey key(CaptureAction action, ShortcutPreset preset)
    {
        return {enumRow(action).keyCode, enumRow(preset).modifiers};
    }

    std::unique_ptr<HotKeyBackend> backend = std::make_unique<FakeHotKeys>();
    FakeHotKeys* keyboard;
    HotKeyCenter center;
    QList<quint32> ran;
};

} // namespace

TEST_F(HotKeyCenterTest, AKeyThatAnotherProgramHasFailsAloneAndTheOthersRunTheirActions)
{
    const auto preset = ShortcutPreset::controlShift;
    keyboard->taken = {key(CaptureAction::fullScreen, preset)};
    EXPECT_EQ(registerAll(preset), QList<quint32>{3});
    for (const auto action : allCases<CaptureAction>())
        EXPECT_EQ(keyboard->press(key(action, preset)), action != CaptureAction::fullScreen);
    QCoreApplication::processEvents();
    EXPECT_EQ(ran, (QList<quint32>{1, 2, 4, 5}));
}

TEST_F(HotKeyCenterTest, AnotherPresetTakesTheKeysOfTheFormerOneAway)
{
    registerAll(ShortcutPreset::controlShift);
    center.unregisterAll();
    EXPECT_TRUE(registerAll(ShortcutPreset::commandShift).isEmpty());
    EXPECT_FALSE(keyboard->press(key(CaptureAction::area, ShortcutPreset::controlShift)));
    EXPECT_TRUE(keyboard->press(key(CaptureAction::area, ShortcutPreset::commandShift)));
    QCoreApplication::processEvents();
    EXPECT_EQ(ran, QList<quint32>{1});
}

TEST_F(HotKeyCenterTest, APressRunsTheActionThatHoldsWhenItsTurnComes)
{
    const auto area = key(CaptureAction::area, ShortcutPreset::controlShift);
    QString log;
    const auto says = [&](const QString& word) { return [&log, word] { log += word; }; };

    EXPECT_TRUE(center.registerHotKey(1, area.keyCode, area.modifiers, says(u"old "_s)));
    keyboard->press(area);
    EXPECT_EQ(log, QString()) << "not from within the press";
    EXPECT_TRUE(center.registerHotKey(1, area.keyCode, area.modifiers, says(u"new "_s)));
    QCoreApplication::processEvents();
    EXPECT_EQ(log, u"new ");
    EXPECT_FALSE(center.registerHotKey(2, area.keyCode, area.modifiers, says(u"other "_s)));

    keyboard->press(area);
    center.unregisterAll();
    QCoreApplication::processEvents();
    EXPECT_EQ(log, u"new ") << "dropped before its turn";
}

TEST_F(HotKeyCenterTest, AnActionMayRegisterTheKeysAnewWhileItRuns)
{
    const auto area = key(CaptureAction::area, ShortcutPreset::controlShift);
    int runs = 0;
    center.registerHotKey(1, area.keyCode, area.modifiers, [this, &runs, ballast = QString(100, u'x')] {
        center.unregisterAll();
        registerAll(ShortcutPreset::controlShift);
        runs += int(ballast.size());
    });
    keyboard->press(area);
    QCoreApplication::processEvents();
    keyboard->press(area);
    QCoreApplication::processEvents();
    EXPECT_EQ(runs, 100);
    EXPECT_EQ(ran, QList<quint32>{1});
}
