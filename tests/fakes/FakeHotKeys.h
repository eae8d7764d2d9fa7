// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/HotKeyBackend.h"

#include <QList>

namespace pintalux {

/// A keyboard in memory for tests, on which other programs may have taken keys already.
class FakeHotKeys : public HotKeyBackend {
public:
    QList<HotKey> taken;   ///< by other programs
    QList<HotKey> grabbed; ///< by this one, in order
    bool supported = true;

    /// A person presses the key. True when it was grabbed and its press was told.
    bool press(const HotKey& key) const;

    /// The keyboard changed and another program has the key since then.
    void lose(const HotKey& key);

    bool isSupported() const override { return supported; }
    bool grab(const HotKey& key) override;
    void ungrabAll() override { grabbed.clear(); }
};

} // namespace pintalux
