// SPDX-License-Identifier: MIT

// Runs the tests that it is told to as a program of a desktop of its own: a real display server and window
// manager. CTest starts it once for each test, so that they share nothing and run beside each other.

#include "Desktop.h"
#include "Verdict.h"
#include "platform/backend/DisplaySystem.h"
#include "platform/image/DecoderProcess.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>

namespace {

pintalux::test::DisplaySession* currentSession = nullptr;

} // namespace

pintalux::test::DisplaySession& pintalux::test::desktop() { return *currentSession; }

int main(int argc, char** argv)
try {
    if (const auto decoded = pintalux::DecoderProcess::serve(argc, argv))
        return *decoded;
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    pintalux::test::DisplaySession session;
    session.enter();
    currentSession = &session;
    int status = EXIT_FAILURE;
    {
        // Leaves before its display server does.
        QApplication application(argc, argv);
        QApplication::setQuitOnLastWindowClosed(false);
        pintalux::WindowSystem::use(pintalux::DisplaySystem::makeWindowSystem());
        pintalux::ScreenCapture::setSource(pintalux::DisplaySystem::makeScreenSource());
        status = pintalux::test::runTests();
    }
    currentSession = nullptr;
    return status;
} catch (const std::runtime_error& noDesktop) {
    std::fprintf(stderr, "%s\n", noDesktop.what());
    return EXIT_FAILURE;
}
