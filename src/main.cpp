// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"
#include "app/CaptureBus.h"
#include "app/HotKeyCenter.h"
#include "app/QuitSignals.h"
#include "app/SingleInstance.h"
#include "app/ToolkitTexts.h"
#include "app/commandline/AnnotateCommand.h"
#include "app/commandline/CommandLine.h"
#include "app/commandline/Completion.h"
#include "app/commandline/PictureOutput.h"
#include "app/icon/AppIcon.h"
#include "capture/ScreenCapture.h"
#include "capture/text/OCR.h"
#include "controls/ToolTips.h"
#include "controls/theme/ThemeFollower.h"
#include "platform/backend/DisplaySystem.h"
#include "platform/base/ApplicationId.h"
#include "platform/base/Files.h"
#include "platform/base/Trace.h"
#include "platform/base/UserDefaults.h"
#include "platform/image/DecoderProcess.h"
#include "platform/image/ImageFile.h"
#include "selftest/SelfTest.h"
#include "settings/Settings.h"

#include <QApplication>
#include <QTextStream>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

constexpr int wrongUse = 2;
constexpr int cancelled = 3;

int print(FILE* stream, const QString& text)
{
    QTextStream(stream) << text << Qt::flush;
    return 0;
}

int complain(const QString& sentence, int status)
{
    print(stderr, u"pintalux: "_s + sentence + u"\n"_s);
    return status;
}

/// The toolkit's remarks are not for the person at the shell; PINTALUX_DEBUG shows them to whoever looks for
/// a fault.
void keepToolkitQuiet()
{
    if (qEnvironmentVariableIsSet("PINTALUX_DEBUG"))
        return;
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& message) {
        if (type == QtCriticalMsg || type == QtFatalMsg)
            complain(message, EXIT_FAILURE);
    });
}

int runWithoutDisplay(int argc, char** argv, const CommandLine& commandLine)
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // fonts and drawing in memory
    const QGuiApplication application(argc, argv);
    if (commandLine.mode == CommandLine::Mode::annotate)
        return AnnotateCommand::run(commandLine);
    AppIcon::writeIconset(commandLine.directory);
    return EXIT_SUCCESS;
}

/// What every run with windows has in common.
void prepare(QApplication& application)
{
    QApplication::setApplicationName(u"pintalux"_s);
    QApplication::setApplicationDisplayName(u"Pintalux"_s);
    QApplication::setDesktopFileName(applicationId.toString());
    QApplication::setQuitOnLastWindowClosed(false);
    WindowSystem::use(DisplaySystem::makeWindowSystem());
    ScreenCapture::setSource(DisplaySystem::makeScreenSource());
    translateToolkit(application);
    ToolTips::install(application);
    followDesktopTheme(application);
}

int runSelfTest(int argc, char** argv, const CommandLine& commandLine)
{
    QApplication application(argc, argv);
    prepare(application);
    // What the run changes on its way never reaches the person's settings, even if it is killed.
    auto trialStore = UserDefaults::inMemory(UserDefaults::standard().all());
    Settings trial(trialStore);
    trial.setHasLaunchedBefore(true);
    AppDelegate delegate(trial, HotKeyCenter::shared(), DisplaySystem::makeWorkspace());
    delegate.finishLaunching({});
    SelfTest::Run selfTest(
        {commandLine.directory, commandLine.overlay, commandLine.keepOpen}, delegate, trial);
    if (!selfTest.start())
        return EXIT_FAILURE;
    return QApplication::exec();
}

/// Puts what was captured where the command wants it; the process's exit status.
int putOut(const CaptureAnswer& answer, const QString& path)
{
    switch (answer.kind) {
    case CaptureAnswer::Kind::cancelled:
        return cancelled;
    case CaptureAnswer::Kind::failed:
        return complain(u"No se pudo capturar: "_s + answer.problem, EXIT_FAILURE);
    case CaptureAnswer::Kind::picture:
    case CaptureAnswer::Kind::text:
        break;
    }
    try {
        if (answer.kind == CaptureAnswer::Kind::text)
            PictureOutput::writeText(answer.content, path);
        else
            PictureOutput::write(answer.content, path);
        return EXIT_SUCCESS;
    } catch (const Error& error) {
        return complain(u"No se pudo guardar: "_s + error.localizedDescription, EXIT_FAILURE);
    }
}

/// Where the program runs, it takes the capture: it knows its own windows and keeps them out.
CaptureAnswer capture(const CommandLine& commandLine)
{
    if (auto answer = CaptureBus::ask(*commandLine.capture, commandLine.screen))
        return *answer;
    CaptureAnswer result;
    CaptureJob job(*commandLine.capture, commandLine.screen);
    job.start([&](const CaptureAnswer& answer) {
        result = answer;
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    QGuiApplication::exec();
    return result;
}

/// Why nothing can be written under that name, a Spanish sentence; empty when it can.
QString outputProblem(const CommandLine& commandLine)
{
    const bool isText
        = *commandLine.capture == CaptureAction::text || *commandLine.capture == CaptureAction::color;
    try {
        if (!isText)
            PictureOutput::requireName(commandLine.outputFile);
        return {};
    } catch (const Error& error) {
        return error.localizedDescription;
    }
}

int captureToFile(int argc, char** argv, const CommandLine& commandLine)
{
    const auto& path = commandLine.outputFile;
    if (*commandLine.capture == CaptureAction::fullScreen) {
        const QGuiApplication application(argc, argv);
        ScreenCapture::setSource(DisplaySystem::makeScreenSource());
        return putOut(capture(commandLine), path);
    }
    QApplication application(argc, argv);
    prepare(application);
    quitOnSignals();
    return putOut(capture(commandLine), path);
}

/// Why the file is no picture to open, a Spanish sentence; empty for one that can be read.
QString openingProblem(const QString& path)
{
    try {
        readImageFile(path);
        return {};
    } catch (const Error& error) {
        return error.localizedDescription;
    }
}

/// Hands the wish to the process that runs already. None when that one is gone and this process took its
/// place.
std::optional<int> handOver(SingleInstance& instance, const CommandLine& commandLine)
{
    bool taken = true;
    if (commandLine.capture)
        taken = instance.forwardAction(rawValue(*commandLine.capture),
            commandLine.screen.isEmpty() ? QVariantList() : QVariantList{commandLine.screen});
    int status = EXIT_SUCCESS;
    QStringList pictures;
    for (const auto& path : commandLine.openFiles) {
        if (const auto problem = openingProblem(path); problem.isEmpty())
            pictures << path;
        else
            status = complain(problem, EXIT_FAILURE);
    }
    if (taken && !pictures.isEmpty())
        taken = instance.forwardOpen(pictures);
    if (!commandLine.capture && commandLine.openFiles.isEmpty())
        taken = instance.forwardActivation();
    if (taken)
        return status;
    if (instance.role() != SingleInstance::Role::second)
        return std::nullopt;
    return complain(u"Pintalux ya está en marcha, pero no responde."_s, EXIT_FAILURE);
}

int runProgram(int argc, char** argv, const CommandLine& commandLine)
{
    if (commandLine.trace)
        Trace::enable();
    QApplication application(argc, argv);
    SingleInstance instance;
    instance.knowsAction = [](const QString& name) { return programActionNamed(name).has_value(); };
    if (instance.role() == SingleInstance::Role::second)
        if (const auto status = handOver(instance, commandLine))
            return *status;

    prepare(application);
    quitOnSignals();
    finishSavingWithoutDisplay();
    AppDelegate delegate(Settings::shared(), HotKeyCenter::shared(), DisplaySystem::makeWorkspace());
    QObject::connect(&instance, &SingleInstance::activated, &delegate, &AppDelegate::reopen);
    QObject::connect(&instance, &SingleInstance::openRequested, &delegate, [&](const QStringList& paths) {
        for (const auto& path : paths)
            delegate.openImageFile(path);
    });
    QObject::connect(&instance, &SingleInstance::actionRequested, &delegate,
        [&](const QString& name, const QVariantList& parameters) {
            delegate.runNamed(name, parameters.value(0).toString());
        });
    const CaptureBus captures([&](auto action, const auto& screen, const auto& done) {
        return delegate.captureFor(action, screen, done);
    });
    delegate.finishLaunching(commandLine);
    return QApplication::exec();
}

int run(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const auto commandLine = CommandLine::parse(arguments);
    switch (commandLine.mode) {
    case CommandLine::Mode::misuse:
        return complain(commandLine.problem + u"\nPrueba «pintalux --help»."_s, wrongUse);
    case CommandLine::Mode::help:
        return print(stdout, CommandLine::help());
    case CommandLine::Mode::version:
        return print(stdout, u"Pintalux "_s + CommandLine::version() + u"\n"_s);
    case CommandLine::Mode::completion:
        return print(stdout, completionScript(commandLine.shell));
    case CommandLine::Mode::renderIcon:
    case CommandLine::Mode::annotate:
        return runWithoutDisplay(argc, argv, commandLine);
    case CommandLine::Mode::normal:
    case CommandLine::Mode::selfTest:
    case CommandLine::Mode::captureToFile:
        break;
    }

    if (commandLine.mode == CommandLine::Mode::captureToFile)
        if (const auto problem = outputProblem(commandLine); !problem.isEmpty())
            return complain(problem, wrongUse);
    DisplaySystem::choose();
    if (const auto problem = DisplaySystem::problem())
        return complain(*problem, EXIT_FAILURE);
    if (commandLine.mode == CommandLine::Mode::selfTest)
        return runSelfTest(argc, argv, commandLine);
    if (commandLine.mode == CommandLine::Mode::captureToFile)
        return captureToFile(argc, argv, commandLine);
    return runProgram(argc, argv, commandLine);
}

} // namespace

int main(int argc, char** argv)
{
    if (const auto decoded = DecoderProcess::serve(argc, argv))
        return *decoded;
    reportTooLargeFiles();
    keepToolkitQuiet();
    const int status = run(argc, argv);
    if (!OCR::isStillReading())
        return status;
    // All is put away but for a thread, which nobody should wait for.
    std::fflush(nullptr);
    std::_Exit(status);
}
