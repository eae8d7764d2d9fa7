// SPDX-License-Identifier: MIT

// Captures, from the action to the delivery.

#include "app/AppDelegate.h"
#include "app/floating/Thumbnail.h"
#include "app/messages/HUD.h"
#include "capture/ScreenCapture.h"
#include "capture/text/OCR.h"
#include "platform/base/Trace.h"
#include "platform/base/Worker.h"
#include "platform/session/SystemSound.h"
#include "settings/Settings.h"

#include <QApplication>
#include <QWidget>

namespace pintalux {

void AppDelegate::perform(CaptureAction action, const QString& screen)
{
    if (overlay || isFreezing || selecting || !ScreenCapture::ensurePermission())
        return;
    quiet.start();
    // One of ours is never in a picture, and would hold the keyboard.
    for (auto* menu = QApplication::activePopupWidget(); menu && menu->close();)
        menu = QApplication::activePopupWidget();
    HUD::dismiss();
    if (thumbnail)
        thumbnail->close(false);
    previousApp = workspace->frontmostWindow();
    switch (action) {
    case CaptureAction::fullScreen:
        return captureFullScreen(screen);
    case CaptureAction::area:
        return startOverlay(OverlayMode::area);
    case CaptureAction::window:
        return startOverlay(OverlayMode::window);
    case CaptureAction::text:
        return startOverlay(OverlayMode::text);
    case CaptureAction::color:
        return startOverlay(OverlayMode::color);
    }
}

std::function<void()> AppDelegate::captureFor(
    CaptureAction action, const QString& screen, const CaptureJob::Done& done)
{
    if (overlay || isFreezing || selecting)
        return {};
    quiet.start();
    auto* job = new CaptureJob(action, screen, this);
    const bool isSelection = action != CaptureAction::fullScreen;
    if (isSelection)
        selecting = job;
    const auto former = isSelection ? workspace->frontmostWindow() : std::nullopt;
    const auto answered = [this, job, former, done](const CaptureAnswer& answer) {
        job->deleteLater();
        if (selecting == job)
            selecting.clear();
        if (former)
            workspace->activate(*former);
        done(answer);
    };
    QMetaObject::invokeMethod(
        job, [job, answered] { job->start(answered); }, Qt::QueuedConnection);
    return [guard = QPointer(job)] {
        if (guard)
            guard->cancel();
    };
}

// Does not stand in the way of the next capture: whoever asks several times in a row gets as many pictures.
void AppDelegate::captureFullScreen(const QString& screen)
{
    whenFinished(ScreenCapture::captureDisplay(screen), this, [this](QFuture<CaptureResult> shot) {
        try {
            delivery.deliver(shot.takeResult());
        } catch (...) {
            ScreenCapture::report(currentError());
        }
    });
}

void AppDelegate::startOverlay(OverlayMode mode)
{
    const auto freezing = ScreenCapture::freezeAllDisplays();
    isFreezing = true;
    whenFinished(freezing, this, [this, mode](QFuture<FrozenScreens> screens) {
        isFreezing = false;
        Trace::mark(u"pantallas congeladas");
        try {
            overlay = std::make_unique<CaptureOverlayController>(
                mode, screens.takeResult(), [guard = QPointer(this)](const OverlayOutcome& outcome) {
                    if (guard)
                        guard->overlayFinished(outcome);
                });
            overlay->show();
        } catch (...) {
            ScreenCapture::report(currentError());
        }
    });
}

void AppDelegate::overlayFinished(const OverlayOutcome& outcome)
{
    overlay.reset();
    if (const auto* image = std::get_if<Outcome::Image>(&outcome))
        delivery.deliver(image->result);
    else if (const auto* window = std::get_if<Outcome::Window>(&outcome))
        captureWindow(window->window, window->title);
    else if (const auto* text = std::get_if<Outcome::Text>(&outcome))
        delivery.deliverText(text->result);
    else if (const auto* color = std::get_if<Outcome::Color>(&outcome))
        delivery.deliverColor(color->hex);
    else
        delivery.cancelled();
}

void AppDelegate::captureWindow(const WindowInfo& window, const QString& title)
{
    whenFinished(ScreenCapture::capture(window), this, [this, title](QFuture<CaptureResult> shot) {
        try {
            auto result = shot.takeResult();
            result.suggestedName = title;
            delivery.deliver(result);
        } catch (...) {
            ScreenCapture::report(currentError());
        }
    });
}

void AppDelegate::reactivatePrevious()
{
    if (previousApp)
        workspace->activate(*previousApp);
    previousApp.reset();
}

void AppDelegate::showThumbnail(const CaptureResult& shot, const std::optional<Exporter::Saving>& saving)
{
    if (thumbnail)
        thumbnail->close(false);
    thumbnail = new ThumbnailController(shot, saving, settings,
        {.openEditor = [this](const CaptureResult& capture) { openEditor(capture); },
            .revealFile = [this](const QString& path) { workspace->revealFile(path); }},
        this);
    connect(thumbnail, &ThumbnailController::closed, thumbnail, &QObject::deleteLater);
    thumbnail->show();
}

Delivery::Routes AppDelegate::routes()
{
    return {
        .reactivatePrevious = [this] { reactivatePrevious(); },
        .forgetPrevious = [this] { previousApp.reset(); },
        .playSound = [] { SystemSound::play(); },
        .openEditor = [this](const CaptureResult& shot) { openEditor(shot); },
        .showThumbnail = [this](const CaptureResult& shot,
                             const std::optional<Exporter::Saving>& saving) { showThumbnail(shot, saving); },
        .recognizeText =
            [](const QImage& image, const std::function<void(const QString&)>& done) {
                OCR::recognize(
                    image, [done](const std::optional<QString>& text) { done(text.value_or(QString())); });
            },
        .showMessage =
            [](const QString& message, const QString& symbol, const QColor& tint) {
                HUD::show(message, symbol, tint.isValid() ? std::optional(tint) : std::nullopt);
            },
    };
}

} // namespace pintalux
