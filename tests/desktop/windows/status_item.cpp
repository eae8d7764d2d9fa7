// SPDX-License-Identifier: MIT

// Shows what the program shows without being asked, and prints what is chosen of it.
//   pintalux_status_item [--dark] [--no-permission] [--message TEXT SYMBOL [#RRGGBB]] [--menu X Y]
// Lines: "missing", "appeared", "chosen ID", "menu" each time the menu opens, "visible" once the icon is.

#include "app/StatusItem.h"
#include "app/messages/HUD.h"
#include "platform/backend/DisplaySystem.h"

#include <QApplication>
#include <QMenu>
#include <QPalette>

#include <cstdio>

namespace {

void say(const QString& line)
{
    std::puts(qPrintable(line));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    pintalux::WindowSystem::use(pintalux::DisplaySystem::makeWindowSystem());
    const auto arguments = QCoreApplication::arguments();
    const auto after = [&](const QString& option, int place) {
        const auto index = arguments.indexOf(option);
        return index < 0 ? QString() : arguments.value(index + place);
    };
    if (arguments.contains(QStringLiteral("--dark")))
        QApplication::setPalette(QPalette(QColor(0x29, 0x28, 0x31)));

    pintalux::StatusMenuState state;
    state.hasPermission = !arguments.contains(QStringLiteral("--no-permission"));
    if (arguments.contains(QStringLiteral("--failed")))
        state.failedShortcuts = {pintalux::CaptureAction::color};
    pintalux::StatusItem item([&] { return state; }, [](const QString& key) { return key; });
    QObject::connect(&item, &pintalux::StatusItem::trayMissing, [] { say(QStringLiteral("missing")); });
    QObject::connect(&item, &pintalux::StatusItem::trayAppeared, [] { say(QStringLiteral("appeared")); });
    QObject::connect(&item, &pintalux::StatusItem::actionChosen,
        [](const pintalux::ProgramAction& action) { say(QStringLiteral("chosen ") + nameOf(action)); });
    QObject::connect(&item.menu(), &QMenu::aboutToShow, [] { say(QStringLiteral("menu")); });
    item.show();

    const auto message = QStringLiteral("--message");
    if (arguments.contains(message)) {
        const QColor tint(after(message, 3));
        pintalux::HUD::show(
            after(message, 1), after(message, 2), tint.isValid() ? std::optional(tint) : std::nullopt);
    }
    const auto menu = QStringLiteral("--menu");
    if (arguments.contains(menu))
        item.popUpAt({after(menu, 1).toInt(), after(menu, 2).toInt()});
    return QApplication::exec();
}
