// SPDX-License-Identifier: MIT
#include "Desktop.h"

#include "platform/x11/capture/X11ScreenSource.h"

#include <stdexcept>

namespace pintalux::test {

namespace {

// The same colour, on a screen of 16 bits a pixel too.
bool isNearly(QColor one, QColor other)
{
    constexpr int step = 8;
    return std::abs(one.red() - other.red()) <= step && std::abs(one.green() - other.green()) <= step
        && std::abs(one.blue() - other.blue()) <= step;
}

} // namespace

DemoWindow::DemoWindow(const QString& title, const QString& geometry, const QString& color,
    DisplaySession& on, const QStringList& more)
    : session(on)
    , process(on.start(QStringLiteral(PINTALUX_DEMO_WINDOW),
          QStringList{u"--title"_s, title, u"--geometry"_s, geometry, u"--color"_s, color} + more))
{
    // Shown in front of all others, framed and painted, once its coloured header is on the screen: somewhere
    // below a title bar of any height.
    X11ScreenSource source(session.display());
    const bool isShown = waitUntil([&] {
        for (const auto& window : source.shareableContent({}).windows) {
            if (window.processId != process.processId() || !window.onScreen)
                continue;
            windowId = QString::number(window.id);
            ScreenInfo column;
            column.nativeRect = {window.frame.topLeft().toPoint() + QPoint(10, 0), QSize(1, 120)};
            const auto seen = source.screenshot(column).image;
            for (int y = 0; y < seen.height(); ++y)
                if (isNearly(seen.pixelColor(0, y), QColor(color)))
                    return true;
        }
        return false;
    });
    if (!isShown)
        throw std::runtime_error("the window " + title.toStdString() + " is not seen");
    letPass(100); // whatever the manager still draws
}

DemoWindow::~DemoWindow() { end(); }

void xdotool(const QString& commands, const DisplaySession& session)
{
    session.run(u"xdotool"_s, commands.split(u' '));
}

QString focusedWindow(const DisplaySession& session)
{
    return QString::fromLatin1(session.run(u"xdotool"_s, {u"getwindowfocus"_s})).trimmed();
}

QByteArray callProgram(const QString& method, const QStringList& arguments)
{
    return desktop().run(u"gdbus"_s,
        QStringList{u"call"_s, u"--session"_s, u"--dest"_s, u"io.github.pintalux.Pintalux"_s,
            u"--object-path"_s, u"/io/github/pintalux/Pintalux"_s, u"--method"_s,
            u"org.freedesktop.Application."_s + method}
            + arguments);
}

QImage pictureByOthers(const DisplaySession& session)
{
    return QImage::fromData(session.run(u"import"_s, {u"-window"_s, u"root"_s, u"bmp3:-"_s}))
        .convertToFormat(QImage::Format_RGB32);
}

std::optional<WindowCandidate> candidateOf(const FrozenScreens& frozen, qint64 processId)
{
    for (const auto& candidate : frozen.windows)
        if (candidate.window.processId == processId)
            return candidate;
    return std::nullopt;
}

} // namespace pintalux::test
