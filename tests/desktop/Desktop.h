// SPDX-License-Identifier: MIT
#pragma once

#include "DisplaySession.h"
#include "Pictures.h"
#include "capture/ScreenCapture.h"

#include <QFuture>

namespace pintalux::test {

/// The desktop that this test program is part of.
DisplaySession& desktop();

/// A demonstration window on a desktop, once it is mapped; ends with this object.
class DemoWindow {
public:
    DemoWindow(const QString& title, const QString& geometry, const QString& color,
        DisplaySession& on = desktop(), const QStringList& more = {});
    ~DemoWindow();
    DemoWindow(const DemoWindow&) = delete;
    DemoWindow& operator=(const DemoWindow&) = delete;

    /// The client window's number, as other programs name it.
    QString id() const { return windowId; }
    qint64 processId() const { return process.processId(); }
    void end() { session.stop(process); }

private:
    DisplaySession& session;
    QProcess& process;
    QString windowId;
};

/// Hands xdotool its commands, separated by spaces.
void xdotool(const QString& commands, const DisplaySession& session = desktop());

/// The window that has the keyboard, as other programs name it.
QString focusedWindow(const DisplaySession& session = desktop());

/// Calls a method of the running program's interface on the session bus, `org.freedesktop.Application`; what
/// gdbus prints of the answer.
QByteArray callProgram(const QString& method, const QStringList& arguments);

/// The whole desktop as an independent program sees it.
QImage pictureByOthers(const DisplaySession& session = desktop());

/// Waits, without stopping the event loop, for a capture's result.
template <typename T> T finished(QFuture<T> future)
{
    waitUntil([&] { return future.isFinished(); });
    return future.takeResult();
}

/// The sentence of the error that some work meets; empty when it meets none.
template <typename Work> QString sentenceOf(Work work)
{
    try {
        work();
    } catch (const Error& error) {
        return error.localizedDescription;
    }
    return {};
}

/// The offered window of a process; none when it has none.
std::optional<WindowCandidate> candidateOf(const FrozenScreens& frozen, qint64 processId);

} // namespace pintalux::test
