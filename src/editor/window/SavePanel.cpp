// SPDX-License-Identifier: MIT
#include "editor/window/SavePanel.h"

#include "app/messages/HUD.h"
#include "platform/base/Error.h"
#include "platform/base/Files.h"
#include "platform/base/Worker.h"
#include "render/export/Exporter.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace pintalux::Exporter {

namespace {

const QString ending = QStringLiteral(".png");

/// The toolkit's dialog, but for quotation marks within a name: it takes them for what separates several
/// names and would save under a piece of it.
class SavePanel : public QFileDialog {
public:
    using QFileDialog::QFileDialog;

    /// Called for such a name in place of `fileSelected`; nobody has asked yet whether to replace a file.
    std::function<void(const QString& path)> quotedNameChosen;

protected:
    void accept() override
    {
        const auto* field = findChild<QLineEdit*>(u"fileNameEdit"_s);
        const auto name = field ? field->text() : QString();
        const bool isWholeInQuotes = name.startsWith(u'"') && name.indexOf(u'"', 1) == name.size() - 1;
        if (!name.contains(u'"') || isWholeInQuotes)
            return QFileDialog::accept();
        done(QDialog::Accepted);
        quotedNameChosen(directory().absoluteFilePath(name));
    }
};

void save(const QImage& image, double pixelScale, const QString& path)
{
    const auto work = [=] {
        write(image, pixelScale, path);
        return QFileInfo(path).fileName();
    };
    const auto tell = [](const QFuture<QString>& written) {
        try {
            HUD::show(u"Guardado como "_s + written.result(), u"checkmark.circle.fill"_s);
        } catch (const Error& error) {
            HUD::show(u"No se pudo guardar: "_s + error.localizedDescription, u"xmark.octagon"_s);
        }
    };
    whenFinished(runOn(savingThread(), work), QCoreApplication::instance(), tell);
}

void showModal(QDialog& dialog, const QWidget* window)
{
    dialog.setAttribute(Qt::WA_DeleteOnClose);
    dialog.setWindowModality(window ? Qt::WindowModal : Qt::ApplicationModal);
    dialog.show();
}

/// The dialog has asked for the name that was chosen, not for the one with the ending that it lacked.
void askToReplace(const QString& path, QWidget* window, const std::function<void()>& replace)
{
    auto* question = new QMessageBox(QMessageBox::Warning, u"Guardar como PNG"_s,
        u"«%1» ya existe. ¿Quieres reemplazarlo?"_s.arg(QFileInfo(path).fileName()), QMessageBox::NoButton,
        window);
    const QAbstractButton* accept = question->addButton(u"Reemplazar"_s, QMessageBox::AcceptRole);
    question->setDefaultButton(question->addButton(u"Cancelar"_s, QMessageBox::RejectRole));
    QObject::connect(
        question, &QMessageBox::buttonClicked, question, [accept, replace](const QAbstractButton* button) {
            if (button == accept)
                replace();
        });
    showModal(*question, window);
}

} // namespace

void savePanel(const QImage& image, double pixelScale, const QString& folder,
    const std::optional<QString>& name, QWidget* window)
{
    try {
        makeFolders(folder);
    } catch (const Error&) {
        // The dialog opens elsewhere.
    }
    auto* panel = new SavePanel(window, u"Guardar como PNG"_s, folder);
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->setFileMode(QFileDialog::AnyFile);
    panel->setNameFilter(u"Imagen PNG (*.png)"_s);
    panel->selectFile(defaultFileName(name));
    const auto saveAs = [image, pixelScale, over = QPointer(window)](const QString& chosen, bool hasAsked) {
        const bool isComplete = chosen.endsWith(ending, Qt::CaseInsensitive);
        const auto path = isComplete ? chosen : chosen + ending;
        const auto write = [=] { save(image, pixelScale, path); };
        if ((isComplete && hasAsked) || !QFileInfo::exists(path))
            write();
        else
            askToReplace(path, over, write);
    };
    QObject::connect(
        panel, &QFileDialog::fileSelected, panel, [saveAs](const QString& chosen) { saveAs(chosen, true); });
    panel->quotedNameChosen = [saveAs](const QString& chosen) { saveAs(chosen, false); };
    showModal(*panel, window);
}

} // namespace pintalux::Exporter
