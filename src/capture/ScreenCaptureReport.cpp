// SPDX-License-Identifier: MIT

// What the capture service tells a person.

#include "app/messages/HUD.h"
#include "capture/ScreenCapture.h"

#include <QDesktopServices>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace pintalux {

void ScreenCapture::requestPermissionInteractive()
{
    const auto from = source();
    if (from->requestPermission())
        return;
    static QPointer<QMessageBox> shown; // asking again brings back the one that is there
    if (shown) {
        shown->raise();
        return shown->activateWindow();
    }
    const auto help = from->permissionHelp();
    auto* alert = new QMessageBox(QMessageBox::Information, u"Pintalux"_s, help.message);
    shown = alert;
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setInformativeText(help.details);
    if (!help.settingsButton.isEmpty()) {
        const auto* open = alert->addButton(help.settingsButton, QMessageBox::AcceptRole);
        QObject::connect(
            open, &QPushButton::clicked, alert, [help] { QDesktopServices::openUrl(help.settings); });
    }
    alert->addButton(help.dismissButton, QMessageBox::RejectRole);
    alert->open();
    alert->raise();
    alert->activateWindow();
}

void ScreenCapture::report(const Error& error)
{
    const bool declined
        = error.domain == ScreenSource::errorDomain && error.code == ScreenSource::userDeclined;
    if (declined || (asCaptureError(error) && !hasPermission()))
        return requestPermissionInteractive();
    HUD::show(u"No se pudo capturar: "_s + error.localizedDescription, u"exclamationmark.triangle"_s);
}

} // namespace pintalux
