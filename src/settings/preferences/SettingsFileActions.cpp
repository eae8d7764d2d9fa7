// SPDX-License-Identifier: MIT
#include "settings/preferences/SettingsFileActions.h"

#include "app/icon/AppIcon.h"
#include "app/messages/HUD.h"
#include "platform/base/Error.h"
#include "platform/base/Files.h"
#include "settings/Settings.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QStandardPaths>
#include <QWidget>

using namespace Qt::StringLiterals;

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

constexpr QStringView unusableFolder = u", pero su carpeta de capturas no se puede usar";

/// Does it and says how it went. False when it failed.
template <typename Action> bool tell(const Words& words, Action action)
{
    try {
        action();
    } catch (const Error& error) {
        HUD::show(words.failed.toString() + error.localizedDescription, u"xmark.octagon"_s);
        return false;
    }
    HUD::show(words.done.toString(), words.symbol.toString());
    return true;
}

/// The same for settings from elsewhere. Their folder is taken over as it is.
template <typename Action> void tellOfTaken(const Words& words, const Settings& settings, Action action)
{
    if (tell(words, action) && whyUnusable(settings.saveFolder()))
        HUD::show(words.done.toString() + unusableFolder.toString(), u"exclamationmark.triangle"_s);
}

QPixmap iconOf(const QWidget& alert)
{
    constexpr double side = 64;
    const double ratio = alert.devicePixelRatio();
    auto icon = QPixmap::fromImage(AppIcon::render(qRound(side * ratio)));
    icon.setDevicePixelRatio(ratio);
    return icon;
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
    tellOfTaken(restoring, settings, [this] { settings.restoreSavedCopy(); });
}

void SettingsFileActions::exportSettings()
{
    if (isPanelOpen())
        return;
    auto files = makeFilePanel(u"Exportar la configuración"_s);
    files->setAcceptMode(QFileDialog::AcceptSave);
    files->setDefaultSuffix(u"json"_s);
    files->selectFile(u"Configuración de Pintalux.json"_s);
    connect(files.get(), &QFileDialog::fileSelected, this,
        [this](const QString& path) { tell(exporting, [&] { settings.write(path); }); });
    open(std::move(files));
}

void SettingsFileActions::importSettings()
{
    if (isPanelOpen())
        return;
    auto files = makeFilePanel(u"Importar una configuración"_s);
    files->setFileMode(QFileDialog::ExistingFile);
    files->setLabelText(QFileDialog::Accept, u"Importar"_s);
    connect(files.get(), &QFileDialog::fileSelected, this,
        [this](const QString& path) { tellOfTaken(importing, settings, [&] { settings.read(path); }); });
    open(std::move(files));
}

void SettingsFileActions::reset()
{
    if (isPanelOpen())
        return;
    auto alert = std::make_unique<QMessageBox>(QMessageBox::NoIcon, u"Pintalux"_s,
        u"¿Restablecer los valores iniciales?"_s, QMessageBox::NoButton, window);
    alert->setInformativeText(
        u"Se aplicará la configuración con la que viene Pintalux. Tu copia guardada no se borra."_s);
    alert->setIconPixmap(iconOf(*alert));
    auto* confirm = alert->addButton(u"Restablecer"_s, QMessageBox::AcceptRole);
    alert->addButton(u"Cancelar"_s, QMessageBox::RejectRole);
    alert->setDefaultButton(confirm);
    connect(confirm, &QPushButton::clicked, this, [this] {
        settings.resetToFactory();
        HUD::show(u"Valores iniciales restablecidos"_s, u"arrow.counterclockwise.circle"_s);
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
    auto folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!QFileInfo(folder).isDir())
        folder = QDir::homePath();
    return std::make_unique<QFileDialog>(window, title, folder, u"Archivos JSON (*.json)"_s);
}

void SettingsFileActions::open(std::unique_ptr<QDialog> dialog)
{
    panel = dialog.release(); // closes itself away
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->open();
}

} // namespace pintalux
