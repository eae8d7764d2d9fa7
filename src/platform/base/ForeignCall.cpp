// SPDX-License-Identifier: MIT
#include "platform/base/ForeignCall.h"

#include <unistd.h>

#include <mutex>

namespace pintalux {

namespace {

struct State {
    std::mutex lock;
    bool isWithin = false;
    bool isCutOff = false;
};

State& state()
{
    static State& only = *new State;
    return only;
}

} // namespace

ForeignCall::ForeignCall()
{
    const std::scoped_lock guard(state().lock);
    state().isWithin = true;
}

ForeignCall::~ForeignCall()
{
    {
        const std::scoped_lock guard(state().lock);
        state().isWithin = false;
        if (!state().isCutOff)
            return;
    }
    for (;;)
        ::pause();
}

bool ForeignCall::cutOff()
{
    const std::scoped_lock guard(state().lock);
    state().isCutOff = state().isWithin;
    return state().isCutOff;
}

} // namespace pintalux
