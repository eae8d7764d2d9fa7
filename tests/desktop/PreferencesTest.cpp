// SPDX-License-Identifier: MIT

// The preferences as a person uses them: the real executable, real clicks, its files read back.

#include "ProgramStage.h"
#include "controls/theme/Theme.h"
#include "platform/x11/XcbConnection.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

using namespace pintalux::test;

namespace {

/// The desktop's settings portal, which knows one setting: whether dark windows are wished.
class FakePortal : public QDBusVirtualObject {
public:
    explicit FakePortal(uint wished)
        : scheme(wished)
        , bus(QDBusConnection::connectToBus(
              desktop().environment().value(u"DBUS_SESSION_BUS_ADDRESS"_s), u"portal"_s))
    {
        bus.registerVirtualObject(path, this);
        EXPECT_TRUE(bus.registerService(u"org.freedesktop.portal.Desktop"_s));
    }
    ~FakePortal() override { QDBusConnection::disconnectFromBus(u"portal"_s); }

    void wish(uint wished)
    {
        scheme = wished;
        auto change = QDBusMessage::createSignal(path, interface, u"SettingChanged"_s);
        change << u"org.freedesktop.appearance"_s << u"color-scheme"_s
               << QVariant::fromValue(QDBusVariant(scheme));
        bus.send(change);
    }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        if (message.member() != u"Read")
            return false;
        const QDBusVariant value(scheme);
        return connection.send(message.createReply(QVariant::fromValue(
            QDBusVariant(QVariant::fromValue(value))))); // in two variants, as the real one does
    }

private:
    inline static const QString path = u"/org/freedesktop/portal/desktop"_s;
    inline static const QString interface = u"org.freedesktop.portal.Settings"_s;
    uint scheme;
    QDBusConnection bus;
};

/// The desktop's settings daemon, which publishes one setting: the name of the widgets' theme.
class FakeSettingsDaemon {
public:
    explicit FakeSettingsDaemon(const QByteArray& theme)
        : window(xcb_generate_id(display.get()))
    {
        xcb_create_window(display.get(), 0, window, display.root(), 0, 0, 1, 1, 0,
            XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        publish(theme);
        xcb_set_selection_owner(display.get(), window, atom("_XSETTINGS_S0"), XCB_CURRENT_TIME);
        xcb_client_message_event_t announcement{};
        announcement.response_type = XCB_CLIENT_MESSAGE;
        announcement.format = 32;
        announcement.window = display.root();
        announcement.type = atom("MANAGER");
        announcement.data.data32[1] = atom("_XSETTINGS_S0");
        announcement.data.data32[2] = window;
        xcb_send_event(display.get(), false, display.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
            reinterpret_cast<const char*>(&announcement));
        xcb_flush(display.get());
    }

    void publish(const QByteArray& theme)
    {
        const QByteArray name = "Net/ThemeName";
        QByteArray bytes;
        const auto add = [&](auto number) { bytes.append(reinterpret_cast<char*>(&number), sizeof number); };
        const auto addText
            = [&](const QByteArray& text) { bytes += text + QByteArray((4 - text.size() % 4) % 4, '\0'); };
        add(quint32(0)); // this machine's byte order
        add(quint32(++serial));
        add(quint32(1));
        add(quint16(1)); // a text
        add(quint16(name.size()));
        addText(name);
        add(quint32(serial));
        add(quint32(theme.size()));
        addText(theme);
        xcb_change_property(display.get(), XCB_PROP_MODE_REPLACE, window, atom("_XSETTINGS_SETTINGS"),
            atom("_XSETTINGS_SETTINGS"), 8, uint32_t(bytes.size()), bytes.constData());
        xcb_flush(display.get());
    }

private:
    xcb_atom_t atom(const QByteArray& name) const
    {
        return display
            .reply<xcb_intern_atom_reply_t>(
                xcb_intern_atom(display.get(), 0, uint16_t(name.size()), name.constData()).sequence)
            ->atom;
    }

    x11::XcbConnection display;
    xcb_window_t window;
    quint32 serial = 0;
};

class PreferencesTest : public ProgramStage {
protected:
    void openPreferences()
    {
        start(program, {u"--trace"_s});
        ASSERT_TRUE(reaches("en marcha"));
        asked(u"showPreferences"_s);
        ASSERT_TRUE(reaches("ventana pintada"));
        const auto window = QString::fromUtf8(
            desktop().run(u"xdotool"_s, {u"search"_s, u"--sync"_s, u"--name"_s, u"^Ajustes de Pintalux$"_s}))
                                .trimmed();
        xdotool(u"windowactivate --sync "_s + window);
        const auto place = QString::fromUtf8(desktop().run(u"xdotool"_s,
            {u"mousemove"_s, u"--window"_s, window, u"0"_s, u"0"_s, u"getmouselocation"_s, u"--shell"_s}));
        corner = {place.section(u"X="_s, 1).section(u'\n', 0, 0).toInt(),
            place.section(u"Y="_s, 1).section(u'\n', 0, 0).toInt()};
    }

    bool comesToShow(const Theme& theme) const
    {
        return waitUntil([&] { return pictureByOthers().pixelColor(corner + QPoint(8, 300)) == theme.form; });
    }

    QPoint corner; ///< of the window's content, on the screen
};

} // namespace

TEST_F(PreferencesTest, AnotherCombinationOfKeysIsStoredAndCapturesAtOnce)
{
    openPreferences();
    const auto combinations = corner + QPoint(451, 582);
    xdotool(u"mousemove %1 %2 click 1"_s.arg(combinations.x()).arg(combinations.y()));
    letPass(300); // the list has opened
    xdotool(u"key Down Return"_s);
    EXPECT_TRUE(waitUntil([&] {
        QFile file(store);
        return file.open(QIODevice::ReadOnly)
            && QJsonDocument::fromJson(file.readAll())[u"shortcutPreset"_s].toString() == u"optionShift";
    }));
    xdotool(u"key alt+shift+1"_s);
    EXPECT_TRUE(reaches("superposición pintada"));
    xdotool(u"key Escape"_s);
}

TEST_F(PreferencesTest, WindowsAreDarkWhileTheDesktopWishesSo)
{
    constexpr uint dark = 1;
    constexpr uint light = 2;
    FakePortal portal(dark);
    openPreferences();
    EXPECT_TRUE(comesToShow(Theme::darkTheme()));
    portal.wish(light);
    EXPECT_TRUE(comesToShow(Theme::light()));
    portal.wish(dark);
    EXPECT_TRUE(comesToShow(Theme::darkTheme()));
}

TEST_F(PreferencesTest, WindowsAreDarkWhileTheThemeOfTheDesktopIsCalledDark)
{
    std::optional<FakeSettingsDaemon> daemon("Mint-Y-Dark-Aqua");
    openPreferences();
    EXPECT_TRUE(comesToShow(Theme::darkTheme()));
    daemon->publish("Mint-Y-Aqua");
    EXPECT_TRUE(comesToShow(Theme::light()));
    daemon->publish("Mint-Y-Dark");
    EXPECT_TRUE(comesToShow(Theme::darkTheme()));
    // Desktops restart their daemon, and may start it after the programs of the session.
    daemon.reset();
    EXPECT_TRUE(comesToShow(Theme::light()));
    daemon.emplace("Mint-Y-Dark-Aqua");
    EXPECT_TRUE(comesToShow(Theme::darkTheme()));
}
