// SPDX-License-Identifier: MIT

// Captures of the screen and the selection overlay.

#include "app/AppDelegate.h"
#include "capture/OverlayWindow.h"
#include "editor/window/EditorWindowController.h"
#include "platform/base/Worker.h"
#include "selftest/SelfTest.h"

#include <QTimer>

using namespace Qt::StringLiterals;

namespace pintalux::SelfTest {

namespace {

/// One look at the overlay: a mode, what is selected and where the pointer is, as parts of the screen.
struct OverlayLook {
    OverlayMode mode;
    std::optional<QRectF> selection;
    QPointF pointer;
};
const std::array<OverlayLook, 4> overlayLooks{{
    {OverlayMode::area, QRectF(0.08, 0.2, 0.5, 0.5), {0.58, 0.7}},
    {OverlayMode::window, {}, {0.5, 0.5}},
    {OverlayMode::text, QRectF(0.2, 0.25, 0.3, 0.2), {0.5, 0.45}},
    {OverlayMode::color, {}, {0.25, 0.25}},
}};

/// On whole points, as a mouse stands.
QPointF scaled(QPointF part, const QSizeF& size)
{
    return QPointF(part.x() * size.width(), part.y() * size.height()).toPoint();
}

QRectF scaled(const QRectF& part, const QSizeF& size)
{
    return {scaled(part.topLeft(), size), scaled(part.bottomRight(), size)};
}

/// How long an overlay takes at most to be on the screen.
constexpr int paintMilliseconds = 250;

/// A window of the program's own, as a capture knows it.
WindowInfo ownWindow(const QWidget& widget)
{
    WindowInfo window;
    window.id = widget.winId();
    window.frame = widget.frameGeometry();
    window.pixelScale = widget.devicePixelRatioF();
    return window;
}

} // namespace

template <typename Result>
void Run::whenDone(QFuture<Result> future, const QString& complaint,
    const std::function<void(const Result&)>& use, const std::function<void()>& next)
{
    whenFinished(future, this, [this, complaint, use, next](const QFuture<Result>& done) {
        try {
            use(done.result());
        } catch (const Error& error) {
            note(complaint + error.localizedDescription);
        }
        next();
    });
}

void Run::runCapturePhase()
{
    const bool permitted = ScreenCapture::hasPermission();
    note(u"Permiso de Grabación de pantalla: "_s + text(permitted));
    if (permitted)
        captureOwnWindow();
    else
        finish();
}

void Run::captureOwnWindow()
{
    if (delegate.editors().empty())
        return captureFullScreen();
    whenDone<CaptureResult>(
        ScreenCapture::capture(ownWindow(delegate.editors().back()->window())),
        u"FALLO capturando ventanas propias: "_s,
        [this](const CaptureResult& shot) {
            writePicture(shot.image, u"window-editor.png"_s, shot.pixelScale);
            note(u"Ventana propia "_s + text(shot.image.size()));
        },
        [this] { captureFullScreen(); });
}

void Run::captureFullScreen()
{
    whenDone<CaptureResult>(
        ScreenCapture::captureDisplayUnderMouse(), u"FALLO captura: "_s,
        [this](const CaptureResult& shot) {
            writePicture(shot.image, u"capture-full.png"_s, shot.pixelScale);
            note(u"Captura de pantalla completa: "_s + text(shot.image.size()));
        },
        [this] { freezeScreens(); });
}

void Run::freezeScreens()
{
    auto frozen = std::make_shared<FrozenScreens>();
    whenDone<FrozenScreens>(
        ScreenCapture::freezeAllDisplays(), u"FALLO captura: "_s,
        [this, frozen](const FrozenScreens& screens) {
            *frozen = screens;
            note(u"Pantallas congeladas: %1; ventanas detectadas: %2"_s.arg(screens.displays.size())
                     .arg(screens.windows.size()));
        },
        [this, frozen] { captureWindow(*frozen); });
}

void Run::captureWindow(const FrozenScreens& frozen)
{
    if (frozen.windows.isEmpty()) {
        note(u"No hay ninguna ventana que capturar"_s);
        return runOverlayPhase();
    }
    const auto candidate = frozen.windows.constFirst();
    whenDone<CaptureResult>(
        ScreenCapture::capture(candidate.window), u"FALLO captura: "_s,
        [this, candidate](const CaptureResult& shot) {
            writePicture(shot.image, u"capture-window.png"_s, shot.pixelScale);
            note(u"Captura de ventana «%1» "_s.arg(candidate.title) + text(shot.image.size()));
        },
        [this] { runOverlayPhase(); });
}

void Run::runOverlayPhase()
{
    if (!options.overlay)
        return finish();
    auto frozen = std::make_shared<FrozenScreens>();
    whenDone<FrozenScreens>(
        ScreenCapture::freezeAllDisplays(), u"FALLO superposición: "_s,
        [frozen](const FrozenScreens& screens) { *frozen = screens; },
        [this, frozen] { showOverlay(0, *frozen); });
}

void Run::showOverlay(std::size_t index, const FrozenScreens& frozen)
{
    if (index == overlayLooks.size() || frozen.displays.isEmpty())
        return finish();
    const auto& look = overlayLooks[index];
    overlay = std::make_unique<CaptureOverlayController>(look.mode, frozen, [](const OverlayOutcome&) {});
    overlay->show();
    if (overlay->windows().empty()) {
        note(u"No se encontró la ventana de superposición: "_s + rawValue(look.mode));
        return showOverlay(index + 1, frozen);
    }
    QTimer::singleShot(paintMilliseconds, this, [this, index, frozen] { simulateOverlay(index, frozen); });
}

void Run::simulateOverlay(std::size_t index, const FrozenScreens& frozen)
{
    const auto& look = overlayLooks[index];
    // Not before: a window that appears is told where the real pointer is.
    if (!overlay->windows().empty()) {
        const auto size = QSizeF(overlay->windows().front()->size());
        overlay->debugSimulate(look.selection ? std::optional(scaled(*look.selection, size)) : std::nullopt,
            scaled(look.pointer, size));
    }
    QTimer::singleShot(paintMilliseconds, this, [this, index, frozen] { captureOverlay(index, frozen); });
}

void Run::captureOverlay(std::size_t index, const FrozenScreens& frozen)
{
    const auto next = [this, index, frozen] {
        overlay->finish(Outcome::Cancelled());
        overlay.reset();
        showOverlay(index + 1, frozen);
    };
    const auto name = rawValue(overlayLooks[index].mode);
    if (overlay->windows().empty()) {
        note(u"No se encontró la ventana de superposición: "_s + name);
        return next();
    }
    whenDone<CaptureResult>(
        ScreenCapture::capture(ownWindow(*overlay->windows().front())), u"FALLO superposición: "_s,
        [this, name](const CaptureResult& shot) {
            writePicture(shot.image, u"overlay-%1.png"_s.arg(name), shot.pixelScale);
            note(u"Superposición de %1, %2, capturada"_s.arg(name, text(shot.image.size())));
        },
        next);
}

} // namespace pintalux::SelfTest
