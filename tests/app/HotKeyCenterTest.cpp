// SPDX-License-Identifier: MIT
#include "app/HotKeyCenter.h"

#include "fakes/FakeHotKeys.h"
#include "model/CaptureAction.h"

namespace {

class HotKeyCenterTest : public testing::Test {
protected:
    FakeHotKeys* keyboard = new FakeHotKeys; // the center's
    HotKeyCenter center{std::unique_ptr<HotKeyBackend>(keyboard)};
    const HotKey area{enumRow(CaptureAction::area).keyCode, enumRow(ShortcutPreset::controlShift).modifiers};
};

} // namespace

TEST_F(HotKeyCenterTest, APressRunsTheActionThatHoldsWhenItsTurnComes)
{
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
    int runs = 0, laterRuns = 0;
    center.registerHotKey(1, area.keyCode, area.modifiers, [&, ballast = QString(100, u'x')] {
        center.unregisterAll();
        center.registerHotKey(1, area.keyCode, area.modifiers, [&] { ++laterRuns; });
        runs += int(ballast.size());
    });
    for (int press = 0; press < 2; ++press) {
        keyboard->press(area);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(runs, 100);
    EXPECT_EQ(laterRuns, 1);
}
