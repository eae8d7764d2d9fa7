// SPDX-License-Identifier: MIT
#include "platform/wayland/capture/WaylandScreenSource.h"

#include "platform/desktop/ToolkitScreens.h"
#include "platform/wayland/ToolkitObjects.h"

#include <QCoreApplication>
#include <QCursor>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace pintalux {

struct WaylandScreenSource::Session {
    wayland::Connection connection;
    wayland::Outputs outputs = wayland::readOutputs(connection);
};

namespace {

ScreenInfo infoOf(const wayland::Output& output, const QList<ToolkitScreen>& screens)
{
    ScreenInfo info;
    info.name = output.name;
    const auto match = std::ranges::find(screens, output.name, &ToolkitScreen::name);
    info.attached = match != screens.end();
    info.frame = info.attached ? match->frame : QRectF(QPointF(), QSizeF(output.nativeSize()));
    info.nativeRect = {info.frame.topLeft().toPoint(), output.nativeSize()};
    info.pixelScale = info.nativeRect.width() / info.frame.width();
    return info;
}

} // namespace

WaylandScreenSource::WaylandScreenSource(TakePicture way)
    : takePicture(std::move(way))
{
}

WaylandScreenSource::~WaylandScreenSource() = default;

WaylandScreenSource::Session& WaylandScreenSource::connect()
{
    session = std::make_unique<Session>();
    return *session;
}

QPointF WaylandScreenSource::pointerLocation() const
{
    const auto pointer = QCursor::pos();
    const auto* screen = screenUnderPointer();
    return screen && !screen->geometry().contains(pointer) ? screen->geometry().topLeft() : pointer;
}

qint64 WaylandScreenSource::ownProcessId() const { return QCoreApplication::applicationPid(); }

ShareableContent WaylandScreenSource::shareableContent(const QList<ToolkitScreen>& screens)
{
    ShareableContent content{.screens = {}, .windows = {}, .listsWindows = false};
    for (const auto& output : connect().outputs)
        if (!output->nativeSize().isEmpty())
            content.screens.append(infoOf(*output, screens));
    // In the toolkit's order, which begins with the main one.
    std::ranges::stable_sort(content.screens, {}, [&](const ScreenInfo& screen) {
        return screen.attached ? std::ranges::find(screens, screen.name, &ToolkitScreen::name)
                               : screens.end();
    });
    return content;
}

std::unique_ptr<ScreenSource::OwnWindowsHidden> WaylandScreenSource::hideOwnWindows()
{
    wayland::settleToolkit();
    return nullptr;
}

Screenshot WaylandScreenSource::screenshot(const ScreenInfo& screen)
{
    const auto& [connection, outputs] = session ? *session : connect();
    const auto output
        = std::ranges::find_if(outputs, [&](const auto& each) { return each->name == screen.name; });
    if (output == outputs.end())
        throw wayland::temporaryFailure();
    try {
        const auto image = takePicture(connection, **output);
        return {image, image.width() / screen.frame.width()};
    } catch (const Error&) {
        session.reset(); // the next try begins anew
        throw;
    }
}

Screenshot WaylandScreenSource::screenshot(const WindowInfo&)
{
    throw Error(errorDomain, 5, u"Esta sesión no permite capturar ventanas sueltas."_s);
}

} // namespace pintalux
