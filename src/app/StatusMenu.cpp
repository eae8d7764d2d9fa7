// SPDX-License-Identifier: MIT
#include "app/StatusMenu.h"

#include "app/icon/BrandMark.h"
#include "controls/Menu.h"
#include "controls/theme/Theme.h"
#include "platform/base/Author.h"
#include "platform/graphics/Symbol.h"

#include <QKeySequence>

#include <array>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

using Kind = StatusMenuRow::Kind;

/// The toolkit's form of a written combination: what the hosts that draw the menu themselves are told.
QKeySequence keySequence(const QString& combination)
{
    constexpr std::array<std::pair<char16_t, int>, 4> modifiers{{
        {u'⌃', Qt::ControlModifier},
        {u'⇧', Qt::ShiftModifier},
        {u'⌥', Qt::AltModifier},
        {u'⌘', Qt::MetaModifier},
    }};
    int key = 0;
    for (const auto character : combination) {
        const auto* found
            = std::ranges::find(modifiers, character.unicode(), [](const auto& row) { return row.first; });
        key |= found != modifiers.end() ? found->second : character.toUpper().unicode();
    }
    return key == 0 ? QKeySequence() : QKeySequence(key);
}

Menu::Look look(Kind kind)
{
    switch (kind) {
    case Kind::header:
        return Menu::Look::header;
    case Kind::note:
        return Menu::Look::note;
    case Kind::credit:
        return Menu::Look::credit;
    case Kind::link:
        return Menu::Look::link;
    case Kind::separator:
    case Kind::action:
        break;
    }
    return Menu::Look::action;
}

QIcon iconOf(const StatusMenuRow& row, const Theme& theme)
{
    if (row.kind == Kind::header)
        return BrandMark::icon();
    if (row.symbol.isEmpty())
        return {};
    const bool warns = row.action == ProgramAction(Command::openPermission);
    return Symbol::icon(row.symbol, {warns ? theme.warn : theme.icon, theme.disabled, Qt::white});
}

} // namespace

QList<StatusMenuRow> statusMenuRows(const StatusMenuState& state)
{
    const auto row = [](Command command) {
        const auto& about = enumRow(command);
        return StatusMenuRow{
            Kind::action, about.title.toString(), command, about.key.toString(), about.symbol.toString(), {}};
    };
    QList<StatusMenuRow> rows{{Kind::header, u"Pintalux"_s}, {}};
    const auto modifiers = enumRow(state.preset).symbols.toString();
    for (const auto& capture : captureActionTable) {
        StatusMenuRow asks{Kind::action, capture.title.toString(), capture.value,
            modifiers + QChar(capture.keyEquivalent), capture.symbol.toString(), {}};
        if (state.failedShortcuts.contains(capture.value)) {
            asks.key.clear();
            asks.toolTip = takenShortcutText.toString();
        }
        rows.append(asks);
    }
    // Desktops that draw the menu themselves show no tool tips.
    if (!state.failedShortcuts.isEmpty())
        rows.append({Kind::note, takenShortcutText.toString()});
    rows.append({
        {},
        row(Command::openImage),
        row(Command::revealFolder),
        {},
    });
    if (!state.hasPermission)
        rows.append(row(Command::openPermission));
    rows.append({
        row(Command::showPreferences),
        row(Command::showAbout),
        row(Command::terminate),
        {},
        {Kind::credit, Author::credit.toString()},
        {Kind::link, Author::website.toString(), Command::openWebsite},
    });
    return rows;
}

void fillStatusMenu(QMenu& menu, const QList<StatusMenuRow>& rows, const KeyText& keyText,
    const std::function<void(const ProgramAction& action)>& trigger)
{
    menu.clear();
    const auto& theme = Theme::of(menu.palette());
    for (const auto& row : rows) {
        if (row.kind == Kind::separator) {
            menu.addSeparator();
            continue;
        }
        auto* action = menu.addAction(iconOf(row, theme), row.title);
        Menu::setLook(*action, look(row.kind));
        Menu::setKeyText(*action, row.key.isEmpty() || !keyText ? row.key : keyText(row.key));
        action->setEnabled(row.action.has_value());
        action->setToolTip(row.toolTip);
        action->setMenuRole(QAction::NoRole);
        action->setShortcut(keySequence(row.key));
        if (row.action)
            QObject::connect(
                action, &QAction::triggered, &menu, [trigger, asked = *row.action] { trigger(asked); });
    }
}

} // namespace pintalux
