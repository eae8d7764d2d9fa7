// SPDX-License-Identifier: MIT
#pragma once

#include "OwnHome.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QSize>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace pintalux::test {

/// What a private desktop looks like.
struct DesktopOptions {
    QSize size{1280, 800};
    int depth = 24;
    bool windowManager = true;
    bool compositor = false;
    /// `xrandr --setmonitor` arguments, one list a monitor; none for one monitor as large as the screen.
    QList<QStringList> monitors = {};
    /// QT_SCREEN_SCALE_FACTORS for the programs of this desktop.
    QString scaleFactors = {};
};

/// Programs of our own with a home folder of their own.
///
/// All of them end with this object, by process id, and with this process should it crash. Needs no
/// application object.
class ProgramSession {
public:
    ProgramSession();
    virtual ~ProgramSession();
    ProgramSession(const ProgramSession&) = delete;
    ProgramSession& operator=(const ProgramSession&) = delete;

    /// For the programs that shall run on this desktop.
    const QProcessEnvironment& environment() const { return programEnvironment; }
    /// Makes this process one of those programs. Before its application object is made.
    void enter() const;

    /// Starts a program on this desktop that ends with the session at the latest.
    QProcess& start(const QString& program, const QStringList& arguments = {});
    /// Ends a program started by `start`.
    void stop(QProcess& process);
    /// Runs a program to its end; its standard output, or null with a message when it fails.
    QByteArray run(const QString& program, const QStringList& arguments = {}) const;

    /// Ends everything at once, as when a display server crashes.
    void end();

protected:
    void startBus();

    OwnHome home;
    QProcessEnvironment programEnvironment;

private:
    std::vector<std::unique_ptr<QProcess>> processes; ///< in starting order; the server first
};

/// A display server, a session bus and a window manager of our own.
class DisplaySession : public ProgramSession {
public:
    /// Returns when the desktop is ready; throws the reason as a std::runtime_error when it cannot be had.
    explicit DisplaySession(const DesktopOptions& options = {});
    ~DisplaySession() override;

    QByteArray display() const { return displayName; }

    /// The compositing manager, until it is told to stop; throws when it does not come up.
    QProcess& startCompositor();

private:
    void startServer(const DesktopOptions& options);
    void startWindowManager();

    QByteArray displayName;
};

/// For what a session needs and cannot have.
[[noreturn]] void giveUp(const QString& reason);
/// The next line of what a program says; empty when it says none in time.
QByteArray firstLine(QProcess& process);

/// How long a test waits for another program before it says that the thing does not happen, in milliseconds.
/// A machine that is busy with something else is slow, not broken; where all is well nobody waits that long.
constexpr int patience = 30000;

/// Waits, while the event loop of this thread runs, until `condition` holds; false after the limit.
template <typename Condition> bool waitUntil(Condition condition, int limitMilliseconds = patience);

/// Lets time pass while the event loop of this thread runs, for what gives no sign that could be waited for.
void letPass(int milliseconds);

} // namespace pintalux::test

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

template <typename Condition> bool pintalux::test::waitUntil(Condition condition, int limitMilliseconds)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > limitMilliseconds)
            return false;
        if (QCoreApplication::instance())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::msleep(5);
    }
    return true;
}
