// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

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

/// A display server, a session bus and a window manager of our own, with a home folder of their own.
///
/// All of it ends with this object, by process id, and with this process should it crash. Needs no
/// application object.
class DisplaySession {
public:
    /// Returns when the desktop is ready; prints the reason and ends the process when it cannot be had.
    explicit DisplaySession(const DesktopOptions& options = {});
    ~DisplaySession();
    DisplaySession(const DisplaySession&) = delete;
    DisplaySession& operator=(const DisplaySession&) = delete;

    QByteArray display() const { return displayName; }
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

    /// The compositing manager, until it is told to stop.
    QProcess& startCompositor();

    /// Ends everything at once, as when a display server crashes.
    void end();

private:
    void startServer(const DesktopOptions& options);
    void startBus();

    QTemporaryDir home;
    QByteArray displayName;
    QProcessEnvironment programEnvironment;
    std::vector<std::unique_ptr<QProcess>> processes; ///< in starting order; the server first
};

/// Waits, while the event loop of this thread runs, until `condition` holds; false after the limit.
template <typename Condition> bool waitUntil(Condition condition, int limitMilliseconds = 3000);

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
