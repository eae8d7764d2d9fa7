// SPDX-License-Identifier: MIT
#include "fakes/FakeScreenSource.h"

#include <QColorSpace>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

QImage picture(QSize size, int blue)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x)
            row[x] = FakeScreenSource::colorAt({x, y}, blue);
    }
    image.setColorSpace(QColorSpace::SRgb);
    return image;
}

class Hidden : public ScreenSource::OwnWindowsHidden {
public:
    explicit Hidden(QStringList& log)
        : log(log)
    {
        log.append(u"hide"_s);
    }
    ~Hidden() override { log.append(u"show"_s); }

private:
    QStringList& log;
};

} // namespace

FakeScreenSource::FakeScreenSource()
{
    content.screens = {
        {u"LEFT"_s, {0, 0, 400, 300}, {0, 0, 400, 300}, 1, true},
        {u"RIGHT"_s, {400, 0, 200, 150}, {400, 0, 400, 300}, 2, true},
    };
    content.windows = {
        {1, {20, 20, 200, 120}, 0, 11, u"Notas"_s, u"Lista de la compra"_s, true, 1},
        {2, {60, 40, 300, 200}, 0, 12, u"Navegador"_s, u"Página de inicio"_s, true, 1},
        {3, {410, 10, 120, 100}, 0, 11, u"Notas"_s, u""_s, true, 2},
    };
}

QRgb FakeScreenSource::colorAt(QPoint nativePixel, int blue)
{
    return qRgb(nativePixel.x() & 0xff, nativePixel.y() & 0xff, blue);
}

bool FakeScreenSource::requestPermission()
{
    ++permissionRequests;
    permission = permission || grantsWhenAsked;
    return permission;
}

ShareableContent FakeScreenSource::shareableContent(const QList<ToolkitScreen>&)
{
    log.append(u"content"_s);
    failAsScripted(listFailures);
    return content;
}

std::unique_ptr<ScreenSource::OwnWindowsHidden> FakeScreenSource::hideOwnWindows()
{
    return std::make_unique<Hidden>(log);
}

Screenshot FakeScreenSource::screenshot(const ScreenInfo& screen)
{
    log.append(u"screen "_s + screen.name);
    failAsScripted(failures);
    const auto index = std::ranges::find(content.screens, screen.name, &ScreenInfo::name);
    return {picture(screen.nativeRect.size(), int(index - content.screens.begin())), screen.pixelScale};
}

Screenshot FakeScreenSource::screenshot(const WindowInfo& window)
{
    log.append(u"window "_s + QString::number(window.id));
    failAsScripted(failures);
    const QSize size = (window.frame.size() * window.pixelScale).toSize();
    return {picture(size, 100 + int(window.id)), window.pixelScale};
}

void FakeScreenSource::failAsScripted(std::deque<Error>& script)
{
    if (script.empty())
        return;
    const Error failure = script.front();
    script.pop_front();
    throw failure;
}

} // namespace pintalux
