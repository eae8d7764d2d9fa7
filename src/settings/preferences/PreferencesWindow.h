// SPDX-License-Identifier: MIT
#pragma once

#include "settings/preferences/PreferencesHost.h"

#include <QWidget>

namespace pintalux {

class PreferencesView;
class Settings;

/// The window "Ajustes de Pintalux". It is made once, kept when it is closed and shown again.
class PreferencesWindow : public QWidget {
    Q_OBJECT

public:
    PreferencesWindow(Settings& settings, PreferencesHost host);

    /// Puts the window, before it is shown for the first time, in the middle of the screen under the pointer.
    void place();

    PreferencesView& view() { return *form; }

Q_SIGNALS:
    /// The window has left the screen.
    void closed();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    PreferencesView* form;
    bool placed = false;
};

} // namespace pintalux
