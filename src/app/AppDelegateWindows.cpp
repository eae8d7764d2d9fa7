// SPDX-License-Identifier: MIT

// The program's windows: editors, the about panel, the dialog that opens pictures.

#include "app/About.h"
#include "app/AppDelegate.h"
#include "app/StatusMenu.h"
#include "app/commandline/CommandLine.h"
#include "app/icon/AppIcon.h"
#include "app/messages/HUD.h"
#include "capture/ScreenCapture.h"
#include "editor/window/EditorWindowController.h"
#include "editor/window/EditorWindowLayout.h"
#include "editor/window/OpenPanel.h"
#include "platform/base/Trace.h"
#include "platform/base/Worker.h"
#include "platform/desktop/ToolkitScreens.h"
#include "platform/desktop/WindowSystem.h"
#include "platform/image/ImageFile.h"
#include "platform/session/LoginItem.h"
#include "settings/Settings.h"
#include "settings/preferences/PreferencesView.h"
#include "settings/preferences/PreferencesWindow.h"
#include "settings/preferences/SettingsFileActions.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QScreen>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

/// Calls `handler` once, when the window has first been painted on the screen: only then does the window
/// manager know it.
class FirstShown : public QObject {
public:
    FirstShown(QWidget& window, std::function<void()> then)
        : QObject(&window)
        , handler(std::move(then))
    {
        window.winId(); // there is no window handle before
        window.windowHandle()->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Expose && static_cast<QWindow*>(watched)->isExposed() && handler)
            QMetaObject::invokeMethod(this, std::exchange(handler, nullptr), Qt::QueuedConnection);
        return false;
    }

private:
    std::function<void()> handler;
};

} // namespace

void AppDelegate::bringToFront(QWidget& window)
{
    if (window.isMinimized())
        window.showNormal();
    const auto activate = [this, &window] {
        window.raise();
        // Not the toolkit's way: it asks with the time of the last key or click that it has seen itself,
        // which an attentive window manager refuses after a global hot key.
        workspace->activate({quint64(window.winId()), QCoreApplication::applicationPid()});
    };
    if (window.isVisible())
        return activate();
    const auto painted = [activate] {
        Trace::mark(u"ventana pintada");
        activate();
    };
    new FirstShown(window, painted); // the window's
    window.show();
}

void AppDelegate::openEditor(const CaptureResult& shot)
{
    auto controller
        = std::make_unique<EditorWindowController>(shot, settings, [this](Command command) { run(command); });
    auto& window = controller->window();
    QList<QPoint> taken;
    for (const auto& open : openEditors)
        taken.append(open->window().pos());
    window.move(EditorWindowLayout::windowPosition(EditorWindowLayout::framed(window.size()),
        WindowSystem::current().visibleFrame(*window.screen()), taken));
    controller->onClose = [guard = QPointer(this), closing = QPointer(controller.get())] {
        if (guard && closing)
            guard->editorClosed(*closing);
    };
    openEditors.push_back(std::move(controller));
    updateActivationPolicy();
    bringToFront(window);
    Trace::mark(u"editor abierto");
}

void AppDelegate::editorClosed(EditorWindowController& closing)
{
    const auto found
        = std::ranges::find(openEditors, &closing, [](const auto& controller) { return controller.get(); });
    if (found == openEditors.end())
        return;
    found->release()->deleteLater(); // its window is within the event that closes it
    openEditors.erase(found);
    quiet.start();
    updateActivationPolicy();
}

void AppDelegate::updateActivationPolicy()
{
    const bool hasWindows = !openEditors.empty() || (preferences && preferences->isVisible());
    policy = hasWindows ? ActivationPolicy::regular : ActivationPolicy::accessory;
    for (QWidget* dialog : {static_cast<QWidget*>(about), static_cast<QWidget*>(openPanel)})
        if (dialog)
            WindowSystem::current().setInTaskBar(*dialog, policy == ActivationPolicy::regular);
}

void AppDelegate::openImage()
{
    if (openPanel)
        return bringToFront(*openPanel);
    openPanel = showOpenPanel({.message = u"Abrir imagen"_s, .isListed = policy == ActivationPolicy::regular},
        nullptr, [this](const QStringList& paths) {
            for (const auto& path : paths)
                openImageFile(path);
        });
    bringToFront(*openPanel);
}

void AppDelegate::openImageFile(const QString& path)
{
    Trace::begin(u"abrir");
    const auto reading = runOn(fileReading, [path] { return readImageFile(path); });
    whenFinished(reading, this, [this, path](QFuture<ImageFile> read) {
        try {
            const auto file = read.takeResult();
            Trace::mark(u"imagen leída");
            openEditor({file.image, file.pixelScale(), QFileInfo(path).completeBaseName()});
        } catch (const Error& error) {
            // For whoever started it from a shell; the message on screen is short.
            std::fprintf(stderr, "pintalux: %s\n", error.localizedDescription.toUtf8().constData());
            HUD::show(u"No se pudo abrir la imagen"_s, u"xmark.octagon"_s);
        }
    });
}

void AppDelegate::showPreferences()
{
    if (!preferences)
        makePreferences();
    preferences->place();
    bringToFront(*preferences);
    updateActivationPolicy();
}

void AppDelegate::makePreferences()
{
    loginItem = LoginItem::create();
    preferences = std::make_unique<PreferencesWindow>(settings,
        PreferencesHost{
            .version = CommandLine::version(),
            .loginItem = loginItem.get(),
            .hasPermission = [] { return ScreenCapture::hasPermission(); },
            .requestPermission = [] { ScreenCapture::requestPermissionInteractive(); },
            .failedShortcuts = [this] { return failed; },
            .hasSavedCopy = [] { return Settings::hasSavedCopy(); },
            .saveCopy = [this] { settingsFile->saveCopy(); },
            .restoreSavedCopy = [this] { settingsFile->restoreSavedCopy(); },
            .exportSettings = [this] { settingsFile->exportSettings(); },
            .importSettings = [this] { settingsFile->importSettings(); },
            .resetSettings = [this] { settingsFile->reset(); },
        });
    preferences->setWindowIcon(AppIcon::windowIcon());
    settingsFile = std::make_unique<SettingsFileActions>(settings, preferences.get());
    connect(
        settingsFile.get(), &SettingsFileActions::copySaved, this, [this] { preferences->view().refresh(); });
    connect(preferences.get(), &PreferencesWindow::closed, this, &AppDelegate::updateActivationPolicy);
}

void AppDelegate::showAbout()
{
    if (!about) {
        about = new About([this](const QUrl& url) { workspace->openUrl(url); });
        const auto visible = WindowSystem::current().visibleFrame(*screenUnderPointer());
        about->move(EditorWindowLayout::windowPosition(about->size(), visible, {}));
        updateActivationPolicy();
    }
    bringToFront(*about);
}

} // namespace pintalux
