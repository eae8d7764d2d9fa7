// SPDX-License-Identifier: MIT
#include "fakes/FakeHotKeys.h"

namespace pintalux {

bool FakeHotKeys::press(const HotKey& key) const
{
    if (!grabbed.contains(key) || !onPress)
        return false;
    onPress(key);
    return true;
}

bool FakeHotKeys::grab(const HotKey& key)
{
    if (!supported || taken.contains(key))
        return false;
    grabbed.append(key);
    return true;
}

void FakeHotKeys::lose(const HotKey& key)
{
    taken.append(key);
    if (grabbed.removeOne(key) && onLost)
        onLost(key);
}

} // namespace pintalux
