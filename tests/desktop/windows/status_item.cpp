// SPDX-License-Identifier: MIT

// Shows what the program shows without being asked, and prints what is chosen of it.
//   pintalux_status_item [--failed]
// Lines: "missing", "appeared", "chosen ID", "menu" each time the menu opens.

#include "app/StatusItem.h"
#include "platform/backend/DisplaySystem.h"

#include <QApplication>
#include <QMenu>

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
    pintalux::StatusMenuState state;
    if (argc > 1)
        state.failedShortcuts = {pintalux::CaptureAction::color};
    pintalux::StatusItem item([&] { return state; }, [](const QString& key) { return key; });
    QObject::connect(&item, &pintalux::StatusItem::trayMissing, [] { say(QStringLiteral("missing")); });
    QObject::connect(&item, &pintalux::StatusItem::trayAppeared, [] { say(QStringLiteral("appeared")); });
    QObject::connect(&item, &pintalux::StatusItem::actionChosen,
        [](const pintalux::ProgramAction& action) { say(QStringLiteral("chosen ") + nameOf(action)); });
    QObject::connect(&item.menu(), &QMenu::aboutToShow, [] { say(QStringLiteral("menu")); });
    item.show();

    return QApplication::exec();
}
