// SPDX-License-Identifier: MIT
#pragma once

#include "settings/preferences/PreferencesHost.h"

#include <QScrollArea>

#include <memory>

class QVBoxLayout;

namespace pintalux {

class Settings;

namespace Preferences {
class Binding;
}

/// The form of the preferences. What is changed here holds at once, and what changes elsewhere shows here.
class PreferencesView : public QScrollArea {
    Q_OBJECT

public:
    PreferencesView(Settings& settings, PreferencesHost host, QWidget* parent = nullptr);
    ~PreferencesView() override;

    /// Looks again at what the settings do not announce: permission, opening at login, saved copy, hot keys.
    void refresh();

    QSize sizeHint() const override { return {580, 760}; }
    /// Height of the whole form at its present width; points.
    int contentHeight() const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    class Sheet;
    class ScrollPill;

    void addSection(const QString& title, QWidget* group);

    std::unique_ptr<Preferences::Binding> binding;
    QVBoxLayout* column = nullptr;
    ScrollPill* pill = nullptr;
};

} // namespace pintalux
