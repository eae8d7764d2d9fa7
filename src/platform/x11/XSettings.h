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
    /// `changed` is called when the daemon publishes anew.
    explicit ThemeNameWatch(std::function<void()> changed);
    ~ThemeNameWatch() override;

    /// Empty without a daemon, and on other display systems.
    QString name() const;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

    std::function<void()> changed;
    xcb_window_t daemon = XCB_WINDOW_NONE;
    xcb_atom_t settings = XCB_ATOM_NONE;
};

} // namespace pintalux::x11
