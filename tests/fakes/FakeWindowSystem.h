// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/WindowSystem.h"

#include <QHash>

namespace pintalux {

/// A desktop in memory for tests whose compositor comes and goes as told. In use while it lives.
class FakeWindowSystem {
public:
    FakeWindowSystem()
        : system(new Answers)
    {
        WindowSystem::use(std::unique_ptr<WindowSystem>(system));
    }
    ~FakeWindowSystem() { WindowSystem::use(nullptr); }
    FakeWindowSystem(const FakeWindowSystem&) = delete;
    FakeWindowSystem& operator=(const FakeWindowSystem&) = delete;

    void setCompositor(bool present)
    {
        system->compositor = present;
        Q_EMIT system->compositorChanged();
    }
    /// Whether task bars list the window; none when nobody has said so.
    std::optional<bool> isInTaskBar(const QWidget& window) const
    {
        const auto found = system->listed.constFind(&window);
        return found == system->listed.cend() ? std::nullopt : std::optional(*found);
    }

private:
    struct Answers : WindowSystem {
        bool hasCompositor() const override { return compositor; }
        void setInTaskBar(QWidget& window, bool isListed) const override { listed[&window] = isListed; }

        bool compositor = true;
        mutable QHash<const QWidget*, bool> listed;
    };

    Answers* system;
};

} // namespace pintalux
