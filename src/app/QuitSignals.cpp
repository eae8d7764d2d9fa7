// SPDX-License-Identifier: MIT
#include "app/QuitSignals.h"

#include "platform/base/Worker.h"
#include "render/export/Exporter.h"

#include <QApplication>
#include <QSocketNotifier>

#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace pintalux {

namespace {

constexpr int shellBase = 128; ///< a shell's status for a signal is this much more

/// Written to by the handler, read by the event loop.
std::array<int, 2> ends{-1, -1};

void passOn(int signal)
{
    const int before = errno;
    const auto number = static_cast<unsigned char>(signal);
    [[maybe_unused]] const auto written = ::write(ends[0], &number, 1);
    errno = before;
}

} // namespace

void finishSavingWithoutDisplay()
{
    ::on_exit(
        [](int status, void*) {
            if (!QCoreApplication::instance())
                return; // put away already: the end of `main`
            Exporter::savingThread().waitForDone();
            std::fflush(nullptr);
            std::_Exit(status);
        },
        nullptr);
}

void quitOnSignals()
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()) != 0)
        return; // the signals end the process at once, as they did
    auto* arrived = new QSocketNotifier(ends[1], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(arrived, &QSocketNotifier::activated, arrived, [] {
        unsigned char number = 0;
        if (::read(ends[1], &number, 1) != 1)
            return;
        // As the menu does, for windows put things in order when they close; but for none that refuses.
        QApplication::closeAllWindows();
        QCoreApplication::exit(shellBase + number);
    });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction former { };
        if (::sigaction(signal, nullptr, &former) != 0 || former.sa_handler == SIG_IGN)
            continue;
        struct sigaction action { };
        action.sa_handler = passOn;
        action.sa_flags = SA_RESTART | int(SA_RESETHAND);
        ::sigaction(signal, &action, nullptr);
    }
}

} // namespace pintalux
