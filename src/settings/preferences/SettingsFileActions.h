// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

#include <memory>

class QDialog;
class QFileDialog;
class QWidget;

namespace pintalux {

class Settings;

/// What a person does with the whole of the settings: keep a copy and go back to it, take them to a file and
/// from one, start anew. Each action says on the screen how it went; one that is cancelled says nothing.
///
/// Panels belong to the window, hold it while they are open, and return at once: what happens, happens when
/// the person has chosen. Asking again for one that is open brings it to the front.
class SettingsFileActions : public QObject {
    Q_OBJECT

public:
    /// `window` may be null.
    SettingsFileActions(Settings& settings, QWidget* window);
    ~SettingsFileActions() override;

    void saveCopy();
    void restoreSavedCopy();
    void exportSettings();
    void importSettings();
    void reset();

Q_SIGNALS:
    /// There is a saved copy now.
    void copySaved();

private:
    bool isPanelOpen();
    void open(std::unique_ptr<QDialog> dialog);
    std::unique_ptr<QFileDialog> makeFilePanel(const QString& title);

    Settings& settings;
    QWidget* window;
    QPointer<QDialog> panel; ///< the one that is open
};

} // namespace pintalux
