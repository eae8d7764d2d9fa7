// SPDX-License-Identifier: MIT

// Writes the application's icon at one size, for what an installation needs beside the set of
// `--render-icon`:
//   pintalux_icon FILE PIXELS

#include "app/icon/AppIcon.h"
#include "platform/base/Error.h"
#include "render/export/Exporter.h"

#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv)
try {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const auto arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("pintalux_icon FILE PIXELS\n", stderr);
        return 2;
    }
    pintalux::Exporter::write(pintalux::AppIcon::render(arguments[2].toInt()), 1, arguments[1]);
    return EXIT_SUCCESS;
} catch (const pintalux::Error& error) {
    std::fprintf(stderr, "%s\n", qPrintable(error.localizedDescription));
    return EXIT_FAILURE;
}
