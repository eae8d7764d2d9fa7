// SPDX-License-Identifier: MIT
#pragma once

#include "capture/CaptureOverlay.h"
#include "model/CaptureAction.h"
#include "platform/base/Error.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

namespace pintalux {

/// What became of a capture that somebody asked for to have it themselves.
struct CaptureAnswer {
    enum class Kind { picture, text, cancelled, failed };

    Kind kind = Kind::cancelled;
    QByteArray content; ///< a PNG with its physical size, or UTF-8: what was read, or a colour's "#RRGGBB"
    QString problem;    ///< of a failure, a Spanish sentence
};

/// One capture whose result goes to whoever asked for it, and nowhere else: nothing is copied, saved or
/// shown, and no sound is played. Main thread.
class CaptureJob : public QObject {
public:
    /// Called exactly once, as the last thing that the job does: it may destroy the job.
    using Done = std::function<void(const CaptureAnswer&)>;

    /// `screen` names the output whose full screen is wanted; empty for the one under the pointer.
    CaptureJob(CaptureAction action, QString screen, QObject* parent = nullptr);

    void start(Done done);
    /// Takes the selection away from the screen and answers that it was cancelled. A job that has not been
    /// started answers so when it is, and does nothing else.
    void cancel();

    /// The selection overlay on screen; null while there is none.
    CaptureOverlayController* overlay() const { return selection.get(); }

private:
    void takeScreen();
    void select(OverlayMode mode);
    void selected(const OverlayOutcome& outcome);
    void answerWith(const QFuture<CaptureResult>& shot);
    void answerWith(const CaptureResult& shot);
    void read(const CaptureResult& shot);
    void answer(const CaptureAnswer& result);
    void fail(const Error& error) { answer({CaptureAnswer::Kind::failed, {}, error.localizedDescription}); }

    CaptureAction action;
    QString screen;
    Done done;
    bool isCancelled = false;
    std::unique_ptr<CaptureOverlayController> selection;
};

} // namespace pintalux
