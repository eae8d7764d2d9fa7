#include "platform/x11/XSettings.h"

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
    settings = atomNamed(connection, "_XSETTINGS_SETTINGS");
    // Desktops have one daemon, which serves the first screen.
    const Reply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, atomNamed(connection, "_XSETTINGS_S0")), nullptr));
    if (!owner || owner->owner == XCB_WINDOW_NONE)
        return;
    daemon = owner->owner;
    // The toolkit may listen to it as well, with the same mask.
    const uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection, daemon, XCB_CW_EVENT_MASK, &events);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

ThemeNameWatch::~ThemeNameWatch() = default;

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
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
        return false;
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (change.window == daemon && change.atom == settings)
        changed();
    return false;
}

} // namespace pintalux::x11
