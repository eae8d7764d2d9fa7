#include "app/AnnotateCommand.h"
#include "app/AppIcon.h"
#include "app/CommandLine.h"
#include "platform/DisplayServer.h"
#include "selftest/SelfTest.h"

#include <QApplication>
#include <QTextStream>

#include <cstdio>
#include <cstdlib>

using namespace pintalux;

namespace {

constexpr int wrongUse = 2;

int print(FILE* stream, const QString& text)
{
    QTextStream(stream) << text << Qt::flush;
    return 0;
}

int complain(const QString& sentence, int status)
{
    print(stderr, u"pintalux: "_qs + sentence + u"\n"_qs);
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

int runSelfTest(int argc, char** argv, const CommandLine& commandLine)
{
    if (const auto problem = displayProblem())
        return complain(*problem, EXIT_FAILURE);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    SelfTest::Run selfTest(commandLine.directory, commandLine.keepOpen);
    if (!selfTest.start())
        return EXIT_FAILURE;
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    keepToolkitQuiet();
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const auto commandLine = CommandLine::parse(arguments);
    switch (commandLine.mode) {
    case CommandLine::Mode::misuse:
        return complain(commandLine.problem + u"\nPrueba «pintalux --help»."_qs, wrongUse);
    case CommandLine::Mode::help:
        return print(stdout, CommandLine::help());
    case CommandLine::Mode::version:
        return print(stdout, u"Pintalux "_qs + CommandLine::version() + u"\n"_qs);
    case CommandLine::Mode::renderIcon:
    case CommandLine::Mode::annotate:
        return runWithoutDisplay(argc, argv, commandLine);
    case CommandLine::Mode::selfTest:
        return runSelfTest(argc, argv, commandLine);
    case CommandLine::Mode::normal:
        break;
    }
    return complain(
        u"La bandeja y el editor aún no forman parte de esta versión.\n\n"_qs + CommandLine::help(),
        EXIT_FAILURE);
}
