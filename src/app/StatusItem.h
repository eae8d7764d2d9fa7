// SPDX-License-Identifier: MIT
#pragma once

#include "app/StatusMenu.h"

#include <QObject>
#include <QPoint>
#include <QTimer>

#include <memory>
#include <optional>

class QMenu;
class QSystemTrayIcon;

namespace pintalux {

class DesktopAppearance;
class Menu;

/// The program's icon in the desktop's panel, with its menu.
///
/// The menu is made anew each time it opens. Where the desktop has no place for such icons, `trayMissing`
/// says so once and the icon appears as soon as there is one; `popUpAt` serves the menu meanwhile.
class StatusItem : public QObject {
    Q_OBJECT

public:
    /// `state` is asked each time the menu opens.
    StatusItem(std::function<StatusMenuState()> state, KeyText keyText, QObject* parent = nullptr);
    ~StatusItem() override;

    /// Shows the icon, now or when there is a place for it.
    void show();
    bool isTrayMissing() const;

    /// Opens the menu at a point of the screen (global logical pixels), kept on that screen.
    void popUpAt(QPoint screenPoint);
    /// Opens the menu at the icon, or under the pointer where it is not known where the icon is.
    void performClick();

    QMenu& menu();

    bool eventFilter(QObject* object, QEvent* event) override;

    /// Paints the icon anew for the panel it stands in.
    Q_SLOT void updateIcon();

Q_SIGNALS:
    /// A row was chosen.
    void actionChosen(const pintalux::ProgramAction& action);
    /// There was no place for the icon when it should have shown. At most once.
    void trayMissing();
    /// A place turned up after that.
    void trayAppeared();

private:
    void rebuildMenu();
    void lookForTray();
    void createIcon();
    bool wantsLightImage() const;

    std::function<StatusMenuState()> state;
    KeyText keyText;
    std::unique_ptr<Menu> statusMenu;
    std::unique_ptr<DesktopAppearance> appearance;
    std::unique_ptr<QSystemTrayIcon> icon;
    QTimer search; ///< for a place, while there is none
    bool announcedMissing = false;
    std::optional<bool> lightImage; ///< as it is shown now
};

} // namespace pintalux
