// SPDX-License-Identifier: MIT
#pragma once

#include "platform/base/KeyModifiers.h"

#include <QtGlobal>

#include <functional>
#include <memory>

namespace pintalux {

/// A physical key and what is held with it.
struct HotKey {
    quint32 keyCode = 0; ///< of the key's place on the keyboard, as `QKeyEvent::nativeScanCode` numbers it
    KeyModifiers modifiers;

    bool operator==(const HotKey&) const = default;
};

/// Keys that reach the program whichever other one has the focus: one back end per display system, one in
/// memory for tests. For the main thread only.
class HotKeyBackend {
public:
    virtual ~HotKeyBackend() = default;

    /// False where the desktop has no way to give a program its hot keys; `grab` then always fails.
    virtual bool isSupported() const = 0;
    /// False when another program has the key already, or has taken it with one of the locks on.
    virtual bool grab(const HotKey& key) = 0;
    virtual void ungrabAll() = 0;

    /// Called for each press of a grabbed key, once however long it is held, whatever locks are on.
    std::function<void(const HotKey&)> onPress;
    /// Called when a grabbed key went to another program, after the keyboard changed.
    std::function<void(const HotKey&)> onLost;
};

} // namespace pintalux
