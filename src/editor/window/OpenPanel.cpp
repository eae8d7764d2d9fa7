// SPDX-License-Identifier: MIT
#include "editor/window/OpenPanel.h"

#include "platform/desktop/WindowSystem.h"

#include <QFileDialog>

using namespace Qt::StringLiterals;

namespace pintalux {

QFileDialog* showOpenPanel(
    const OpenPanel& panel, QWidget* window, std::function<void(const QStringList&)> completion)
{
    auto* dialog = new QFileDialog(window, panel.message);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    dialog->setOption(QFileDialog::HideNameFilterDetails); // eleven endings do not fit
    dialog->setNameFilters(
        {u"Imágenes (*.png *.jpg *.jpeg *.tif *.tiff *.heic *.heif *.gif *.webp *.bmp *.avif)"_s,
            u"Todos los archivos (*)"_s});
    if (!panel.prompt.isEmpty())
        dialog->setLabelText(QFileDialog::Accept, panel.prompt);
    QObject::connect(dialog, &QFileDialog::filesSelected, dialog,
        [done = std::move(completion)](const QStringList& paths) { done(paths); });
    if (!window)
        WindowSystem::current().setInTaskBar(*dialog, panel.isListed);
    dialog->setWindowModality(window ? Qt::WindowModal : Qt::ApplicationModal);
    dialog->show();
    return dialog;
}

} // namespace pintalux
