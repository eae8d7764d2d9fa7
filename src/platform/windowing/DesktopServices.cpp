// SPDX-License-Identifier: MIT
#include "platform/desktop/HotKeyBackend.h"
#include "platform/desktop/SystemWorkspace.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11Workspace.h"

#include <QGuiApplication>

namespace pintalux {

namespace {

// Stands where a program cannot have hot keys of its own.
class NoHotKeys : public HotKeyBackend {
public:
    bool isSupported() const override { return false; }
    bool grab(const HotKey&) override { return false; }
    void ungrabAll() override { }
};

bool isX11() { return QGuiApplication::platformName() == u"xcb"; }

} // namespace

std::unique_ptr<HotKeyBackend> makeHotKeyBackend()
{
    if (isX11())
        return std::make_unique<X11HotKeys>();
    return std::make_unique<NoHotKeys>();
}

std::unique_ptr<Workspace> makeWorkspace()
{
    if (isX11())
        return std::make_unique<X11Workspace>();
    return std::make_unique<SystemWorkspace>();
}

} // namespace pintalux
