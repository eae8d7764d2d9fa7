// SPDX-License-Identifier: MIT

// Ends that come from outside while work is under way.

#include "Desktop.h"

using namespace pintalux::test;

TEST(End, AReadingThatCannotBeStoppedUsesNothingThatHasGone)
{
    QProcess program;
    program.setProcessEnvironment(desktop().environment());
    program.start(QStringLiteral(PINTALUX_ENDING), {u"reading"_s});
    ASSERT_TRUE(program.waitForFinished(20000));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_EQ(program.readAllStandardOutput(), "ended\n");
}

// A logout takes the display first.
TEST(End, WhatIsBeingSavedIsFinishedWithoutADisplay)
{
    DisplaySession other;
    const QTemporaryDir folder;
    const auto path = folder.filePath(u"a.png"_s);
    QProcess program;
    program.setProcessEnvironment(other.environment());
    program.start(QStringLiteral(PINTALUX_ENDING), {u"saving"_s, path});
    ASSERT_TRUE(waitUntil([&] { return program.bytesAvailable() > 0; }, 10000));
    letPass(300); // the message is on the screen
    other.end();
    ASSERT_TRUE(program.waitForFinished(20000));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 1);
    EXPECT_EQ(QImage(path).size(), QSize(100, 100));
}
