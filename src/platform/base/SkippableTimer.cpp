// SPDX-License-Identifier: MIT
#include "platform/base/SkippableTimer.h"

#include <QList>
#include <QTimerEvent>

#include <algorithm>

namespace pintalux {

namespace {

QList<SkippableTimer*>& all()
{
    static QList<SkippableTimer*> timers;
    return timers;
}

} // namespace

SkippableTimer::SkippableTimer(QObject* parent)
    : QTimer(parent)
{
    setSingleShot(true);
    all().append(this);
}

SkippableTimer::~SkippableTimer() { all().removeOne(this); }

std::optional<std::chrono::milliseconds> SkippableTimer::skipNext()
{
    auto running = all();
    running.removeIf([](const auto* timer) { return !timer->isActive(); });
    if (running.isEmpty())
        return std::nullopt;
    auto* next = *std::ranges::min_element(running, {}, &QTimer::remainingTime);
    QTimerEvent end(next->timerId());
    next->timerEvent(&end);
    return next->intervalAsDuration();
}

} // namespace pintalux
