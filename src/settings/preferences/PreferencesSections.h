// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Settings.h"
#include "settings/preferences/PreferencesHost.h"

#include <QObject>

#include <functional>
#include <vector>

class QWidget;

/// The groups of the preferences' form, from top to bottom.
namespace pintalux::Preferences {

/// What keeps the form equal to the settings: each control says once how it shows its setting.
class Binding : public QObject {
    Q_OBJECT

public:
    Binding(Settings& settings, PreferencesHost host);

    Settings& settings;
    const PreferencesHost host;

    /// Shows the setting's value now and whenever it is set.
    void follow(Setting setting, const std::function<void()>& show);
    /// Shows what no setting announces, now and at every `refresh`.
    void onRefresh(const std::function<void()>& show);
    void refresh();

private:
    struct Follower {
        Setting setting;
        std::function<void()> show;
    };

    std::vector<Follower> followers;
    std::vector<std::function<void()>> refreshers;
};

QWidget* makeHeader(const Binding& binding);
QWidget* makeCaptureGroup(Binding& binding);
QWidget* makeAfterCaptureGroup(Binding& binding);
QWidget* makeShortcutGroup(Binding& binding);
QWidget* makeEditorGroup(Binding& binding);
QWidget* makeSystemGroup(Binding& binding);
QWidget* makeFileGroup(Binding& binding);

} // namespace pintalux::Preferences
