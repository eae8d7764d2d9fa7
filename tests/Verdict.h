// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace pintalux::test {

/// Ends the program where CTest would take a test for passed over that is not: it believes the word "skipped"
/// in what a test prints, whatever its status, and a suite whose set-up fails says that of each of its tests.
/// In continuous integration nothing is passed over.
class NothingUnseen : public testing::EmptyTestEventListener {
public:
    // These come before what the tests' own printer does at the same moment.
    void OnTestEnd(const testing::TestInfo& test) override
    {
        if (test.result()->Skipped() && std::getenv("CI") != nullptr)
            end("it was passed over");
    }
    void OnTestSuiteEnd(const testing::TestSuite& suite) override
    {
        if (suite.ad_hoc_test_result().Failed())
            end("what its tests need could not be set up");
    }

private:
    [[noreturn]] static void end(const char* reason)
    {
        std::fprintf(stderr, "%s\n", reason);
        std::abort();
    }
};

inline int runTests()
{
    testing::UnitTest::GetInstance()->listeners().Append(new NothingUnseen); // takes it over
    return RUN_ALL_TESTS();
}

} // namespace pintalux::test
