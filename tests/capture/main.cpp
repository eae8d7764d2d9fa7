// SPDX-License-Identifier: MIT

// Runs the folder's tests on two screens in memory: LEFT at 1×, RIGHT at 2× and a little higher.

#include "OwnHome.h"
#include "platform/image/DecoderProcess.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    if (const auto decoded = pintalux::DecoderProcess::serve(argc, argv))
        return *decoded;
    const pintalux::test::OwnHome home;
    pintalux::test::OwnHome::enter(home.environment());
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" TEST_DATA "/screens.json");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
