// SPDX-License-Identifier: MIT
#include "app/HotKeyCenter.h"

#include "platform/backend/DisplaySystem.h"

#include <QMetaObject>

#include <algorithm>

namespace pintalux {

HotKeyCenter& HotKeyCenter::shared()
{
    static HotKeyCenter center(DisplaySystem::makeHotKeyBackend());
    return center;
}

HotKeyCenter::HotKeyCenter(std::unique_ptr<HotKeyBackend> hotKeys)
    : backend(std::move(hotKeys))
{
    backend->onPress = [this](const HotKey& key) { pressed(key); };
    backend->onLost = [this](const HotKey& key) { lost(key); };
}

bool HotKeyCenter::registerHotKey(
    quint32 id, quint32 keyCode, KeyModifiers modifiers, const std::function<void()>& action)
{
    const HotKey key{keyCode, modifiers};
    const auto* ref = refOf(key);
    if (ref ? ref->id != id : !backend->grab(key))
        return false;
    if (!ref)
        refs.append({key, id});
    actions.insert(id, action);
    return true;
}

void HotKeyCenter::unregisterAll()
{
    backend->ungrabAll();
    refs.clear();
    actions.clear();
}

const HotKeyCenter::Ref* HotKeyCenter::refOf(const HotKey& key) const
{
    const auto found = std::ranges::find(refs, key, &Ref::key);
    return found == refs.end() ? nullptr : &*found;
}

void HotKeyCenter::pressed(const HotKey& key)
{
    const auto* ref = refOf(key);
    if (!ref)
        return;
    // The action may have been replaced or dropped by the time it is its turn. It is copied, for it may
    // register anew while it runs.
    const auto run = [this, id = ref->id] {
        if (const auto action = actions.value(id))
            action();
    };
    QMetaObject::invokeMethod(&queue, run, Qt::QueuedConnection);
}

void HotKeyCenter::lost(const HotKey& key)
{
    const auto* ref = refOf(key);
    if (!ref)
        return;
    const auto id = ref->id;
    refs.removeIf([&](const Ref& each) { return each.key == key; });
    if (onLost)
        onLost(id);
}

} // namespace pintalux
