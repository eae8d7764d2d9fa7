// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"

#include "app/HotKeyCenter.h"
#include "app/Presenters.h"
#include "app/StatusItem.h"
#include "app/commandline/CommandLine.h"
#include "app/floating/Thumbnail.h"
#include "app/messages/HUD.h"
#include "capture/ScreenCapture.h"
#include "editor/window/EditorWindowController.h"
#include "platform/base/Author.h"
#include "platform/base/Memory.h"
#include "platform/base/Trace.h"
#include "platform/desktop/KeyLabel.h"
#include "platform/session/LoginItem.h"
#include "settings/Settings.h"
#include "settings/preferences/PreferencesWindow.h"
#include "settings/preferences/SettingsFileActions.h"

#include <QApplication>
#include <QDir>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

AppDelegate* running = nullptr;

/// How long a menu of ours may take to leave the screen before the screens are frozen.
constexpr int menuCloseMilliseconds = 180;

/// After so long without a capture or an editor the allocator gives back what it kept of them.
constexpr int quietMilliseconds = 30'000;

} // namespace

AppDelegate* AppDelegate::shared() { return running; }

AppDelegate::AppDelegate(
    Settings& appSettings, HotKeyCenter& globalHotKeys, std::unique_ptr<Workspace> desktop)
    : settings(appSettings)
    , hotKeys(globalHotKeys)
    , workspace(std::move(desktop))
    , delivery(appSettings, routes())
{
    running = this;
    Presenters::install();
    connect(&settings, &Settings::changed, this, [this](Setting setting) {
        if (setting == Setting::shortcutPreset)
            registerShortcuts();
    });
    connect(&settings, &Settings::writeFailed, this, [](const QString& reason) {
        HUD::show(u"No se pudo guardar la configuración: "_s + reason, u"xmark.octagon"_s);
    });
    hotKeys.onLost = [this](quint32 id) {
        for (const auto action : allCases<CaptureAction>())
            if (hotKeyID(action) == id)
                failed.insert(action);
    };
    quiet.setSingleShot(true);
    quiet.setInterval(quietMilliseconds);
    connect(&quiet, &QTimer::timeout, this, [] { returnFreeMemory(); });
}

AppDelegate::~AppDelegate()
{
    hotKeys.onLost = nullptr;
    hotKeys.unregisterAll();
    running = nullptr;
}

void AppDelegate::finishLaunching(const CommandLine& commandLine)
{
    const auto menuState = [this] {
        return StatusMenuState{settings.shortcutPreset(), failed, ScreenCapture::hasPermission()};
    };
    const auto keyText = [](const QString& combination) { return KeyLabel::text(combination); };
    statusItem = std::make_unique<StatusItem>(menuState, keyText);
    connect(statusItem.get(), &StatusItem::actionChosen, this, &AppDelegate::runFromMenu);
    connect(statusItem.get(), &StatusItem::trayMissing, this, [] {
        HUD::show(
            u"Este escritorio no tiene bandeja: usa los atajos o abre Pintalux otra vez"_s, u"sparkles"_s);
    });
    statusItem->show();
    registerShortcuts();

    for (const auto& path : commandLine.openFiles)
        openImageFile(path);
    if (commandLine.capture)
        perform(*commandLine.capture, commandLine.screen);
    if (!settings.hasLaunchedBefore()) {
        if (!statusItem->isTrayMissing()) // of which there is a message already
            HUD::show(u"Pintalux está en la barra de menús"_s, u"sparkles"_s);
        settings.setHasLaunchedBefore(true); // a message that this fails is the more important one
    }
    Trace::begin(u"en marcha");
}

void AppDelegate::registerShortcuts()
{
    hotKeys.unregisterAll();
    failed.clear();
    const auto modifiers = enumRow(settings.shortcutPreset()).modifiers;
    for (const auto action : allCases<CaptureAction>()) {
        const auto pressed = [guard = QPointer(this), action] {
            Trace::begin(u"atajo");
            if (guard)
                guard->perform(action);
        };
        if (!hotKeys.registerHotKey(hotKeyID(action), enumRow(action).keyCode, modifiers, pressed))
            failed.insert(action);
    }
}

void AppDelegate::reopen() { statusItem->performClick(); }

void AppDelegate::menuCapture(CaptureAction action)
{
    QTimer::singleShot(menuCloseMilliseconds, this, [this, action] { perform(action); });
}

void AppDelegate::run(Command command)
{
    struct Deed {
        Command command;
        void (AppDelegate::*run)();
    };
    static constexpr std::array<Deed, 7> deeds{{
        {Command::showAbout, &AppDelegate::showAbout},
        {Command::showPreferences, &AppDelegate::showPreferences},
        {Command::openImage, &AppDelegate::openImage},
        {Command::revealFolder, &AppDelegate::revealFolder},
        {Command::openPermission, &AppDelegate::openPermission},
        {Command::openWebsite, &AppDelegate::openWebsite},
        {Command::terminate, &AppDelegate::terminate},
    }};
    static_assert(
        covers(CommandScope::program, deeds), "a command of the program's that nothing carries out");
    const auto deed = std::ranges::find(deeds, command, &Deed::command);
    Q_ASSERT_X(deed != deeds.end(), "AppDelegate::run", "an editor's command");
    if (deed != deeds.end())
        (this->*deed->run)();
}

void AppDelegate::runFromMenu(const ProgramAction& action)
{
    if (const auto* capture = std::get_if<CaptureAction>(&action))
        menuCapture(*capture);
    else
        run(std::get<Command>(action));
}

void AppDelegate::runNamed(const QString& actionName, const QString& screen)
{
    Trace::begin(u"orden");
    const auto action = programActionNamed(actionName);
    if (!action)
        return; // refused on the bus already
    if (const auto* capture = std::get_if<CaptureAction>(&*action))
        perform(*capture, screen);
    else
        run(std::get<Command>(*action));
}

void AppDelegate::openPermission() { ScreenCapture::requestPermissionInteractive(); }

void AppDelegate::openWebsite() { workspace->openUrl(QUrl(Author::url.toString())); }

void AppDelegate::terminate() { QApplication::quit(); }

void AppDelegate::revealFolder()
{
    const auto& folder = settings.saveFolder();
    QDir().mkpath(folder);
    workspace->openFolder(folder);
}

} // namespace pintalux
