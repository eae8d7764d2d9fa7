// SPDX-License-Identifier: MIT
#include "settings/preferences/PreferencesRows.h"

namespace pintalux::Preferences {

Binding::Binding(Settings& followed, PreferencesHost callbacks)
    : settings(followed)
    , host(std::move(callbacks))
{
    connect(&settings, &Settings::changed, this, [this](Setting changed) {
        for (const auto& [setting, show] : followers)
            if (setting == changed)
                show();
    });
}

void Binding::follow(Setting setting, const std::function<void()>& show)
{
    followers.push_back({setting, show});
    show();
}

void Binding::onRefresh(const std::function<void()>& show)
{
    refreshers.push_back(show);
    show();
}

void Binding::refresh()
{
    for (const auto& show : refreshers)
        show();
}

void addSwitch(Form::Group& group, const SwitchRow& row, Binding& binding)
{
    auto* toggle = new Switch(row.title.toString());
    group.addRow(row.title.toString()).setSwitch(toggle);
    auto& settings = binding.settings;
    QObject::connect(toggle, &QAbstractButton::clicked, toggle,
        [&settings, row](bool on) { (settings.*row.set)(on != row.inverted); });
    binding.follow(
        row.setting, [&settings, row, toggle] { toggle->setChecked((settings.*row.get)() != row.inverted); });
}

} // namespace pintalux::Preferences
