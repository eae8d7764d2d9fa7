// SPDX-License-Identifier: MIT
#include "app/StatusItem.h"

#include "app/icon/AppIcon.h"
#include "controls/Menu.h"
#include "controls/theme/Theme.h"
#include "platform/session/DesktopAppearance.h"
#include "platform/session/TrayHost.h"

#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QSystemTrayIcon>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr int menuWidth = 336;
constexpr int searchMilliseconds = 2000;
constexpr int settleMilliseconds = 400; ///< until a panel has placed the icon

} // namespace

StatusItem::StatusItem(std::function<StatusMenuState()> stateNow, KeyText keys, QObject* parent)
    : QObject(parent)
    , state(std::move(stateNow))
    , keyText(std::move(keys))
    , statusMenu(std::make_unique<Menu>())
    , appearance(std::make_unique<DesktopAppearance>())
{
    statusMenu->setCardWidth(menuWidth);
    connect(statusMenu.get(), &QMenu::aboutToShow, this, &StatusItem::rebuildMenu);
    connect(statusMenu.get(), &QMenu::aboutToHide, this, &StatusItem::updateIcon);
    rebuildMenu(); // a host that draws the menu itself reads it before it opens
    search.setInterval(searchMilliseconds);
    search.setTimerType(Qt::CoarseTimer);
    connect(&search, &QTimer::timeout, this, &StatusItem::lookForTray);
    qApp->installEventFilter(this);
    connect(appearance.get(), &DesktopAppearance::changed, this, &StatusItem::updateIcon);
}

StatusItem::~StatusItem() = default;

QMenu& StatusItem::menu() { return *statusMenu; }

bool StatusItem::isTrayMissing() const { return !icon; }

void StatusItem::show()
{
    if (icon)
        return;
    lookForTray();
    if (icon)
        return;
    search.start();
    if (!std::exchange(announcedMissing, true))
        Q_EMIT trayMissing();
}

void StatusItem::lookForTray()
{
    if (icon || findTrayHost() == TrayHost::none)
        return;
    search.stop();
    createIcon();
    if (announcedMissing)
        Q_EMIT trayAppeared();
}

void StatusItem::createIcon()
{
    icon = std::make_unique<QSystemTrayIcon>();
    icon->setToolTip(u"Pintalux"_s);
    icon->setContextMenu(statusMenu.get());
    connect(icon.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
            popUpAt(QCursor::pos());
    });
    updateIcon();
    icon->show();
    QTimer::singleShot(settleMilliseconds, this, &StatusItem::updateIcon);
}

bool StatusItem::wantsLightImage() const
{
    // A panel that holds our own window can be looked at.
    if (const auto panel = icon ? panelColorAround(icon->geometry()) : std::nullopt)
        return panel->lightness() < 128;
    // This desktop's panel is dark whatever its windows are.
    if (qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains(u"GNOME"_s))
        return true;
    return appearance->wishesDark().value_or(Theme::current().dark);
}

void StatusItem::updateIcon()
{
    if (!icon)
        return;
    const bool light = wantsLightImage();
    if (lightImage == light)
        return;
    lightImage = light;
    icon->setIcon(AppIcon::statusBarImage(light ? Qt::white : QColor(0x1C, 0x1B, 0x22)));
}

bool StatusItem::eventFilter(QObject* object, QEvent* event)
{
    if (object == qApp && event->type() == QEvent::ApplicationPaletteChange)
        QTimer::singleShot(0, this, &StatusItem::updateIcon);
    return QObject::eventFilter(object, event);
}

void StatusItem::rebuildMenu()
{
    fillStatusMenu(*statusMenu, statusMenuRows(state()), keyText,
        [this](const ProgramAction& action) { Q_EMIT actionChosen(action); });
}

void StatusItem::popUpAt(QPoint screenPoint) { statusMenu->popUpAt(screenPoint); }

void StatusItem::performClick()
{
    const auto frame = icon ? icon->geometry() : QRect();
    popUpAt(frame.isEmpty() ? QCursor::pos() : frame.center());
}

} // namespace pintalux
