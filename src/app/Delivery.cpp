#include "app/Delivery.h"

#include "model/Color.h"
#include "platform/Error.h"
#include "render/Clipboard.h"
#include "render/Exporter.h"
#include "settings/Settings.h"

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

    // Encoded once for the clipboard and the file.
    std::optional<QByteArray> png;
    if (settings.autoCopy() || settings.autoSave())
        png = Exporter::pngData(result.image, result.pixelScale);
    if (settings.autoCopy() && png)
        Clipboard::copy(*png);
    std::optional<QString> savedPath;
    if (settings.autoSave() && png) {
        try {
            savedPath = Exporter::quickSave(*png, settings.saveFolder(), result.suggestedName);
        } catch (const Error&) {
            savedPath.reset(); // the thumbnail shows it as not saved
        }
    }

    switch (settings.afterCapture()) {
    case AfterCapture::editor:
        routes.forgetPrevious();
        routes.openEditor(result, savedPath);
        break;
    case AfterCapture::thumbnail:
        routes.reactivatePrevious();
        routes.showThumbnail(result, savedPath);
        break;
    case AfterCapture::copyOnly:
        routes.reactivatePrevious();
        routes.showMessage(settings.autoCopy() ? u"Captura copiada"_qs : u"Captura guardada"_qs,
            u"checkmark.circle.fill"_qs, {});
        break;
    }
}

void Delivery::deliverText(const CaptureResult& result)
{
    routes.reactivatePrevious();
    routes.recognizeText(result.image, [this](const QString& text) { copyText(text); });
}

void Delivery::copyText(const QString& text)
{
    if (text.isEmpty()) {
        routes.showMessage(u"No se encontró texto"_qs, u"text.magnifyingglass"_qs, {});
        return;
    }
    Clipboard::copy(text);
    const auto lines = text.split(u'\n', Qt::SkipEmptyParts).size();
    routes.showMessage(
        lines == 1 ? u"Texto copiado"_qs : QString::number(lines) + u" líneas de texto copiadas"_qs,
        u"text.viewfinder"_qs, {});
}

void Delivery::deliverColor(const QString& hex)
{
    routes.reactivatePrevious();
    Clipboard::copy(hex);
    routes.showMessage(
        u"Color %1 copiado"_qs.arg(hex), u"eyedropper"_qs, colorFromHex(hex).value_or(QColor()));
}

} // namespace pintalux
