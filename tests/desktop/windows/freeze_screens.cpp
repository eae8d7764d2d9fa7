// SPDX-License-Identifier: MIT

// Freezes every screen into FOLDER/NAME.png and prints a line for each: name, frame in points, scale,
// and the frame that panels leave.
//   pintalux_freeze_screens FOLDER

#include "capture/ScreenCapture.h"
#include "platform/backend/DisplaySystem.h"
#include "platform/desktop/ToolkitScreens.h"

#include <QGuiApplication>
#include <QTextStream>

#include <cstdio>

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    if (argc != 2)
        return 2;
    pintalux::WindowSystem::use(pintalux::DisplaySystem::makeWindowSystem());
    pintalux::ScreenCapture::setSource(pintalux::DisplaySystem::makeScreenSource());
    QTextStream out(stdout);
    try {
        const auto frozen = pintalux::ScreenCapture::freezeAllDisplays().takeResult();
        for (const auto& [screen, image, scale] : frozen.displays) {
            image.save(QString::fromLocal8Bit(argv[1]) + u'/' + screen.name + QStringLiteral(".png"));
            const auto& frame = screen.frame;
            out << screen.name << ' ' << frame.x() << ' ' << frame.y() << ' ' << frame.width() << ' '
                << frame.height() << ' ' << scale;
            const auto visible
                = pintalux::WindowSystem::current().visibleFrame(*pintalux::screenNamed(screen.name));
            out << " visible " << visible.x() << ' ' << visible.y() << ' ' << visible.width() << ' '
                << visible.height() << '\n';
        }
        for (const auto& candidate : frozen.windows)
            out << "window " << candidate.frame.x() << ' ' << candidate.frame.y() << ' '
                << candidate.frame.width() << ' ' << candidate.frame.height() << ' '
                << candidate.window.pixelScale << '\n';
    } catch (const pintalux::Error& error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.localizedDescription));
        return 1;
    }
    return 0;
}
