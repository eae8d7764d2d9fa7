// SPDX-License-Identifier: MIT
#include "Desktop.h"
#include "app/HotKeyCenter.h"
#include "model/CaptureAction.h"
#include "platform/backend/DisplaySystem.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/XcbConnection.h"

using namespace pintalux::test;

namespace {

const QStringList controlShift{u"Control_L"_s, u"Shift_L"_s};

// Another client of the server that may hold keys.
class OtherClient {
public:
    bool grab(uint16_t modifiers, quint32 keyCode) const
    {
        const auto cookie = xcb_grab_key_checked(connection.get(), 0, connection.root(), modifiers,
            xcb_keycode_t(keyCode), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        return !x11::Reply<xcb_generic_error_t>(xcb_request_check(connection.get(), cookie));
    }

private:
    x11::XcbConnection connection{desktop().display()};
};

// The five hot keys on the desktop's keyboard; each test leaves the keyboard as it was.
class HotKeysTest : public testing::Test {
protected:
    HotKeysTest()
    {
        EXPECT_TRUE(witness.registerHotKey(1, witnessKey, {}, [this] { ++seen; }));
    }
    ~HotKeysTest() override
    {
        center.unregisterAll();
        desktop().run(u"setxkbmap"_s, {u"us"_s});
        letPass(100);
    }

    // Presses and releases physical keys one after another while others, named by what they type, are held.
    // All that came of it has come when the witness, pressed last, is seen: however slow the machine is.
    void press(const QStringList& held, const QList<quint32>& keyCodes)
    {
        QStringList arguments;
        for (const auto& key : held)
            arguments << u"keydown"_s << key;
        for (const auto keyCode : keyCodes)
            arguments << u"key"_s << QString::number(keyCode);
        for (const auto& key : held)
            arguments << u"keyup"_s << key;
        arguments << u"key"_s << QString::number(witnessKey);
        const int before = seen;
        xdotool(arguments.join(u' '));
        EXPECT_TRUE(waitUntil([&] { return seen > before; })) << "the witness";
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

    // Which actions ran after each of the five digits was pressed with the modifiers held.
    QList<quint32> pressedAll(const QStringList& held)
    {
        ran.clear();
        press(held, {10, 11, 12, 13, 14});
        return ran;
    }

    HotKeyCenter center{DisplaySystem::makeHotKeyBackend()};
    HotKeyCenter witness{DisplaySystem::makeHotKeyBackend()};
    static constexpr quint32 witnessKey = 96; // F12
    int seen = 0;
    QList<quint32> ran;
    const QList<quint32> all{1, 2, 3, 4, 5};
};

} // namespace

TEST_F(HotKeysTest, EveryPresetWorksWithEveryLockAndItsDigitsReachNobodyElse)
{
    QLineEdit field;
    field.setGeometry(100, 100, 400, 60);
    field.show();
    ASSERT_TRUE(waitUntil([&] { return field.isActiveWindow(); }));
    press({}, {11});
    ASSERT_EQ(field.text(), u"2") << "the keyboard reaches the field at all";
    field.clear();

    const std::array<QStringList, 4> keys{{controlShift, {u"Alt_L"_s, u"Shift_L"_s},
        {u"Super_L"_s, u"Shift_L"_s}, {u"Control_L"_s, u"Alt_L"_s}}};
    for (const auto preset : allCases<ShortcutPreset>()) {
        center.unregisterAll();
        EXPECT_TRUE(registerAll(preset).isEmpty());
        for (const auto& lock : {u"Caps_Lock"_s, u"Num_Lock"_s, u"Caps_Lock"_s, u"Num_Lock"_s}) {
            xdotool(u"key "_s + lock);
            EXPECT_EQ(pressedAll(keys[std::size_t(preset)]), all)
                << qPrintable(rawValue(preset)) << " after " << qPrintable(lock);
        }
        EXPECT_EQ(field.text(), u"");
        const auto other = (std::size_t(preset) + 1) % keys.size();
        EXPECT_TRUE(pressedAll(keys[other]).isEmpty())
            << other << " held for " << qPrintable(rawValue(preset));
        field.clear();
    }
    center.unregisterAll();
    EXPECT_TRUE(pressedAll(controlShift).isEmpty());
}

TEST_F(HotKeysTest, TheyWorkWhileAnotherProgramHasTheFocusOnEveryLayout)
{
    const DemoWindow other(u"Otra"_s, u"400x300+50+50"_s, u"#3B6FE0"_s);
    ASSERT_TRUE(registerAll(ShortcutPreset::controlShift).isEmpty());
    for (const auto& layout : {u"es"_s, u"fr"_s, u"us"_s}) {
        desktop().run(u"setxkbmap"_s, {layout});
        letPass(150);
        EXPECT_EQ(pressedAll(controlShift), all) << "registered before " << qPrintable(layout);
        center.unregisterAll();
        EXPECT_TRUE(registerAll(ShortcutPreset::controlShift).isEmpty());
        EXPECT_EQ(pressedAll(controlShift), all) << "registered on " << qPrintable(layout);
    }
}

TEST_F(HotKeysTest, AKeyThatAnotherProgramHasInAnyLockStateFailsAloneAndIsLeftToIt)
{
    constexpr uint16_t held = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT;
    for (const uint16_t lock : {0, int(XCB_MOD_MASK_LOCK)}) {
        const OtherClient other;
        ASSERT_TRUE(other.grab(held | lock, 12));
        EXPECT_EQ(registerAll(ShortcutPreset::controlShift), QList<quint32>{3});
        EXPECT_EQ(pressedAll(controlShift), (QList<quint32>{1, 2, 4, 5}));
        for (const uint16_t rest : {0, int(XCB_MOD_MASK_LOCK), int(XCB_MOD_MASK_2)})
            EXPECT_TRUE(other.grab(held | rest, 12)) << "no state of it is held back";
        EXPECT_FALSE(other.grab(held, 11)) << "the others are ours";
        center.unregisterAll();
    }
}

TEST_F(HotKeysTest, AKeyThatIsHeldCountsOnce)
{
    QLineEdit field;
    field.setGeometry(100, 100, 400, 60);
    field.show();
    ASSERT_TRUE(waitUntil([&] { return field.isActiveWindow(); }));
    const auto hold = [](const QString& key) {
        xdotool(u"keydown "_s + key);
        letPass(1000);
        xdotool(u"keyup "_s + key);
    };
    hold(u"15"_s);
    ASSERT_GT(field.text().size(), 3) << "keys repeat here";

    ASSERT_TRUE(registerAll(ShortcutPreset::controlShift).isEmpty());
    xdotool(u"keydown Control_L keydown Shift_L"_s);
    hold(u"10"_s);
    hold(u"11"_s);
    xdotool(u"key 11"_s);
    xdotool(u"key 11"_s);
    xdotool(u"keyup Control_L keyup Shift_L"_s);
    press({}, {});
    EXPECT_EQ(ran, (QList<quint32>{1, 2, 2, 2}));
}
