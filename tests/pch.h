// SPDX-License-Identifier: MIT

// Precompiled for every test program, and all that a test file need not include: the toolkit, the test
// framework and the containers and algorithms of the standard library.
#pragma once

#include <QtWidgets>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <memory>
#include <numeric>
#include <optional>
#include <random>
#include <stdexcept>
#include <vector>

namespace pintalux {
}
using namespace pintalux;           // NOLINT(google-global-names-in-headers): nothing but test files has it
using namespace Qt::StringLiterals; // NOLINT(google-global-names-in-headers)
