// SPDX-License-Identifier: MIT
#pragma once

#include "capture/CaptureOverlay.h"
#include "capture/ScreenCapture.h"
#include "model/Document.h"

#include <QObject>
#include <QStringList>

#include <functional>

namespace pintalux {

class AppDelegate;
class EditorWindowController;
class Settings;

namespace SelfTest {

/// What a person asks of a run on the command line.
struct Options {
    QString directory; ///< where the pictures and the log go; made when missing
    bool overlay = false;
    bool keepOpen = false; ///< the program goes on after the run
};

/// Runs the program's whole pipeline once without a person and leaves pictures and a log in a folder, to be
/// looked at. Serves as a smoke test of a build on a real machine.
///
/// Every line of the log also goes to standard output with the prefix "[selftest] ".
class Run : public QObject {
    Q_OBJECT

public:
    Run(Options options, AppDelegate& delegate, Settings& settings);
    ~Run() override;

    /// Runs what needs no waiting and schedules the rest, which ends the application's event loop. False when
    /// not even the sample image could be made; then nothing is scheduled.
    bool start();

private:
    void note(const QString& line);
    void writePicture(const QImage& image, const QString& fileName, double pixelScale);
    void writeWidget(QWidget& widget, const QString& fileName);

    void readSampleText();
    void exportScene(const Document& document, bool framed, const QString& fileName, const QString& label);
    void writeSceneWithUndo(const Document& scene, const QString& fileName, const QString& label);
    void checkModel();
    void checkClipboard();
    void renderColorChooser();
    void noteFileNames();
    void checkSettingsFile();
    void renderPreferences();

    void openEditor();
    void checkArrow(EditorWindowController& editor);
    void checkStep(EditorWindowController& editor);
    void checkCallout(EditorWindowController& editor);
    void checkInsertedImage(EditorWindowController& editor);
    void checkEraser(EditorWindowController& editor);
    void noteArrowOptions(EditorWindowController& editor);
    void showThumbnail();

    void runCapturePhase();
    void captureOwnWindow();
    void captureFullScreen();
    void freezeScreens();
    void captureWindow(const FrozenScreens& frozen);
    void runOverlayPhase();
    void showOverlay(std::size_t index, const FrozenScreens& frozen);
    void simulateOverlay(std::size_t index, const FrozenScreens& frozen);
    void captureOverlay(std::size_t index, const FrozenScreens& frozen);
    void finish();

    /// Hands the result of a capture to `use` on the main thread, or logs its failure after `complaint`; then
    /// goes on with `next`.
    template <typename Result>
    void whenDone(QFuture<Result> future, const QString& complaint,
        const std::function<void(const Result&)>& use, const std::function<void()>& next);

    Options options;
    AppDelegate& delegate;
    Settings& settings;
    QStringList log;
    QImage sample;
    std::unique_ptr<CaptureOverlayController> overlay;
};

/// How sizes and truth are written in the log.
QString text(const QSize& size);
QString text(bool value);
QString text(QPointF point);

} // namespace SelfTest

} // namespace pintalux
