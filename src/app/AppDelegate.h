#pragma once

#include "app/Delivery.h"
#include "capture/CaptureAction.h"
#include "capture/CaptureOverlay.h"
#include "platform/Workspace.h"

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QStringList>
#include <QTimer>

#include <memory>
#include <optional>

namespace pintalux {

class HotKeyCenter;
class Settings;
class StatusItem;
struct CommandLine;

/// The running program: its status item and hot keys, and every capture from its start to its delivery.
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

    /// Starts a capture. Does nothing while one is going on or the permission is missing.
    void perform(CaptureAction action);
    /// The same from a menu, once the menu has left the screen.
    void menuCapture(CaptureAction action);
    /// What a person chose in a menu: a capture action's raw value or a menu's identifier.
    void runAction(const QString& actionId);
    /// The same as a command from another process, which has no menu to wait for.
    void runCommand(const QString& actionId);

    /// Opens the picture file in an editor; says so on screen when it cannot be read.
    void openImageFile(const QString& path);

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
    void captureFullScreen();
    void reactivatePrevious();

    void openEditor(const CaptureResult& shot, const QString& whatIsLeft);
    void openImage();
    void revealFolder();
    void showAbout();

    /// The end of what is said in place of a window that does not exist yet.
    static inline const QString notYet = QStringLiteral("aún no está disponible en esta versión");

    Settings& settings;
    HotKeyCenter& hotKeys;
    std::unique_ptr<Workspace> workspace;
    Delivery delivery;
    std::unique_ptr<StatusItem> statusItem;
    std::unique_ptr<CaptureOverlayController> overlay;
    bool isFreezing = false; ///< a capture has begun and its pixels are not here yet
    std::optional<WindowHandle> previousApp;
    QSet<CaptureAction> failed;
    QTimer quiet; ///< ends when nothing was captured for a while
};

} // namespace pintalux
