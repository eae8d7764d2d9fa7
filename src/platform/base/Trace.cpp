// SPDX-License-Identifier: MIT
#include "platform/base/Trace.h"

#include <QElapsedTimer>
#include <QString>

#include <cstdio>

namespace pintalux::Trace {

namespace {

bool enabled = false;
QElapsedTimer clock;

} // namespace

void enable() { enabled = true; }

void begin(QStringView what)
{
    clock.start();
    mark(what);
}

void mark(QStringView milestone)
{
    if (!enabled)
        return;
    const double milliseconds = clock.isValid() ? double(clock.nsecsElapsed()) / 1e6 : 0;
    std::fprintf(stderr, "[trace] %8.2f ms %s\n", milliseconds, milestone.toUtf8().constData());
}

} // namespace pintalux::Trace
