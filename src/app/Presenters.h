// SPDX-License-Identifier: MIT
#pragma once

#include "capture/ScreenCapture.h"
#include "capture/text/OCR.h"

namespace pintalux {

/// How what the services have to tell a person is shown on the screen.
namespace Presenters {

ScreenCapture::Presenter ofCaptures();
OCR::Presenter ofReadings();

/// Hands them in.
void install();

} // namespace Presenters

} // namespace pintalux
