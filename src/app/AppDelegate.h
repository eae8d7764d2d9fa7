// SPDX-License-Identifier: MIT
#pragma once

#include "app/CaptureJob.h"
#include "app/Delivery.h"
#include "capture/CaptureOverlay.h"
#include "model/Command.h"
#include "platform/base/Worker.h"
#include "platform/desktop/Workspace.h"

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

class QFileDialog;

namespace pintalux {

class About;
class EditorWindowController;
class HotKeyCenter;
class LoginItem;
class PreferencesWindow;
class Settings;
class SettingsFileActions;
class StatusItem;
class ThumbnailController;
struct CommandLine;

/// Whether the desktop lists the program among those that have windows. While it does not, no window of ours
/// is in a task bar or a window switcher; what floats never is.
enum class ActivationPolicy { accessory, regular };

/// The running program: its status item and hot keys, every capture from its start to its delivery, and the
/// editors.
///
/// One instance per process; main thread only.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    AppDelegate(Settings& settings, HotKeyCenter& hotKeys, std::unique_ptr<Workspace> workspace);
    ~AppDelegate() override;

    /// The running delegate; null before and after.
    static AppDelegate* shared();

    /// Shows the status item, registers the hot keys and does what the command line asks for.
    void finishLaunching(const CommandLine& commandLine);

    /// Registers the hot key of every action anew, with the modifiers of the chosen preset.
    void registerShortcuts();
    /// The actions whose hot key belongs to somebody else.
    const QSet<CaptureAction>& failedShortcuts() const { return failed; }

    /// Starts a capture. Does nothing while something is being selected or the permission is missing.
    /// `screen` names the output whose full screen is wanted; empty for the one under the pointer.
    void perform(CaptureAction action, const QString& screen = {});
    /// The same from a menu, once the menu has left the screen.
    void menuCapture(CaptureAction action);
    /// Carries out a command of the program's.
    void run(Command command);
    /// What a person chose in the status menu.
    void runFromMenu(const ProgramAction& action);
    /// The same by its name, from another process, which has no menu to wait for.
    void runNamed(const QString& actionName, const QString& screen = {});

    /// Takes a capture for somebody who wants to have it themselves; no setting applies to it. What it
    /// returns cancels it; empty while something is being selected, and then `done` is never called.
    std::function<void()> captureFor(
        CaptureAction action, const QString& screen, const CaptureJob::Done& done);

    /// Reads the picture file and opens it in an editor, in the order of the calls; says so on screen when it
    /// cannot be read. Returns at once.
    void openImageFile(const QString& path);

    /// Opens the picture in an editor of its own, in front of all windows and with the focus.
    void openEditor(const CaptureResult& shot);
    /// Shows the capture as a card in the corner of the screen; `saving` is the file that is being written of
    /// it.
    void showThumbnail(const CaptureResult& shot, const std::optional<Exporter::Saving>& saving);
    /// Every open editor, in opening order.
    const std::vector<std::unique_ptr<EditorWindowController>>& editors() const { return openEditors; }
    ActivationPolicy activationPolicy() const { return policy; }

    /// The selection overlay on screen; null while there is none.
    CaptureOverlayController* currentOverlay() const { return overlay.get(); }

public Q_SLOTS:
    /// Opens the status menu, as starting the program again does.
    void reopen();

private:
    Delivery::Routes routes();
    void startOverlay(OverlayMode mode);
    void overlayFinished(const OverlayOutcome& outcome);
    void captureWindow(const WindowInfo& window, const QString& title);
    void captureFullScreen(const QString& screen);
    void reactivatePrevious();

    void editorClosed(EditorWindowController& closing);
    void updateActivationPolicy();
    /// Shows a window, raises it and gives it the focus, as for a person who has asked for it now.
    void bringToFront(QWidget& window);
    void openImage();
    void revealFolder();
    void openPermission();
    void openWebsite();
    void terminate();
    void showAbout();
    void showPreferences();
    void makePreferences();

    Settings& settings;
    HotKeyCenter& hotKeys;
    std::unique_ptr<Workspace> workspace;
    Delivery delivery;
    std::unique_ptr<StatusItem> statusItem;
    std::unique_ptr<CaptureOverlayController> overlay;
    QPointer<ThumbnailController> thumbnail; ///< on screen; it deletes itself when it has gone
    QPointer<CaptureJob> selecting;          ///< for somebody else; until it has its answer
    bool isFreezing = false;                 ///< an overlay is on its way: the screens are not here yet
    std::optional<WindowHandle> previousApp;
    QSet<CaptureAction> failed;
    std::vector<std::unique_ptr<EditorWindowController>> openEditors;
    ActivationPolicy policy = ActivationPolicy::accessory;
    QPointer<QFileDialog> openPanel;
    Worker fileReading; ///< one at a time
    QPointer<About> about;
    std::unique_ptr<LoginItem> loginItem;
    std::unique_ptr<PreferencesWindow> preferences; ///< none before it was first asked for
    std::unique_ptr<SettingsFileActions> settingsFile;
    QTimer quiet; ///< ends when nothing was captured or edited for a while
};

} // namespace pintalux
