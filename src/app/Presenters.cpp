// SPDX-License-Identifier: MIT
#include "app/Presenters.h"

#include "app/messages/HUD.h"
#include "app/messages/PermissionAlert.h"
#include "capture/ScreenCapture.h"
#include "capture/text/OCR.h"

using namespace Qt::StringLiterals;

namespace pintalux {

void presentServices()
{
    static const auto readingSign = u"Leyendo el texto…"_s;
    ScreenCapture::setPresenter({.showPermissionHelp = showPermissionAlert,
        .showMessage = [](const QString& message, const QString& symbol) { HUD::show(message, symbol); }});
    OCR::setPresenter({
        .takesLong = [] { HUD::showUntilReplaced(readingSign, u"text.viewfinder"_s); },
        .ended =
            [] {
                if (HUD::currentMessage() == readingSign)
                    HUD::dismiss();
            },
        .failed
        = [](const Error& error) { HUD::show(error.localizedDescription, u"exclamationmark.triangle"_s); },
    });
}

} // namespace pintalux
