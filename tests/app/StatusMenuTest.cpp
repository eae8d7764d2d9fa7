// SPDX-License-Identifier: MIT
#include "Gestures.h"
#include "Stage.h"
#include "app/StatusItem.h"
#include "app/messages/HUD.h"
#include "controls/Menu.h"
#include "editor/window/MainMenu.h"
#include "platform/base/SkippableTimer.h"
#include "platform/desktop/KeyLabel.h"

using namespace std::chrono_literals;

namespace {

using Kind = StatusMenuRow::Kind;

} // namespace

TEST(StatusMenu, FailedShortcutsAndMissingPermissionShow)
{
    const auto rows = statusMenuRows(
        {ShortcutPreset::controlOption, {CaptureAction::window, CaptureAction::color}, false});
    const auto find = [&](ProgramAction action) {
        return *std::ranges::find(rows, std::optional(action), &StatusMenuRow::action);
    };
    const auto text = u"El atajo está en uso por otra app. Cambia la combinación en Ajustes."_s;
    EXPECT_EQ(find(CaptureAction::area).key, u"⌃⌥1"_s);
    EXPECT_EQ(find(CaptureAction::window).key, QString());
    EXPECT_EQ(find(CaptureAction::window).toolTip, text);
    EXPECT_EQ(find(CaptureAction::color).toolTip, text);
    EXPECT_EQ(find(CaptureAction::text).toolTip, QString());
    EXPECT_EQ(std::ranges::count(rows, Kind::note, &StatusMenuRow::kind), 1);
    EXPECT_EQ(std::ranges::count(
                  rows, std::optional<ProgramAction>(Command::openPermission), &StatusMenuRow::action),
        1);
}

TEST(StatusMenu, EveryRowThatCanBeChosenAsksForItsAction)
{
    Menu menu;
    QList<ProgramAction> chosen;
    const auto rows = statusMenuRows({});
    const auto fill = [&] {
        fillStatusMenu(
            menu, rows, [](const QString& key) { return u"<"_s + key + u">"_s; },
            [&](const ProgramAction& action) { chosen << action; });
    };
    fill();
    fill();
    const auto actions = menu.actions();
    ASSERT_EQ(actions.size(), rows.size()) << "filling again replaces";
    QList<ProgramAction> expected;
    for (qsizetype index = 0; index < rows.size(); ++index) {
        EXPECT_EQ(actions[index]->isEnabled(), actions[index]->isSeparator() || rows[index].action);
        actions[index]->trigger();
        if (rows[index].action)
            expected << *rows[index].action;
    }
    EXPECT_EQ(chosen, expected);
    EXPECT_EQ(actions[2]->shortcut(), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_1));
}

TEST(StatusItem, WithoutAPlaceForItSaysSoOnceAndTheMenuStillOpens)
{
    StatusItem item([] { return StatusMenuState{}; }, {});
    int missing = 0;
    QObject::connect(&item, &StatusItem::trayMissing, [&] { ++missing; });
    item.show();
    item.show();
    EXPECT_EQ(missing, 1);
    EXPECT_TRUE(item.isTrayMissing());
    item.performClick();
    EXPECT_TRUE(item.menu().isVisible());
    item.menu().close();
}

// Reckoned with the space for its shadow, a menu at the right edge stood far from the icon that it belongs
// to.
TEST(Menu, ItsRowsAreByThePointThatItOpensAtInEveryCornerOfTheScreen)
{
    const auto visible = QGuiApplication::primaryScreen()->availableGeometry();
    constexpr int reach = 24; // the edge kept free and the padding around rows
    for (const auto& corner : {visible.topLeft(), visible.topRight(), visible.bottomLeft(),
             visible.bottomRight(), visible.center()}) {
        Menu menu;
        auto* row = menu.addAction(u"Una fila"_s);
        menu.popUpAt(corner);
        const QRect shown(
            menu.mapToGlobal(menu.actionGeometry(row).topLeft()), menu.actionGeometry(row).size());
        EXPECT_TRUE(visible.contains(shown)) << corner.x() << ' ' << corner.y();
        EXPECT_TRUE(shown.adjusted(-reach, -reach, reach, reach).contains(corner))
            << corner.x() << ' ' << corner.y();
        menu.close();
    }
}

TEST(Command, TheBusAndTheDesktopReachTheProgramsAlone)
{
    for (const auto& row : commandTable) {
        const auto found = programActionNamed(row.rawValue);
        EXPECT_EQ(found.has_value(), row.scope == CommandScope::program) << row.rawValue.toUtf8().data();
        EXPECT_TRUE(!found || *found == ProgramAction(row.value));
    }
    EXPECT_FALSE(programActionNamed(u"nada"));

    // What the desktop offers on the program's icon.
    const auto entry
        = stage::contents(QStringLiteral(TEST_DATA "/../../data/io.github.pintalux.Pintalux.desktop"));
    const auto offered = QString::fromUtf8(entry)
                             .section(u"\nActions="_s, 1)
                             .section(u'\n', 0, 0)
                             .split(u';', Qt::SkipEmptyParts);
    EXPECT_EQ(offered.size(), captureActionTable.size());
    for (const auto& name : offered)
        EXPECT_TRUE(programActionNamed(name)) << name.toStdString();
}

TEST(HUD, TheLatestMessageStandsForItsOwnTimeAndLongOnesStayOnTheScreen)
{
    HUD::show(u"Uno"_s, u"sparkles"_s);
    const auto longText = QString(u"Una carpeta con un nombre larguísimo que no cabe "_s).repeated(40);
    for (const auto& text : {u"Dos"_s, longText, QString(4000, u'W'), u"a\nb\nc\nd\ne\nf"_s, QString()}) {
        HUD::show(text, u"checkmark.circle.fill"_s, QColor(Qt::green));
        EXPECT_EQ(HUD::currentMessage(), text);
        int shown = 0;
        for (const auto* widget : QApplication::topLevelWidgets())
            if (widget->isVisible()) {
                ++shown;
                EXPECT_TRUE(
                    QGuiApplication::primaryScreen()->availableGeometry().contains(widget->geometry()));
                EXPECT_LE(widget->height(), 200);
            }
        EXPECT_EQ(shown, 1);
    }
    EXPECT_EQ(SkippableTimer::skipNext(), 2s) << "the replaced ones' time is not its own";
    EXPECT_TRUE(gesture::waitFor([] { return !HUD::currentMessage(); }));
    EXPECT_FALSE(SkippableTimer::skipNext());
}
