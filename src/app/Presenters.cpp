// SPDX-License-Identifier: MIT
#include "app/Presenters.h"

#include "app/messages/HUD.h"
#include "app/messages/PermissionAlert.h"

using namespace Qt::StringLiterals;

namespace pintalux::Presenters {

ScreenCapture::Presenter ofCaptures()
{
    return {.showPermissionHelp = showPermissionAlert,
        .showMessage = [](const QString& message, const QString& symbol) { HUD::show(message, symbol); }};
}

OCR::Presenter ofReadings()
{
    static const auto sign = u"Leyendo el texto…"_s;
    return {
        .takesLong = [] { HUD::showUntilReplaced(sign, u"text.viewfinder"_s); },
        .ended =
            [] {
                if (HUD::currentMessage() == sign)
                    HUD::dismiss();
            },
        .failed
        = [](const Error& error) { HUD::show(error.localizedDescription, u"exclamationmark.triangle"_s); },
    };
}

void install()
{
    ScreenCapture::setPresenter(ofCaptures());
    OCR::setPresenter(ofReadings());
}

} // namespace pintalux::Presenters
