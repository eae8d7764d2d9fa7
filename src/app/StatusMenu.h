// SPDX-License-Identifier: MIT
#pragma once

#include "model/Command.h"

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
    std::optional<ProgramAction>
        action{};     ///< what is asked for when the row is chosen; none for rows that cannot be
    QString key{};    ///< combination as it is written, empty for none; `KeyText` makes it readable
    QString symbol{}; ///< empty for none
    QString toolTip{};

    bool operator==(const StatusMenuRow&) const = default;
};

/// What the status menu depends on.
struct StatusMenuState {
    ShortcutPreset preset = ShortcutPreset::controlShift;
    QSet<CaptureAction> failedShortcuts{}; ///< actions whose hot key could not be had
    bool hasPermission = true;             ///< to take pictures of the screen
};

/// The menu's rows in order.
QList<StatusMenuRow> statusMenuRows(const StatusMenuState& state);

/// Fills `menu` with these rows in place of what it holds. `trigger` gets what a chosen row asks for.
void fillStatusMenu(QMenu& menu, const QList<StatusMenuRow>& rows, const KeyText& keyText,
    const std::function<void(const ProgramAction& action)>& trigger);

} // namespace pintalux
