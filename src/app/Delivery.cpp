// SPDX-License-Identifier: MIT
#include "app/Delivery.h"

#include "platform/base/Error.h"
#include "platform/graphics/Color.h"
#include "render/export/Clipboard.h"
#include "render/export/Exporter.h"
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

    std::optional<QString> savedPath;
    if (settings.autoSave())
        savedPath = save(result);
    else if (settings.autoCopy())
        Clipboard::copy(result.image, result.pixelScale);

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
        routes.showMessage(settings.autoCopy() ? u"Captura copiada"_s : u"Captura guardada"_s,
            u"checkmark.circle.fill"_s, {});
        break;
    }
}

/// Where it was saved; copies it too where that is wished, for it is encoded only once.
std::optional<QString> Delivery::save(const CaptureResult& result) const
{
    const auto png = Exporter::pngData(result.image, result.pixelScale).value_or(QByteArray());
    if (settings.autoCopy())
        Clipboard::copy(png);
    try {
        return Exporter::quickSave(png, settings.saveFolder(), result.suggestedName);
    } catch (const Error&) {
        return std::nullopt; // the thumbnail shows it as not saved
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
