// SPDX-License-Identifier: MIT
#include "platform/base/Error.h"

#include <new>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace pintalux {

Error currentError()
{
    constexpr int noMemory = 3, noResources = 4;
    try {
        throw;
    } catch (const Error& error) {
        return error;
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) { // more than any container holds
    } catch (...) {
        return {Error::ownDomain, noResources, u"El sistema no tiene recursos para hacerlo ahora."_s};
    }
    return {Error::ownDomain, noMemory, u"No hay memoria suficiente."_s};
}

} // namespace pintalux
