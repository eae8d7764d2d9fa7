// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QString>

#include <xcb/xcb.h>

#include <functional>
#include <optional>

namespace pintalux::x11 {

/// The value of a text setting in the property that a settings daemon publishes; none when the property lacks
/// it or is damaged.
std::optional<QString> textSetting(const QByteArray& published, const QByteArray& name);

/// The name of the widgets' theme that the desktop's settings daemon tells all programs (XSETTINGS).
class ThemeNameWatch : private QAbstractNativeEventFilter {
public:
    /// `changed` is called when the daemon publishes anew, and when one comes or goes.
    explicit ThemeNameWatch(std::function<void()> changed);
    ~ThemeNameWatch() override;

    /// Empty without a daemon, and on other display systems.
    QString name() const;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

    void findDaemon(xcb_connection_t* connection);
    void follow();

    std::function<void()> changed;
    xcb_window_t daemon = XCB_WINDOW_NONE;
    xcb_atom_t settings = XCB_ATOM_NONE;
    xcb_atom_t selection = XCB_ATOM_NONE; ///< which the daemon owns
    xcb_atom_t manager = XCB_ATOM_NONE;   ///< announces a new owner
};

} // namespace pintalux::x11
