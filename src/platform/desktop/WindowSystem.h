// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QRect>
#include <QSize>
#include <QString>

#include <functional>
#include <memory>

class QMimeData;
class QScreen;
class QWidget;

namespace pintalux {

class DirectSurface;

/// What a floating window of ours is on the desktop.
enum class WindowRole {
    message, ///< above all others, full-screen ones too, on every desktop; never has the keyboard, lets
             ///< clicks through
    panel,   ///< the same, but takes clicks
    tip,     ///< as a message, about what is in one of our windows: tool tips, a popover that fades out
    pin,     ///< kept above ordinary windows, on every desktop, out of the task list; can have the keyboard
    popup,   ///< has the mouse and the keyboard until it closes: menus, popovers
};

/// Pointer and keyboard, held until its end.
class InputHold {
public:
    virtual ~InputHold() = default;
};

/// What the program's own windows ask of the desktop, and what the desktop can do for them: one back end per
/// display system. Main thread only.
///
/// This class itself is what the toolkit can do everywhere, which is enough in memory: everything is seen
/// through, nobody has panels, and nobody is told anything.
class WindowSystem : public QObject {
    Q_OBJECT

public:
    WindowSystem() = default;
    ~WindowSystem() override;

    /// The one in use.
    static WindowSystem& current();
    /// Puts the one of the display system that runs in place; it lasts as long as the application.
    static void use(std::unique_ptr<WindowSystem> system);

    /// True when translucent windows show what is below them. Without a compositor their clear parts are
    /// black, so they need a shape instead, and cannot fade.
    virtual bool hasCompositor() const { return true; }
    /// The part of a screen, in points of the desktop, that panels and docks leave free. May ask the display
    /// server: for when something is put on the screen, not for each repaint.
    virtual QRect visibleFrame(const QScreen& screen) const;
    /// True when a panel would give a window of ours a place for a status icon.
    virtual bool hasTrayPanel() const { return false; }
    /// The name of the widgets' theme that the desktop tells all programs; empty when it tells none.
    virtual QString themeName() const { return {}; }

    /// Makes a window, before it is first shown, what its role says.
    virtual void prepare(QWidget& window, WindowRole role) const;
    /// Makes a window, before it is first shown, cover `frame` (points of the desktop) on `screen`: above
    /// everything, on all desktops, without frame, shadow or the window manager's say.
    virtual void coverScreen(QWidget& window, QScreen& screen, const QRect& frame) const;
    /// Tells the desktop what of a floating window is `sheet` (points of the window) and what is its shadow:
    /// it casts none of its own, and clicks on that of panels and pins reach what lies below. Anew after each
    /// change of the size, and once a managed window is on the screen, for not every window manager looks at
    /// it before.
    virtual void describe(QWidget& window, WindowRole role, const QRect& sheet) const;
    /// Asks, once a managed window is on the screen, for what of its role the window manager grants only to
    /// windows in its care.
    virtual void settle(QWidget& window, WindowRole role) const;
    /// Lists a window in task bars and window switchers, or keeps it out of them; shown or not.
    virtual void setInTaskBar(QWidget& window, bool listed) const;
    /// A quicker or more exact way to paint a window that covers a screen of `nativeSize` pixels and has its
    /// native window already. Null where there is none (another display system, a server on another machine,
    /// an unusual colour format): the toolkit's own is as good there. It goes before the window does.
    virtual std::unique_ptr<DirectSurface> makeDirectSurface(QWidget& window, QSize nativeSize) const;

    /// Offers it to all programs on the clipboard until somebody copies something else, whether or not a
    /// window of ours has the keyboard. It may be read on another thread.
    virtual void setClipboard(std::unique_ptr<QMimeData> data) const;

    /// Gives the keyboard to a window that is shown, or as soon as it is.
    virtual void giveKeyboard(QWidget& window) const;
    /// Takes the keyboard back for a window that covers a screen and lost it to another one.
    virtual void takeKeyboard(QWidget& window) const { giveKeyboard(window); }
    /// Holds pointer and keyboard for the windows of ours that cover the screens, of which `window` is one
    /// that is shown, so that no panel and no menu that is open gets what is meant for them. Such a menu is
    /// closed. `refused` is called once, from the event loop, when whoever has them does not let go. Null
    /// where the display system does so by itself.
    virtual std::unique_ptr<InputHold> holdInput(QWidget& window, std::function<void()> refused) const;
    /// Whoever has the keyboard now, by a number of the display system; 0 when it does not say.
    ///
    /// A window that the window manager does not know takes the keyboard without being asked for it back: not
    /// every manager, and none where none runs, gives it to the former window by itself.
    virtual quint64 keyboardOwner() const { return 0; }
    /// Gives the keyboard back to a former owner; does nothing when that is gone.
    virtual void returnKeyboard(quint64 owner) const;

Q_SIGNALS:
    /// A compositor came or went: `hasCompositor` has another answer.
    void compositorChanged();
    /// Panels came, went or changed their size: `visibleFrame` may have another answer.
    void panelsChanged();
    void themeNameChanged();
};

} // namespace pintalux
