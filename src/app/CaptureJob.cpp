// SPDX-License-Identifier: MIT
#include "app/CaptureJob.h"

#include "capture/ScreenCapture.h"
#include "capture/text/OCR.h"
#include "platform/base/Worker.h"
#include "render/export/Exporter.h"

#include <QPointer>

using namespace Qt::StringLiterals;

namespace pintalux {

CaptureJob::CaptureJob(CaptureAction wanted, QString screenName, QObject* parent)
    : QObject(parent)
    , action(wanted)
    , screen(std::move(screenName))
{
}

void CaptureJob::start(Done whenDone)
{
    done = std::move(whenDone);
    if (isCancelled)
        return cancel();
    if (!ScreenCapture::hasPermission())
        return fail(toError(CaptureError::permissionDenied));
    switch (action) {
    case CaptureAction::fullScreen:
        return takeScreen();
    case CaptureAction::area:
        return select(OverlayMode::area);
    case CaptureAction::window:
        return select(OverlayMode::window);
    case CaptureAction::text:
        return select(OverlayMode::text);
    case CaptureAction::color:
        return select(OverlayMode::color);
    }
}

void CaptureJob::cancel()
{
    isCancelled = true;
    selection.reset();
    answer({CaptureAnswer::Kind::cancelled, {}, {}});
}

void CaptureJob::takeScreen()
{
    whenFinished(ScreenCapture::captureDisplay(screen), this,
        [this](const QFuture<CaptureResult>& finished) { answerWith(finished); });
}

void CaptureJob::select(OverlayMode mode)
{
    whenFinished(ScreenCapture::freezeAllDisplays(), this, [this, mode](QFuture<FrozenScreens> screens) {
        if (!done)
            return; // cancelled meanwhile
        try {
            selection = std::make_unique<CaptureOverlayController>(
                mode, screens.takeResult(), [guard = QPointer(this)](const OverlayOutcome& outcome) {
                    if (guard)
                        guard->selected(outcome);
                });
        } catch (...) {
            return fail(currentError());
        }
        selection->show();
    });
}

void CaptureJob::selected(const OverlayOutcome& outcome)
{
    selection.reset();
    if (const auto* image = std::get_if<Outcome::Image>(&outcome))
        answerWith(image->result);
    else if (const auto* window = std::get_if<Outcome::Window>(&outcome))
        whenFinished(ScreenCapture::capture(window->window), this,
            [this](const QFuture<CaptureResult>& finished) { answerWith(finished); });
    else if (const auto* text = std::get_if<Outcome::Text>(&outcome))
        read(text->result);
    else if (const auto* color = std::get_if<Outcome::Color>(&outcome))
        answer({CaptureAnswer::Kind::text, color->hex.toUtf8(), {}});
    else
        answer({CaptureAnswer::Kind::cancelled, {}, {}});
}

void CaptureJob::answerWith(const QFuture<CaptureResult>& shot)
{
    try {
        answerWith(shot.result());
    } catch (...) {
        fail(currentError());
    }
}

void CaptureJob::answerWith(const CaptureResult& shot)
{
    const auto encoding = runOn(Exporter::savingThread(),
        [shot] { return Exporter::pngData(shot.image, shot.pixelScale).value_or(QByteArray()); });
    whenFinished(encoding, this, [this](QFuture<QByteArray> encoded) {
        try {
            const auto png = encoded.takeResult();
            if (png.isEmpty())
                return answer({CaptureAnswer::Kind::failed, {}, u"No se pudo crear la imagen."_s});
            answer({CaptureAnswer::Kind::picture, png, {}});
        } catch (...) {
            fail(currentError());
        }
    });
}

void CaptureJob::read(const CaptureResult& shot)
{
    OCR::recognize(shot.image, [guard = QPointer(this)](const std::optional<QString>& text) {
        if (!guard)
            return;
        if (!text || text->isEmpty())
            return guard->answer({CaptureAnswer::Kind::failed, {}, u"No se encontró texto."_s});
        guard->answer({CaptureAnswer::Kind::text, text->toUtf8(), {}});
    });
}

void CaptureJob::answer(const CaptureAnswer& result)
{
    if (const auto report = std::exchange(done, nullptr))
        report(result);
}

} // namespace pintalux
