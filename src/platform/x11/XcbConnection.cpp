// SPDX-License-Identifier: MIT
#include "platform/x11/XcbConnection.h"

#include <QDeadlineTimer>

#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <xcb/xcbext.h>

#include <cstring>
#include <string_view>

using namespace Qt::StringLiterals;

namespace pintalux::x11 {

namespace {

// A whole 4K screen takes some 10 ms; only a server that is stopped or grabbed needs longer than this.
constexpr int answerLimitMilliseconds = 5000;
constexpr uint32_t longestProperty = 1 << 16; // in units of four bytes

constexpr std::array<std::string_view, static_cast<std::size_t>(Atom::count)> atomNames{
    "WM_STATE", "_NET_WM_WINDOW_OPACITY", "_GTK_FRAME_EXTENTS"};

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

void ignoreBrokenPipe()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

QList<quint32> Property::cards() const
{
    QList<quint32> items(bytes.size() / qsizetype(sizeof(quint32)));
    if (!items.isEmpty())
        std::memcpy(items.data(), bytes.constData(), std::size_t(items.size()) * sizeof(quint32));
    return items;
}

XcbConnection::XcbConnection(const QByteArray& displayName)
    : connection(xcb_connect(displayName.isEmpty() ? nullptr : displayName.constData(), &number))
{
    if (isBroken())
        throw connectionLost();
    auto screens = xcb_setup_roots_iterator(&setup());
    for (int skip = number; skip > 0 && screens.rem > 1; --skip)
        xcb_screen_next(&screens);
    defaultScreen = screens.data;

    std::array<xcb_intern_atom_cookie_t, atomNames.size()> cookies;
    for (std::size_t index = 0; index < atomNames.size(); ++index)
        cookies[index]
            = xcb_intern_atom(get(), 0, uint16_t(atomNames[index].size()), atomNames[index].data());
    // The library waits for its answers without a limit; when a later one is here they are, too.
    ewmh = makeHints(
        get(), [this] { reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(get()).sequence); });
    if (!ewmh)
        throw connectionLost();
    for (std::size_t index = 0; index < atomNames.size(); ++index)
        if (const auto answer = reply<xcb_intern_atom_reply_t>(cookies[index].sequence))
            atoms[index] = answer->atom;
}

bool XcbConnection::hasExtension(xcb_extension_t& extension) const
{
    const auto* data = xcb_get_extension_data(get(), &extension);
    return data && data->present;
}

bool XcbConnection::hasCompositor() const
{
    const auto selection = ewmh->_NET_WM_CM_Sn[number];
    const auto owner
        = reply<xcb_get_selection_owner_reply_t>(xcb_get_selection_owner(get(), selection).sequence);
    return owner && owner->owner != XCB_WINDOW_NONE;
}

void* XcbConnection::wait(unsigned sequence, int* errorCode) const
{
    const QDeadlineTimer deadline(answerLimitMilliseconds);
    xcb_flush(get());
    void* answer = nullptr;
    xcb_generic_error_t* failure = nullptr;
    while (!xcb_poll_for_reply(get(), sequence, &answer, &failure)) {
        pollfd wake{xcb_get_file_descriptor(get()), POLLIN, 0};
        if (deadline.hasExpired()) {
            gaveUp = true;
            throw temporaryFailure();
        }
        poll(&wake, 1, int(deadline.remainingTime()));
    }
    const Reply<xcb_generic_error_t> owned(failure);
    if (errorCode)
        *errorCode = failure ? failure->error_code : 0;
    if (!answer && isBroken())
        throw connectionLost();
    return answer;
}

bool XcbConnection::isServed(xcb_void_cookie_t request) const
{
    // Requests are served in their order. Asking for the refusal alone would wait without a limit.
    reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(get()).sequence);
    const Reply<xcb_generic_error_t> refusal(xcb_request_check(get(), request));
    return !refusal;
}

xcb_get_property_cookie_t XcbConnection::askProperty(xcb_window_t window, xcb_atom_t name) const
{
    return xcb_get_property(get(), 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty);
}

Property XcbConnection::property(xcb_get_property_cookie_t cookie) const
{
    const auto answer = reply<xcb_get_property_reply_t>(cookie.sequence);
    if (!answer)
        return {};
    const auto* bytes = static_cast<const char*>(xcb_get_property_value(answer.get()));
    return {QByteArray(bytes, xcb_get_property_value_length(answer.get())), answer->type};
}

void XcbConnection::drainEvents() const
{
    while (const auto event = Reply<xcb_generic_event_t>(xcb_poll_for_event(get()))) { }
}

} // namespace pintalux::x11
