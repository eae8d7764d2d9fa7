// SPDX-License-Identifier: MIT
#pragma once

#include "controls/PopUpButton.h"
#include "settings/preferences/PreferencesForm.h"
#include "settings/preferences/PreferencesSections.h"

namespace pintalux::Preferences {

/// A row with a switch for a setting that is on or off.
struct SwitchRow {
    QStringView title;
    Setting setting;
    bool (Settings::*get)() const;
    void (Settings::*set)(bool);
    bool inverted = false; ///< on means that the setting is off
};
void addSwitch(Form::Group& group, const SwitchRow& row, Binding& binding);

/// A row with the list of a setting's cases, as their table titles them; `preview` may be empty.
template <StringEnum E> struct ChoiceRow {
    QStringView title;
    Setting setting;
    E (Settings::*get)() const;
    void (Settings::*set)(E);
    QSize previewSize{};
    std::function<PopUpButton::Preview(E)> preview{};
    std::function<QString(const QString&)> shownTitle{};
};

template <StringEnum E> PopUpButton& addChoice(Form::Group& group, const ChoiceRow<E>& row, Binding& binding)
{
    auto* list = new PopUpButton(row.title.toString());
    QList<PopUpButton::Choice> choices;
    for (const auto value : allCases<E>())
        choices << PopUpButton::Choice{row.shownTitle ? row.shownTitle(title(value)) : title(value),
            row.preview ? row.preview(value) : PopUpButton::Preview()};
    list->setChoices(choices, row.previewSize);
    group.addRow(row.title.toString()).add(list);
    auto& settings = binding.settings;
    QObject::connect(list, &PopUpButton::chosen, list,
        [&settings, set = row.set](int index) { (settings.*set)(allCases<E>()[std::size_t(index)]); });
    binding.follow(
        row.setting, [&settings, list, get = row.get] { list->setCurrentIndex(int((settings.*get)())); });
    return *list;
}

} // namespace pintalux::Preferences
