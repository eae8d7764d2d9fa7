// SPDX-License-Identifier: MIT
#include "app/messages/PermissionAlert.h"

#include "platform/desktop/ScreenSource.h"

#include <QDesktopServices>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace pintalux {

void showPermissionAlert(const PermissionHelp& help)
{
    static QPointer<QMessageBox> shown;
    if (shown) {
        shown->raise();
        return shown->activateWindow();
    }
    auto* alert = new QMessageBox(QMessageBox::Information, u"Pintalux"_s, help.message);
    shown = alert;
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setInformativeText(help.details);
    if (!help.settingsButton.isEmpty()) {
        const auto* open = alert->addButton(help.settingsButton, QMessageBox::AcceptRole);
        QObject::connect(open, &QPushButton::clicked, alert,
            [settings = help.settings] { QDesktopServices::openUrl(settings); });
    }
    alert->addButton(help.dismissButton, QMessageBox::RejectRole);
    alert->open();
    alert->raise();
    alert->activateWindow();
}

} // namespace pintalux
