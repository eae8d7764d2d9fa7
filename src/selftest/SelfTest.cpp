#include "selftest/SelfTest.h"

#include "platform/Worker.h"
#include "render/Clipboard.h"
#include "render/Exporter.h"
#include "selftest/Scenes.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QMimeData>
#include <QTimer>
#include <QWidget>

#include <cstdio>

namespace pintalux::SelfTest {

namespace {

constexpr double sampleScale = 2;

QString text(const QSize& size) { return u"%1x%2"_qs.arg(size.width()).arg(size.height()); }
QString text(bool value) { return value ? u"true"_qs : u"false"_qs; }

} // namespace

Run::Run(const QString& outputDirectory, bool keepOpenAfterwards)
    : directory(outputDirectory)
    , keepOpen(keepOpenAfterwards)
{
}

void Run::note(const QString& line)
{
    log << line;
    std::printf("[selftest] %s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

void Run::writePicture(const QImage& image, const QString& fileName, double pixelScale)
{
    try {
        Exporter::write(image, pixelScale, QDir(directory).filePath(fileName));
    } catch (const Error& error) {
        note(u"FALLO %1: "_qs.arg(fileName) + error.localizedDescription);
    }
}

bool Run::start()
{
    QDir().mkpath(directory);
    sample = sampleImage();
    if (sample.isNull()) {
        note(u"FALLO: imagen de muestra"_qs);
        return false;
    }
    writePicture(sample, u"sample.png"_qs, sampleScale);
    const Document annotated{sample, sampleAnnotations(), sampleScale};
    exportScene(annotated, false, u"export-plain.png"_qs, u"simple"_qs);
    exportScene(annotated, true, u"export-beautify.png"_qs, u"embellecida"_qs);
    writeSceneWithUndo(calloutScene(sample), u"callouts.png"_qs, u"Llamadas"_qs);
    writeSceneWithUndo(stepScene(sample), u"steps.png"_qs, u"Pasos"_qs);
    writeSceneWithUndo(sketchScene(sample), u"sketch.png"_qs, u"A mano"_qs);
    checkClipboard();
    noteFileNames();
    constexpr int settleMilliseconds = 1500;
    QTimer::singleShot(settleMilliseconds, this, &Run::runCapturePhase);
    return true;
}

void Run::exportScene(const Document& document, bool framed, const QString& fileName, const QString& label)
{
    EffectCache cache;
    const auto image = Exporter::render(document, {.enabled = framed}, cache);
    if (image.isNull()) {
        note(u"FALLO: exportación "_qs + label);
        return;
    }
    writePicture(image, fileName, document.pixelScale);
    note(u"Exportación %1: "_qs.arg(label) + text(image.size()));
}

void Run::writeSceneWithUndo(const Document& scene, const QString& fileName, const QString& label)
{
    // A document is a value: the state before the last mark is its undo.
    Document document{scene.image, {}, scene.pixelScale};
    Document beforeLast = document;
    for (const auto& mark : scene.annotations) {
        beforeLast = document;
        document.annotations << mark;
    }
    EffectCache cache;
    const auto image = Exporter::render(document, {}, cache);
    writePicture(image, fileName, document.pixelScale);
    note(u"%1: %2 anotaciones; tras deshacer → %3"_qs.arg(label)
             .arg(document.annotations.size())
             .arg(beforeLast.annotations.size()));
}

void Run::checkClipboard()
{
    Clipboard::copy(sample, sampleScale);
    const auto* offered = QApplication::clipboard()->mimeData();
    const auto png = offered ? offered->data(u"image/png"_qs) : QByteArray();
    const auto image = QImage::fromData(png, "PNG");
    note(image.size() == sample.size()
            ? u"Portapapeles PNG: %1, %2 bytes"_qs.arg(text(image.size())).arg(png.size())
            : u"FALLO: portapapeles PNG"_qs);
}

void Run::noteFileNames()
{
    note(u"Nombres:"_qs);
    for (const auto& name :
        {std::optional<QString>(), std::optional(u"Safari — Inicio"_qs), std::optional(u"Pintalux 2026"_qs)})
        note(u"  "_qs + Exporter::defaultFileName(name));
}

template <typename Result>
void Run::whenDone(
    QFuture<Result> future, const std::function<void(const Result&)>& use, const std::function<void()>& next)
{
    whenFinished(future, this, [this, use, next](const QFuture<Result>& done) {
        try {
            use(done.result());
        } catch (const Error& error) {
            note(u"FALLO captura: "_qs + error.localizedDescription);
        }
        next();
    });
}

void Run::runCapturePhase()
{
    const bool permitted = ScreenCapture::hasPermission();
    note(u"Permiso de Grabación de pantalla: "_qs + text(permitted));
    if (permitted)
        captureFullScreen();
    else
        finish();
}

void Run::captureFullScreen()
{
    whenDone<CaptureResult>(
        ScreenCapture::captureDisplayUnderMouse(),
        [this](const CaptureResult& shot) {
            writePicture(shot.image, u"capture-full.png"_qs, shot.pixelScale);
            note(u"Captura de pantalla completa: "_qs + text(shot.image.size()));
        },
        [this] { freezeScreens(); });
}

void Run::freezeScreens()
{
    auto frozen = std::make_shared<FrozenScreens>();
    whenDone<FrozenScreens>(
        ScreenCapture::freezeAllDisplays(),
        [this, frozen](const FrozenScreens& screens) {
            *frozen = screens;
            note(u"Pantallas congeladas: %1; ventanas detectadas: %2"_qs.arg(screens.displays.size())
                     .arg(screens.windows.size()));
        },
        [this, frozen] { captureWindow(*frozen); });
}

void Run::captureWindow(const FrozenScreens& frozen)
{
    if (frozen.windows.isEmpty()) {
        note(u"No hay ninguna ventana que capturar"_qs);
        finish();
        return;
    }
    const auto candidate = frozen.windows.constFirst();
    whenDone<CaptureResult>(
        ScreenCapture::capture(candidate.window),
        [this, candidate](const CaptureResult& shot) {
            writePicture(shot.image, u"capture-window.png"_qs, shot.pixelScale);
            note(u"Captura de ventana «%1» "_qs.arg(candidate.title) + text(shot.image.size()));
        },
        [this] { finish(); });
}

void Run::finish()
{
    try {
        Exporter::write(log.join(u'\n').toUtf8(), QDir(directory).filePath(u"selftest.log"_qs));
    } catch (const Error&) {
        // Standard output has every line already.
    }
    if (!keepOpen)
        QApplication::exit(EXIT_SUCCESS);
}

} // namespace pintalux::SelfTest
