#include "settings/SettingsFileActions.h"

#include "app/HUD.h"
#include "platform/Error.h"
#include "settings/Settings.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QWidget>

namespace pintalux {

namespace {

/// What is said about an action.
struct Words {
    QStringView done;
    QStringView symbol;
    QStringView failed; ///< followed by the reason
};

constexpr Words savingCopy{u"Configuración guardada", u"checkmark.circle.fill", u"No se pudo guardar: "};
constexpr Words restoring{
    u"Configuración guardada restaurada", u"arrow.uturn.backward.circle", u"No se pudo restaurar: "};
constexpr Words exporting{u"Configuración exportada", u"square.and.arrow.up", u"No se pudo exportar: "};
constexpr Words importing{u"Configuración importada", u"square.and.arrow.down", u"No se pudo importar: "};

/// Does it and says how it went. False when it failed.
template <typename Action> bool tell(const Words& words, Action action)
{
    try {
        action();
    } catch (const Error& error) {
        HUD::show(words.failed.toString() + error.localizedDescription, u"xmark.octagon"_qs);
        return false;
    }
    HUD::show(words.done.toString(), words.symbol.toString());
    return true;
}

} // namespace

SettingsFileActions::SettingsFileActions(Settings& settingsStore, QWidget* owner)
    : QObject(owner)
    , settings(settingsStore)
    , window(owner)
{
}

SettingsFileActions::~SettingsFileActions() { delete panel; }

void SettingsFileActions::saveCopy()
{
    if (tell(savingCopy, [this] { settings.saveCopy(); }))
        Q_EMIT copySaved();
}

void SettingsFileActions::restoreSavedCopy()
{
    tell(restoring, [this] { settings.restoreSavedCopy(); });
}

void SettingsFileActions::exportSettings()
{
    if (isPanelOpen())
        return;
    auto files = makeFilePanel(u"Exportar la configuración"_qs);
    files->setAcceptMode(QFileDialog::AcceptSave);
    files->setDefaultSuffix(u"json"_qs);
    files->selectFile(u"Configuración de Pintalux.json"_qs);
    connect(files.get(), &QFileDialog::fileSelected, this,
        [this](const QString& path) { tell(exporting, [&] { settings.write(path); }); });
    open(std::move(files));
}

void SettingsFileActions::importSettings()
{
    if (isPanelOpen())
        return;
    auto files = makeFilePanel(u"Importar una configuración"_qs);
    files->setFileMode(QFileDialog::ExistingFile);
    files->setLabelText(QFileDialog::Accept, u"Importar"_qs);
    connect(files.get(), &QFileDialog::fileSelected, this,
        [this](const QString& path) { tell(importing, [&] { settings.read(path); }); });
    open(std::move(files));
}

void SettingsFileActions::reset()
{
    if (isPanelOpen())
        return;
    auto alert = std::make_unique<QMessageBox>(QMessageBox::Question, u"Pintalux"_qs,
        u"¿Restablecer los valores iniciales?"_qs, QMessageBox::NoButton, window);
    alert->setInformativeText(
        u"Se aplicará la configuración con la que viene Pintalux. Tu copia guardada no se borra."_qs);
    auto* confirm = alert->addButton(u"Restablecer"_qs, QMessageBox::AcceptRole);
    alert->addButton(u"Cancelar"_qs, QMessageBox::RejectRole);
    alert->setDefaultButton(confirm);
    connect(confirm, &QPushButton::clicked, this, [this] {
        settings.resetToFactory();
        HUD::show(u"Valores iniciales restablecidos"_qs, u"arrow.counterclockwise.circle"_qs);
    });
    open(std::move(alert));
}

bool SettingsFileActions::isPanelOpen()
{
    if (!panel || !panel->isVisible())
        return false;
    panel->raise();
    panel->activateWindow();
    return true;
}

std::unique_ptr<QFileDialog> SettingsFileActions::makeFilePanel(const QString& title)
{
    const auto documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return std::make_unique<QFileDialog>(window, title, documents, u"Archivos JSON (*.json)"_qs);
}

void SettingsFileActions::open(std::unique_ptr<QDialog> dialog)
{
    panel = dialog.release(); // closes itself away
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->open();
}

} // namespace pintalux
