// SPDX-License-Identifier: MIT
#pragma once

#include "platform/wayland/Handle.h"

#include <QMargins>
#include <QObject>
#include <QSize>

#include <cstdint>

class QScreen;
class QWidget;
struct wl_surface;
struct zwlr_layer_surface_v1;

namespace pintalux::wayland {

/// Destroys the protocol's object; null is none.
void endLayerSurface(zwlr_layer_surface_v1* surface);

/// A window of the toolkit as a part of the desktop instead of an application's window: where it is put and
/// what it covers is ours to say, and the compositor draws no frame around it.
///
/// The toolkit makes windows without a role of its own where `Qt::BypassWindowManagerHint` is set and
/// `leaveRolesToUs` was called. The object belongs to the window; it ends with its being shown.
class LayerSurface : public QObject {
    Q_OBJECT

public:
    /// Where the surface is on its screen.
    struct Place {
        enum class Layer : uint8_t { top, overlay }; ///< below full-screen windows, above everything

        Layer layer = Layer::overlay;
        bool coversScreen = false; ///< all of it, panels too; else the top left corner at `margins`
        QSize size = {};           ///< points, unless it covers the screen
        QMargins margins = {};
        bool takesKeyboard = false; ///< from the moment it is shown, from whoever has it
    };

    /// Before the application object is made.
    static void leaveRolesToUs();
    /// Makes a window that was not shown yet such a surface. Null, and nothing happens, where the compositor
    /// has none for us.
    static LayerSurface* give(QWidget& window, QScreen& screen, const Place& place);
    /// The window's; null when it is none.
    static LayerSurface* of(const QWidget& window);

    /// Another place on its screen.
    void place(const Place& place);

    /// Null before the compositor has said how large it is, and once the window is hidden: nothing may be
    /// shown in it then.
    wl_surface* surface() const { return isConfigured ? toolkitSurface : nullptr; }

Q_SIGNALS:
    /// From now on `surface` is there, or the window has another size.
    void configured();

private:
    LayerSurface(QWidget& window, wl_surface* surface);

    void ask(QScreen& screen, const Place& place);
    void set(const Place& place);
    void configure(uint32_t serial, QSize size);
    void end();

    QWidget& window;
    wl_surface* toolkitSurface;
    Handle<zwlr_layer_surface_v1, endLayerSurface> role;
    bool isConfigured = false;
};

} // namespace pintalux::wayland
