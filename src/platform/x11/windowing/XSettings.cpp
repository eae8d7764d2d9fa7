// SPDX-License-Identifier: MIT
#include "platform/x11/windowing/XSettings.h"

#include "platform/x11/Toolkit.h"
#include "platform/x11/XcbConnection.h"

#include <QCoreApplication>
#include <QtEndian>

namespace pintalux::x11 {

namespace {

/// Reads numbers and padded texts one after the other; what lies beyond the end is read as nothing.
class Reader {
public:
    explicit Reader(const QByteArray& published)
        : bytes(published)
        , bigEndian(!bytes.isEmpty() && bytes[0] != 0)
    {
    }

    bool failed() const { return isFailed; }

    QByteArray take(qsizetype count)
    {
        isFailed = isFailed || count < 0 || count > bytes.size() - at;
        if (isFailed)
            return {};
        auto result = bytes.mid(at, count);
        at += count;
        return result;
    }

    QByteArray takePadded(qsizetype count)
    {
        auto result = take(count);
        take((4 - count % 4) % 4);
        return result;
    }

    template <typename Number> Number number()
    {
        const auto raw = take(sizeof(Number));
        if (raw.isEmpty())
            return 0;
        return bigEndian ? qFromBigEndian<Number>(raw.constData())
                         : qFromLittleEndian<Number>(raw.constData());
    }

private:
    QByteArray bytes;
    qsizetype at = 0;
    bool bigEndian;
    bool isFailed = false;
};

constexpr uint8_t textType = 1;
constexpr uint8_t colorType = 2;

} // namespace

std::optional<QString> textSetting(const QByteArray& published, const QByteArray& name)
{
    Reader reader(published);
    reader.take(8); // byte order and serial number
    const auto count = reader.number<uint32_t>();
    for (uint32_t i = 0; i < count && !reader.failed(); ++i) {
        const auto type = reader.number<uint8_t>();
        reader.take(1);
        const auto found = reader.takePadded(reader.number<uint16_t>());
        reader.take(4); // when it changed last
        if (type != textType) {
            reader.take(type == colorType ? 8 : 4);
            continue;
        }
        const auto value = reader.takePadded(reader.number<uint32_t>());
        if (found == name && !reader.failed())
            return QString::fromUtf8(value);
    }
    return std::nullopt;
}

ThemeNameWatch::ThemeNameWatch(std::function<void()> whenChanged)
    : changed(std::move(whenChanged))
{
    auto* connection = toolkitConnection();
    if (!connection)
        return;
    settings = toolkitAtom("_XSETTINGS_SETTINGS");
    // Desktops have one daemon, which serves the first screen.
    selection = toolkitAtom("_XSETTINGS_S0");
    manager = toolkitAtom("MANAGER");
    findDaemon(connection);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

ThemeNameWatch::~ThemeNameWatch() = default;

void ThemeNameWatch::findDaemon(xcb_connection_t* connection)
{
    const Reply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection), nullptr));
    daemon = owner ? owner->owner : xcb_window_t(XCB_WINDOW_NONE);
    if (daemon == XCB_WINDOW_NONE)
        return;
    // The toolkit may listen to it as well, with the same mask.
    const uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection, daemon, XCB_CW_EVENT_MASK, &events);
}

QString ThemeNameWatch::name() const
{
    auto* connection = daemon == XCB_WINDOW_NONE ? nullptr : toolkitConnection();
    if (!connection)
        return {};
    constexpr uint32_t mostWords = 1 << 16;
    const Reply<xcb_get_property_reply_t> answer(xcb_get_property_reply(connection,
        xcb_get_property(connection, 0, daemon, settings, XCB_GET_PROPERTY_TYPE_ANY, 0, mostWords), nullptr));
    if (!answer)
        return {};
    const QByteArray published(static_cast<const char*>(xcb_get_property_value(answer.get())),
        xcb_get_property_value_length(answer.get()));
    return textSetting(published, "Net/ThemeName").value_or(QString());
}

bool ThemeNameWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    switch (static_cast<const xcb_generic_event_t*>(message)->response_type & 0x7f) {
    case XCB_PROPERTY_NOTIFY: {
        const auto& change = *static_cast<const xcb_property_notify_event_t*>(message);
        if (change.window == daemon && change.atom == settings)
            changed();
        break;
    }
    case XCB_DESTROY_NOTIFY:
        if (static_cast<const xcb_destroy_notify_event_t*>(message)->window == daemon)
            follow();
        break;
    case XCB_CLIENT_MESSAGE: {
        // The toolkit has the root window's events, among which is this one.
        const auto& said = *static_cast<const xcb_client_message_event_t*>(message);
        if (said.type == manager && said.format == 32 && said.data.data32[1] == selection)
            follow();
        break;
    }
    default:
        break;
    }
    return false;
}

void ThemeNameWatch::follow()
{
    if (auto* connection = toolkitConnection())
        findDaemon(connection);
    changed();
}

} // namespace pintalux::x11
