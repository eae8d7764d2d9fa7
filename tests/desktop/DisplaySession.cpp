// SPDX-License-Identifier: MIT
#include "DisplaySession.h"

#include "CompositingProbe.h"

#include <QFile>

#include <signal.h>
#include <sys/prctl.h>

#include <cstdio>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace pintalux::test {

void giveUp(const QString& reason) { throw std::runtime_error("DisplaySession: " + reason.toStdString()); }

QByteArray firstLine(QProcess& process)
{
    QElapsedTimer clock;
    clock.start();
    while (!process.canReadLine() && clock.elapsed() < patience && process.state() != QProcess::NotRunning)
        process.waitForReadyRead(100);
    return process.readLine().trimmed();
}

ProgramSession::ProgramSession()
    : programEnvironment(home.environment())
{
}

ProgramSession::~ProgramSession() { end(); }

DisplaySession::DisplaySession(const DesktopOptions& options)
{
    programEnvironment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    startServer(options);
    startBus();
    for (const auto& monitor : options.monitors)
        run(u"xrandr"_s, QStringList{u"--setmonitor"_s} + monitor);
    if (!options.scaleFactors.isEmpty())
        programEnvironment.insert(u"QT_SCREEN_SCALE_FACTORS"_s, options.scaleFactors);
    if (options.windowManager)
        startWindowManager();
    if (options.compositor)
        startCompositor();
}

DisplaySession::~DisplaySession() { end(); }

void DisplaySession::startServer(const DesktopOptions& options)
{
    const auto geometry
        = u"%1x%2x%3"_s.arg(options.size.width()).arg(options.size.height()).arg(options.depth);
    // Without -noreset the server would forget its monitors when the first client leaves.
    auto& server = start(u"Xvfb"_s,
        {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, geometry, u"-noreset"_s, u"-nolisten"_s, u"tcp"_s});
    const auto number = firstLine(server);
    if (number.isEmpty())
        giveUp(u"Xvfb does not come up"_s);
    displayName = ':' + number;
    programEnvironment.insert(u"DISPLAY"_s, QString::fromLatin1(displayName));
}

void ProgramSession::startBus()
{
    auto& bus = start(u"dbus-daemon"_s,
        {u"--config-file=" TEST_DATA "/session-bus.conf"_s, u"--nofork"_s, u"--print-address=1"_s});
    const auto address = firstLine(bus);
    if (address.isEmpty())
        giveUp(u"dbus-daemon does not come up"_s);
    programEnvironment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, QString::fromLatin1(address));
}

void DisplaySession::startWindowManager()
{
    // It names itself early. Until it has looked through the windows that there are, which without font
    // caches takes seconds, it overlooks for good one that is shown; then it runs this.
    const QString managing = home.path() + u"/managing"_s;
    start(u"openbox"_s, {u"--sm-disable"_s, u"--startup"_s, u"touch %1"_s.arg(managing)});
    if (!waitUntil([&] { return QFile::exists(managing); }))
        giveUp(u"openbox does not come up"_s);
}

void ProgramSession::enter() const { OwnHome::enter(programEnvironment); }

QProcess& ProgramSession::start(const QString& program, const QStringList& arguments)
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(programEnvironment);
    process->setStandardErrorFile(QProcess::nullDevice());
    process->setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process->start(program, arguments);
    if (!process->waitForStarted(patience))
        giveUp(u"%1 does not start: %2"_s.arg(program, process->errorString()));
    return *processes.emplace_back(std::move(process));
}

void ProgramSession::stop(QProcess& process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (process.waitForFinished(5000))
        return;
    process.kill();
    process.waitForFinished(5000);
}

QByteArray ProgramSession::run(const QString& program, const QStringList& arguments) const
{
    QProcess process;
    process.setProcessEnvironment(programEnvironment);
    process.start(program, arguments);
    if (process.waitForFinished(patience) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0)
        return process.readAllStandardOutput();
    std::fprintf(stderr, "DisplaySession: %s: %s%s\n", qPrintable(program), qPrintable(process.errorString()),
        process.readAllStandardError().constData());
    return {};
}

QProcess& DisplaySession::startCompositor()
{
    auto& compositor
        = start(u"picom"_s, {u"--config"_s, u"/dev/null"_s, u"--backend"_s, u"xrender"_s, u"--shadow"_s});
    const x11::XcbConnection connection(displayName);
    CompositingProbe probe(connection);
    // It names itself before its first picture of the screen.
    const auto hasPainted = [&] { return connection.hasCompositor() && probe.isComposited(); };
    if (!waitUntil(hasPainted) || !waitUntil([&] { return probe.isGone(); }))
        giveUp(u"picom does not come up"_s);
    return compositor;
}

void letPass(int milliseconds)
{
    waitUntil([] { return false; }, milliseconds);
}

void ProgramSession::end()
{
    while (!processes.empty()) {
        stop(*processes.back());
        processes.pop_back();
    }
}

} // namespace pintalux::test
