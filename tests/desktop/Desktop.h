#pragma once

#include "DisplaySession.h"
#include "capture/ScreenCapture.h"

#include <QFuture>
#include <QImage>

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

/// The whole desktop as an independent program sees it.
QImage pictureByOthers(const DisplaySession& session = desktop());

/// The number of pixels whose colour differs; all of them when the sizes do.
qsizetype differingPixels(const QImage& one, const QImage& other);

/// Waits, without stopping the event loop, for a capture's result.
template <typename T> T finished(QFuture<T> future)
{
    waitUntil([&] { return future.isFinished(); }, 10000);
    return future.takeResult();
}

/// The offered window of a process; none when it has none.
std::optional<WindowCandidate> candidateOf(const FrozenScreens& frozen, qint64 processId);

} // namespace pintalux::test
