// SPDX-License-Identifier: MIT
#pragma once

namespace pintalux {

/// While it lives, its thread is within a library that cannot be interrupted and uses nothing of the toolkit:
/// the application may end meanwhile. After that the thread never comes back from it, for what it would use
/// then is gone.
///
/// At most one thread at a time is within one.
class ForeignCall {
public:
    ForeignCall();
    ~ForeignCall();
    ForeignCall(const ForeignCall&) = delete;
    ForeignCall& operator=(const ForeignCall&) = delete;

    /// From now on nobody comes back who is within one at this moment. False, and nothing happens, when
    /// nobody is.
    static bool cutOff();
};

} // namespace pintalux
