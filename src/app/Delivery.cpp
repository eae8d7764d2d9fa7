// SPDX-License-Identifier: MIT
#include "app/Delivery.h"

#include "platform/base/Error.h"
#include "platform/base/Worker.h"
#include "platform/graphics/Color.h"
#include "render/export/Clipboard.h"
#include "settings/Settings.h"

using namespace Qt::StringLiterals;

namespace pintalux {

Delivery::Delivery(const Settings& of, Routes to)
    : settings(of)
    , routes(std::move(to))
{
}

void Delivery::deliver(const CaptureResult& result)
{
    if (settings.playSound())
        routes.playSound();

    std::optional<Exporter::Saving> saving;
    if (settings.autoSave())
        saving = save(result);
    else if (settings.autoCopy())
        Clipboard::copy(result.image, result.pixelScale);

    switch (settings.afterCapture()) {
    case AfterCapture::editor:
        routes.forgetPrevious();
        routes.openEditor(result);
        break;
    case AfterCapture::thumbnail:
        routes.reactivatePrevious();
        routes.showThumbnail(result, saving);
        break;
    case AfterCapture::copyOnly:
        routes.reactivatePrevious();
        if (saving && !settings.autoCopy())
            tellOnceSaved(result, *saving);
        else
            routes.showMessage(settings.autoCopy() ? u"Captura copiada"_s : u"Captura guardada"_s,
                u"checkmark.circle.fill"_s, {});
        break;
    }
}

// Nothing else keeps it: no copy, no thumbnail, no editor.
void Delivery::tellOnceSaved(const CaptureResult& result, const Exporter::Saving& saving)
{
    whenFinished(saving.path, &context, [this, result](const QFuture<QString>& path) {
        try {
            path.result();
            routes.showMessage(u"Captura guardada"_s, u"checkmark.circle.fill"_s, {});
        } catch (const Error&) {
            Clipboard::copy(result.image, result.pixelScale);
            routes.showMessage(u"No se pudo guardar; la captura está en el portapapeles"_s,
                u"exclamationmark.triangle"_s, {});
        }
    });
}

/// Copies it too where that is wished, for it is encoded only once.
Exporter::Saving Delivery::save(const CaptureResult& result) const
{
    const auto png = Exporter::encode(result.image, result.pixelScale);
    if (settings.autoCopy() && !result.image.isNull())
        Clipboard::copy(png);
    return Exporter::startQuickSave(png, settings.saveFolder(), result.suggestedName);
}

void Delivery::deliverText(const CaptureResult& result)
{
    routes.reactivatePrevious();
    routes.recognizeText(result.image, [this](const QString& text) { copyText(text); });
}

void Delivery::copyText(const QString& text)
{
    if (text.isEmpty()) {
        routes.showMessage(u"No se encontró texto"_s, u"text.magnifyingglass"_s, {});
        return;
    }
    Clipboard::copy(text);
    const auto lines = text.split(u'\n', Qt::SkipEmptyParts).size();
    routes.showMessage(
        lines == 1 ? u"Texto copiado"_s : QString::number(lines) + u" líneas de texto copiadas"_s,
        u"text.viewfinder"_s, {});
}

void Delivery::deliverColor(const QString& hex)
{
    routes.reactivatePrevious();
    Clipboard::copy(hex);
    routes.showMessage(u"Color %1 copiado"_s.arg(hex), u"eyedropper"_s, colorFromHex(hex).value_or(QColor()));
}

} // namespace pintalux
