// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/WindowSystem.h"
#include "platform/x11/windowing/XSettings.h"

#include <QAbstractNativeEventFilter>

namespace pintalux {

/// Our own windows among those of an X server, over the toolkit's own connection, whose events tell what
/// changes.
class X11WindowSystem : public WindowSystem, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    X11WindowSystem();
    ~X11WindowSystem() override;

    bool hasCompositor() const override { return compositor; }
    QRect visibleFrame(const QScreen& screen) const override;
    bool hasTrayPanel() const override;
    QString themeName() const override { return theme.name(); }

    void coverScreen(QWidget& window, QScreen& screen, const QRect& frame) const override;
    void describe(QWidget& window, WindowRole role, const QRect& sheet) const override;
    void settle(QWidget& window, WindowRole role) const override;
    void setInTaskBar(QWidget& window, bool listed) const override;
    std::unique_ptr<DirectSurface> makeDirectSurface(QWidget& window, QSize nativeSize) const override;

    void takeKeyboard(QWidget& window) const override;
    std::unique_ptr<InputHold> holdInput(QWidget& window, std::function<void()> refused) const override;
    quint64 keyboardOwner() const override;
    void returnKeyboard(quint64 owner) const override;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

    x11::ThemeNameWatch theme;
    bool compositor = false;
    xcb_atom_t compositorSelection = XCB_ATOM_NONE; ///< which the compositor owns
    uint8_t selectionEvents = 0; ///< number of the selections' events; 0 where nobody tells
};

} // namespace pintalux
