// SPDX-License-Identifier: MIT

// Runs a folder's tests without any display: the toolkit draws into memory.

#include "OwnHome.h"
#include "Stage.h"
#include "Verdict.h"
#include "platform/image/DecoderProcess.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    if (const auto decoded = pintalux::DecoderProcess::serve(argc, argv))
        return *decoded;
    const pintalux::test::OwnHome home;
    pintalux::test::OwnHome::enter(home.environment());
    qputenv("QT_QPA_PLATFORM", OFFSCREEN_PLATFORM);
    stage::enterOwnWorld();
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    return pintalux::test::runTests();
}
