// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/HotKeyBackend.h"

#include <QHash>
#include <QList>
#include <QObject>

#include <functional>
#include <memory>

namespace pintalux {

/// Runs an action when its global hot key is pressed, whichever program has the focus.
///
/// For the main thread only. Hot keys stay until `unregisterAll`.
class HotKeyCenter {
public:
    /// The instance on the hot keys of the desktop.
    static HotKeyCenter& shared();

    explicit HotKeyCenter(std::unique_ptr<HotKeyBackend> backend);

    /// False where the desktop gives programs no hot keys at all.
    bool isSupported() const { return backend->isSupported(); }

    /// False when another program has the key already, or another id here; then nothing changes. An id that
    /// is registered already gets the new action, for this key and those that it had. The action runs on the
    /// main thread, from the event loop.
    bool registerHotKey(
        quint32 id, quint32 keyCode, KeyModifiers modifiers, const std::function<void()>& action);
    void unregisterAll();

    /// Called with the id of a key that went to another program after it was registered.
    std::function<void(quint32 id)> onLost;

private:
    struct Ref {
        HotKey key;
        quint32 id;
    };

    const Ref* refOf(const HotKey& key) const;
    void pressed(const HotKey& key);
    void lost(const HotKey& key);

    std::unique_ptr<HotKeyBackend> backend;
    QList<Ref> refs;
    QHash<quint32, std::function<void()>> actions;
    QObject queue; ///< presses that still wait go with it
};

} // namespace pintalux
