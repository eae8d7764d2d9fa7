// SPDX-License-Identifier: MIT
#include "platform/wayland/Connection.h"

#include "platform/desktop/ScreenSource.h"

#include <QDeadlineTimer>
#include <QVarLengthArray>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace pintalux::wayland {

namespace {

// A compositor answers with its next frame; one that is stopped or starved needs longer than this.
constexpr int answerLimitMilliseconds = 5000;

wl_display* connected()
{
    auto* display = wl_display_connect(nullptr);
    if (!display)
        throw connectionLost();
    return display;
}

/// Ends an announced reading that did not take place.
class Reading {
public:
    explicit Reading(wl_display* display)
        : display(display)
    {
        while (wl_display_prepare_read(display) != 0)
            if (wl_display_dispatch_pending(display) < 0)
                throw connectionLost();
    }
    ~Reading()
    {
        if (display)
            wl_display_cancel_read(display);
    }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    bool read() { return wl_display_read_events(std::exchange(display, nullptr)) == 0; }

private:
    wl_display* display;
};

} // namespace

Error connectionLost()
{
    return {ScreenSource::errorDomain, 1, u"No hay conexión con el servidor gráfico."_s};
}

Error temporaryFailure()
{
    return {ScreenSource::errorDomain, ScreenSource::temporaryFailure,
        u"La pantalla no se pudo leer en este momento."_s};
}

Connection::Connection()
    : display(connected())
    , registry(display.get())
{
}

void Connection::waitUntil(const std::function<bool()>& reached) const
{
    const QDeadlineTimer deadline(answerLimitMilliseconds);
    for (;;) {
        if (wl_display_dispatch_pending(display.get()) < 0)
            throw connectionLost();
        if (reached())
            return;
        if (!dispatch(int(deadline.remainingTime())))
            throw connectionLost();
    }
}

bool Connection::dispatch(int milliseconds, std::span<pollfd> others) const
{
    Reading reading(display.get());
    // What does not fit now fits when the compositor has read some of it.
    const bool isFull = wl_display_flush(display.get()) < 0 && errno == EAGAIN;
    QVarLengthArray<pollfd, 8> all{
        {wl_display_get_fd(display.get()), short(isFull ? POLLIN | POLLOUT : POLLIN), 0}};
    for (const auto& other : others)
        all.append(other);
    const int ready = poll(all.data(), nfds_t(all.size()), milliseconds);
    for (std::size_t index = 0; index < others.size(); ++index)
        others[index].revents = ready > 0 ? all[qsizetype(index) + 1].revents : short(0);
    if (ready <= 0)
        return ready < 0 && errno == EINTR;
    const auto told = all.first().revents;
    const bool isGone = (told & POLLIN) == 0 && (told & (POLLERR | POLLHUP)) != 0;
    if (isGone || ((told & POLLIN) != 0 && !reading.read()) || wl_display_dispatch_pending(display.get()) < 0)
        throw connectionLost();
    return true;
}

void Connection::settle() const
{
    bool isDone = false;
    const Handle<wl_callback, wl_callback_destroy> callback(wl_display_sync(display.get()));
    static constexpr wl_callback_listener listener{
        .done = [](void* done, wl_callback*, uint32_t) { *static_cast<bool*>(done) = true; }};
    wl_callback_add_listener(callback.get(), &listener, &isDone);
    waitUntil([&] { return isDone; });
}

} // namespace pintalux::wayland
