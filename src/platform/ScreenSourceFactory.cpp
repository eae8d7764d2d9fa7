#include "platform/ScreenSource.h"
#include "platform/x11/X11ScreenSource.h"

#include <QGuiApplication>
#include <QScreen>

namespace pintalux {

namespace {

// Stands where no back end does: everything that is asked of it says why it cannot be done.
class NoScreenSource : public ScreenSource {
public:
    bool hasPermission() const override { return true; }
    bool requestPermission() override { return true; }
    QPointF pointerLocation() const override { return {}; }
    qint64 ownProcessId() const override { return QCoreApplication::applicationPid(); }

    ShareableContent shareableContent(const QList<ToolkitScreen>&) override { throw unsupported(); }
    std::unique_ptr<OwnWindowsHidden> hideOwnWindows() override { return nullptr; }
    Screenshot screenshot(const ScreenInfo&) override { throw unsupported(); }
    Screenshot screenshot(const WindowInfo&) override { throw unsupported(); }

private:
    static Error unsupported()
    {
        return {errorDomain, 5, u"Este escritorio no permite capturar la pantalla."_qs};
    }
};

} // namespace

QList<ToolkitScreen> toolkitScreens()
{
    QList<ToolkitScreen> result;
    for (const auto* screen : QGuiApplication::screens())
        result.append({screen->name(), QRectF(screen->geometry()), screen->devicePixelRatio()});
    return result;
}

std::unique_ptr<ScreenSource> makeScreenSource()
{
    if (QGuiApplication::platformName() == u"xcb")
        return std::make_unique<X11ScreenSource>();
    return std::make_unique<NoScreenSource>();
}

} // namespace pintalux
