// SPDX-License-Identifier: MIT

// What needs no window: recognising, exporting, the model, the clipboard, the settings.

#include "app/AppDelegate.h"
#include "app/commandline/CommandLine.h"
#include "capture/ScreenCapture.h"
#include "capture/text/OCR.h"
#include "controls/theme/Theme.h"
#include "editor/state/EditorModel.h"
#include "editor/style/ColorChooser.h"
#include "platform/graphics/Color.h"
#include "platform/session/LoginItem.h"
#include "render/export/Clipboard.h"
#include "render/export/Exporter.h"
#include "selftest/Scenes.h"
#include "selftest/SelfTest.h"
#include "settings/SettingsFile.h"
#include "settings/preferences/PreferencesView.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QMimeData>

using namespace Qt::StringLiterals;

namespace pintalux::SelfTest {

void Run::readSampleText()
{
    note(u"OCR: "_s + OCR::recognizeSync(sample).value_or(QString()).replace(u"\n"_s, u" | "_s));
}

void Run::exportScene(const Document& document, bool framed, const QString& fileName, const QString& label)
{
    EffectCache cache;
    const auto image = Exporter::render(document, {.enabled = framed}, cache);
    if (image.isNull()) {
        note(u"FALLO: exportación "_s + label);
        return;
    }
    writePicture(image, fileName, document.pixelScale);
    note(u"Exportación %1: "_s.arg(label) + text(image.size()));
}

void Run::writeSceneWithUndo(const Document& scene, const QString& fileName, const QString& label)
{
    EditorModel model({scene.image, scene.pixelScale, {}}, settings);
    for (const auto& mark : scene.annotations)
        model.add(mark);
    const auto image = model.renderFinal();
    const auto complete = model.doc().annotations.size();
    model.undo();
    if (image.isNull())
        return note(u"FALLO: "_s + fileName);
    writePicture(image, fileName, scene.pixelScale);
    note(u"%1: %2 anotaciones; tras deshacer → %3"_s.arg(label).arg(complete).arg(
        model.doc().annotations.size()));
}

void Run::checkModel()
{
    EditorModel model({sample, sampleScale, {}}, settings);
    for (const auto& mark : sampleAnnotations())
        model.add(mark);
    model.undo();
    model.redo();
    model.setTool(Tool::crop);
    model.setCropRect(QRectF(100, 80, 900, 600));
    model.applyCrop();
    const auto cropped = model.doc().image.size();
    model.undo();
    note(u"Deshacer: %1 anotaciones, recorte %2; tras deshacer → %3"_s.arg(model.doc().annotations.size())
             .arg(text(cropped), text(model.doc().image.size())));
}

void Run::checkClipboard()
{
    Clipboard::copy(sample, sampleScale);
    const auto* offered = QApplication::clipboard()->mimeData();
    const auto png = offered ? offered->data(u"image/png"_s) : QByteArray();
    const auto image = QImage::fromData(png, "PNG");
    note(image.size() == sample.size()
            ? u"Portapapeles PNG: %1, %2 bytes"_s.arg(text(image.size())).arg(png.size())
            : u"FALLO: portapapeles PNG"_s);
}

void Run::renderColorChooser()
{
    EditorModel model({sample, sampleScale, {}}, settings);
    ColorChooser chooser(model, [] {});
    auto colors = chooser.palette();
    colors.setColor(QPalette::Window, Theme::of(colors).card); // as in its popover
    chooser.setPalette(colors);
    writeWidget(chooser, u"color-chooser.png"_s);
    note(u"Color inicial: "_s + hexString(model.color()));
}

void Run::noteFileNames()
{
    note(u"Nombres:"_s);
    for (const auto& name :
        {std::optional<QString>(), std::optional(u"Safari — Inicio"_s), std::optional(u"Pintalux 2026"_s)})
        note(u"  "_s + Exporter::defaultFileName(name));
}

void Run::checkSettingsFile()
{
    const auto file = QDir(options.directory).filePath(u"configuracion.json"_s);
    const auto kept = settings.snapshot();
    const double keptWidth = settings.strokeWidth();
    try {
        settings.write(file);
        settings.setStrokeWidth(13);
        settings.setArrowStyle(allCases<ArrowStyle>().back());
        settings.read(file);
    } catch (const Error& error) {
        note(u"FALLO configuración: "_s + error.localizedDescription);
    }
    note(u"Configuración: exportada=%1 grosor=%2 (guardado %3) flecha=%4"_s.arg(text(QFileInfo::exists(file)))
             .arg(settings.strokeWidth())
             .arg(keptWidth)
             .arg(rawValue(settings.arrowStyle())));
    settings.apply(kept);
}

void Run::renderPreferences()
{
    PreferencesHost host;
    host.version = CommandLine::version();
    host.hasPermission = [] { return ScreenCapture::hasPermission(); };
    const auto loginItem = LoginItem::create();
    host.loginItem = loginItem.get();
    host.failedShortcuts = [this] { return delegate.failedShortcuts(); };
    PreferencesView preferences(settings, host);
    preferences.resize(preferences.sizeHint());
    writeWidget(*preferences.widget(), u"ajustes.png"_s);
}

} // namespace pintalux::SelfTest
