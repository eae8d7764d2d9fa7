// SPDX-License-Identifier: MIT

// Runs the folder's tests as a program of a desktop of its own: a real display server and window manager.

#include "Desktop.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace {

pintalux::test::DisplaySession* currentSession = nullptr;

} // namespace

pintalux::test::DisplaySession& pintalux::test::desktop() { return *currentSession; }

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    pintalux::test::DisplaySession session;
    session.enter();
    currentSession = &session;
    int status = EXIT_FAILURE;
    {
        // Leaves before its display server does.
        QApplication application(argc, argv);
        QApplication::setQuitOnLastWindowClosed(false);
        status = RUN_ALL_TESTS();
    }
    currentSession = nullptr;
    return status;
}
