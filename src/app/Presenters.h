// SPDX-License-Identifier: MIT
#pragma once

namespace pintalux {

/// Shows on the screen what capturing and reading text have to tell a person.
void presentServices();

} // namespace pintalux
