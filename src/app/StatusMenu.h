// SPDX-License-Identifier: MIT
#pragma once

#include "model/CaptureAction.h"

#include <QList>
#include <QSet>
#include <QString>

#include <functional>

class QMenu;

namespace pintalux {

/// The texts next to menu entries: how this keyboard calls a combination written as "⌃⇧1" or "⌘,".
using KeyText = std::function<QString(const QString& combination)>;

/// One row of the status item's menu.
struct StatusMenuRow {
    enum class Kind { header, separator, action, note, credit, link };

    Kind kind = Kind::separator;
    QString title{};
    QString actionId{}; ///< what is asked for when the row is chosen; empty for rows that cannot be
    QString key{};      ///< combination as it is written, empty for none; `KeyText` makes it readable
    QString symbol{};   ///< empty for none
    QString toolTip{};

    bool operator==(const StatusMenuRow&) const = default;
};

/// What the status menu depends on.
struct StatusMenuState {
    ShortcutPreset preset = ShortcutPreset::controlShift;
    QSet<CaptureAction> failedShortcuts{}; ///< actions whose hot key could not be had
    bool hasPermission = true;             ///< to take pictures of the screen
};

/// The identifiers that the menu hands out, beside the raw value of each `CaptureAction`.
namespace StatusMenuAction {
inline constexpr QStringView openImage = u"openImage";
inline constexpr QStringView revealFolder = u"revealFolder";
inline constexpr QStringView openPermission = u"openPermission";
inline constexpr QStringView showPreferences = u"showPreferences";
inline constexpr QStringView showAbout = u"showAbout";
inline constexpr QStringView terminate = u"terminate";
inline constexpr QStringView openWebsite = u"openWebsite";
} // namespace StatusMenuAction

/// The menu's rows in order.
QList<StatusMenuRow> statusMenuRows(const StatusMenuState& state);

/// Fills `menu` with these rows in place of what it holds. `trigger` gets the identifier of a chosen row.
void fillStatusMenu(QMenu& menu, const QList<StatusMenuRow>& rows, const KeyText& keyText,
    const std::function<void(const QString& actionId)>& trigger);

} // namespace pintalux
