// SPDX-License-Identifier: MIT

// The order of the run, its log and its files.

#include "selftest/SelfTest.h"

#include "app/AppDelegate.h"
#include "render/export/Exporter.h"
#include "selftest/Scenes.h"

#include <QApplication>
#include <QDir>
#include <QTimer>
#include <QWidget>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace pintalux::SelfTest {

QString text(const QSize& size) { return u"%1x%2"_s.arg(size.width()).arg(size.height()); }
QString text(bool value) { return value ? u"true"_s : u"false"_s; }
QString text(QPointF point) { return u"(%1, %2)"_s.arg(qRound(point.x())).arg(qRound(point.y())); }

Run::Run(Options runOptions, AppDelegate& appDelegate, Settings& appSettings)
    : options(std::move(runOptions))
    , delegate(appDelegate)
    , settings(appSettings)
{
}

Run::~Run() = default;

void Run::note(const QString& line)
{
    log << line;
    std::printf("[selftest] %s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

void Run::writePicture(const QImage& image, const QString& fileName, double pixelScale)
{
    try {
        Exporter::write(image, pixelScale, QDir(options.directory).filePath(fileName));
    } catch (const Error& error) {
        note(u"FALLO %1: "_s.arg(fileName) + error.localizedDescription);
    }
}

void Run::writeWidget(QWidget& widget, const QString& fileName)
{
    widget.adjustSize();
    const auto picture = widget.grab().toImage();
    if (picture.isNull())
        return note(u"FALLO: "_s + fileName);
    writePicture(picture, fileName, picture.devicePixelRatio());
}

bool Run::start()
{
    QDir().mkpath(options.directory);
    sample = sampleImage();
    if (sample.isNull()) {
        note(u"FALLO: imagen de muestra"_s);
        return false;
    }
    writePicture(sample, u"sample.png"_s, sampleScale);
    readSampleText();
    const Document annotated{sample, sampleAnnotations(), sampleScale};
    exportScene(annotated, false, u"export-plain.png"_s, u"simple"_s);
    exportScene(annotated, true, u"export-beautify.png"_s, u"embellecida"_s);
    writeSceneWithUndo(calloutScene(sample), u"callouts.png"_s, u"Llamadas"_s);
    writeSceneWithUndo(stepScene(sample), u"steps.png"_s, u"Pasos"_s);
    writeSceneWithUndo(sketchScene(sample), u"sketch.png"_s, u"A mano"_s);
    checkModel();
    checkClipboard();
    renderColorChooser();
    noteFileNames();
    checkSettingsFile();
    renderPreferences();
    openEditor();
    showThumbnail();
    constexpr int settleMilliseconds = 1500;
    QTimer::singleShot(settleMilliseconds, this, &Run::runCapturePhase);
    return true;
}

void Run::finish()
{
    try {
        Exporter::write(log.join(u'\n').toUtf8(), QDir(options.directory).filePath(u"selftest.log"_s));
    } catch (const Error&) {
        // Standard output has every line already.
    }
    if (!options.keepOpen)
        QApplication::exit(EXIT_SUCCESS);
}

} // namespace pintalux::SelfTest
