// SPDX-License-Identifier: MIT
#include "app/StatusItem.h"
#include "app/icon/AppIcon.h"
#include "app/messages/HUD.h"
#include "controls/Menu.h"
#include "editor/window/MainMenu.h"
#include "platform/desktop/KeyLabel.h"
#include "platform/graphics/Symbol.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QScreen>
#include <QSet>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

using Kind = StatusMenuRow::Kind;

/// One line a row: title|action|key|symbol.
std::string described(const QList<StatusMenuRow>& rows)
{
    QStringList lines;
    for (const auto& row : rows)
        lines << (row.kind == Kind::separator
                ? u"-"_s
                : QStringList{row.title, row.action ? nameOf(*row.action) : QString(), row.key, row.symbol}
                      .join(u'|'));
    return lines.join(u'\n').toStdString();
}

} // namespace

TEST(StatusMenu, RowsStandInOrderWithTheirKeysAndSymbols)
{
    EXPECT_EQ(described(statusMenuRows({})),
        "Pintalux|||\n"
        "-\n"
        "Capturar área|area|⌃⇧1|rectangle.dashed\n"
        "Capturar ventana|window|⌃⇧2|macwindow\n"
        "Capturar pantalla completa|fullScreen|⌃⇧3|display\n"
        "Copiar texto de la pantalla (OCR)|text|⌃⇧4|text.viewfinder\n"
        "Selector de color|color|⌃⇧5|eyedropper\n"
        "-\n"
        "Abrir imagen…|openImage|⌘O|photo\n"
        "Mostrar carpeta de capturas|revealFolder||folder\n"
        "-\n"
        "Ajustes…|showPreferences|⌘,|\n"
        "Acerca de Pintalux|showAbout||\n"
        "Salir de Pintalux|terminate|⌘Q|\n"
        "-\n"
        "Hecho con calma para Linux|||\n"
        "pintalux.example|openWebsite||");
}

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
    for (const auto& row : rows)
        EXPECT_TRUE(row.symbol.isEmpty() || Symbol::exists(row.symbol)) << row.symbol.toStdString();
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
    EXPECT_EQ(menu.sizeHint().height(), 12 + 80 + 28 * 11 + 11 * 4 + 22 * 2)
        << "padding, shadow, rows, rules";
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

TEST(StatusImage, IsOneColourAndDrawnForEverySize)
{
    for (const int side : {16, 18, 22, 24, 32})
        for (const double ratio : {1.0, 1.5, 2.0}) {
            const auto image = AppIcon::statusBarImage(Qt::white)
                                   .pixmap(QSize(side, side), ratio)
                                   .toImage()
                                   .convertToFormat(QImage::Format_ARGB32);
            ASSERT_EQ(image.width(), qRound(side * ratio));
            int inked = 0;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x) {
                    const auto pixel = image.pixel(x, y);
                    inked += qAlpha(pixel) > 200;
                    ASSERT_TRUE(qAlpha(pixel) < 8 || qRed(pixel) > 240);
                }
            const double share = double(inked) / image.width() / image.height();
            EXPECT_TRUE(share > 0.08 && share < 0.25) << side << " at " << ratio << ": " << share;
            EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0) << "the corners tell the panel's colour";
        }
}

TEST(Command, NamesAndKeysAreUniqueAndTheBusReachesTheProgramsAlone)
{
    QSet<QString> names;
    QSet<QString> keys;
    int withKey = 0;
    for (const auto& row : commandTable) {
        names.insert(row.rawValue.toString());
        withKey += !row.key.isEmpty();
        if (!row.key.isEmpty())
            keys.insert(row.key.toString());
        EXPECT_TRUE(row.symbol.isEmpty() || Symbol::exists(row.symbol.toString()));
        const auto found = programActionNamed(row.rawValue);
        EXPECT_EQ(found.has_value(), row.scope == CommandScope::program) << row.rawValue.toUtf8().data();
        EXPECT_TRUE(!found || *found == ProgramAction(row.value));
    }
    EXPECT_EQ(names.size(), commandTable.size());
    EXPECT_EQ(keys.size(), withKey);
    EXPECT_FALSE(programActionNamed(u"nada"));

    // What the desktop offers on the program's icon.
    QFile entry(QStringLiteral(TEST_DATA "/../../data/io.github.pintalux.Pintalux.desktop"));
    ASSERT_TRUE(entry.open(QIODevice::ReadOnly));
    QStringList offered;
    for (const auto& line : QString::fromUtf8(entry.readAll()).split(u'\n'))
        if (line.startsWith(u"Actions="))
            offered = line.sliced(8).split(u';', Qt::SkipEmptyParts);
    EXPECT_EQ(offered.size(), captureActionTable.size());
    for (const auto& name : offered)
        EXPECT_TRUE(programActionNamed(name)) << name.toStdString();
}

TEST(MainMenu, EveryRowAsksForItsCommandAndShowsItsKey)
{
    QList<Command> chosen;
    const auto bar = MainMenu::make([&](Command command) { chosen << command; });
    for (auto* title : bar->actions())
        for (auto* action : title->menu()->actions()) {
            const auto command = MainMenu::commandOf(*action);
            if (!command)
                continue;
            chosen.clear();
            action->trigger();
            EXPECT_EQ(chosen, QList{*command});
            EXPECT_EQ(action->shortcut().isEmpty(), enumRow(*command).key.isEmpty());
            EXPECT_EQ(KeyLabel::text(action->shortcut()), KeyLabel::text(enumRow(*command).key.toString()));
        }
}

TEST(HUD, TheLatestMessageStandsAndLongOnesStayOnTheScreen)
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
    HUD::dismiss();
    EXPECT_EQ(HUD::currentMessage(), std::nullopt);
}
