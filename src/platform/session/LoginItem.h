// SPDX-License-Identifier: MIT
#pragma once

#include "platform/base/Error.h"

#include <QString>

#include <memory>

namespace pintalux {

/// Whether the desktop starts the program when the person logs in.
///
/// The state is the desktop's own and is asked for each time: it may be changed elsewhere.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    virtual bool isEnabled() const = 0;
    /// Throws `Error` when the desktop does not take the change; the state is then what `isEnabled` says.
    virtual void setEnabled(bool enabled) = 0;

    /// The one of this desktop: the entry `pintalux.desktop` among those that the person's session starts.
    static std::unique_ptr<LoginItem> create();
    /// The same for another program than this one; an absolute path.
    static std::unique_ptr<LoginItem> create(const QString& program);
};

} // namespace pintalux
