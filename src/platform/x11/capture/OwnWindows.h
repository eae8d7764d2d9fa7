// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/ScreenSource.h"

namespace pintalux::x11 {

class XcbConnection;

/// Makes the windows of a process that are shown now invisible, and waits until the screen shows what is
/// below them. They keep their focus and their place; all is put back when the result goes. Null, at once,
/// when the process shows no window.
std::unique_ptr<ScreenSource::OwnWindowsHidden> hideWindowsOf(
    std::shared_ptr<const XcbConnection> connection, qint64 processId);

} // namespace pintalux::x11
