#include "app/MainMenu.h"

#include <QAction>
#include <QMenu>

namespace pintalux::MainMenu {

namespace {

QMenu& menuTitled(QStringView title, QMenuBar& bar)
{
    for (auto* action : bar.actions())
        if (action->text() == title)
            return *action->menu();
    return *bar.addMenu(title.toString());
}

} // namespace

std::unique_ptr<QMenuBar> make(const Trigger& trigger, QWidget* parent)
{
    auto bar = std::make_unique<QMenuBar>(parent);
    for (const auto& row : table) {
        auto& menu = menuTitled(row.menu, *bar);
        if (row.title.isEmpty()) {
            menu.addSeparator();
            continue;
        }
        auto* action = menu.addAction(row.title.toString());
        const auto actionId = row.actionId.toString();
        action->setData(actionId);
        action->setMenuRole(QAction::NoRole);
        if (!row.key.isEmpty())
            action->setShortcut(QKeySequence::fromString(row.key.toString(), QKeySequence::PortableText));
        QObject::connect(action, &QAction::triggered, bar.get(),
            [trigger, actionId, target = row.target] { trigger(actionId, target); });
    }
    return bar;
}

} // namespace pintalux::MainMenu
