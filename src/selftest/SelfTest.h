#pragma once

#include "capture/ScreenCapture.h"
#include "model/Document.h"

#include <QObject>
#include <QStringList>

#include <functional>

namespace pintalux::SelfTest {

/// Runs the program's whole pipeline once without a person and leaves pictures and a log in a folder, to be
/// looked at. Serves as a smoke test of a build on a real machine.
///
/// Every line of the log also goes to standard output with the prefix "[selftest] ".
class Run : public QObject {
    Q_OBJECT

public:
    /// With `keepOpen` the program goes on after the run.
    Run(const QString& outputDirectory, bool keepOpen);

    /// Runs what needs no waiting and schedules the rest, which ends the application's event loop. False when
    /// not even the sample image could be made; then nothing is scheduled.
    bool start();

private:
    void note(const QString& line);
    void writePicture(const QImage& image, const QString& fileName, double pixelScale);
    void exportScene(const Document& document, bool framed, const QString& fileName, const QString& label);
    void writeSceneWithUndo(const Document& scene, const QString& fileName, const QString& label);
    void checkClipboard();
    void noteFileNames();

    void runCapturePhase();
    void captureFullScreen();
    void freezeScreens();
    void captureWindow(const FrozenScreens& frozen);
    void finish();

    /// Hands the result of a capture to `use` on the main thread, or logs its failure; then goes on with
    /// `next`.
    template <typename Result>
    void whenDone(QFuture<Result> future, const std::function<void(const Result&)>& use,
        const std::function<void()>& next);

    QString directory;
    bool keepOpen;
    QStringList log;
    QImage sample;
};

} // namespace pintalux::SelfTest
