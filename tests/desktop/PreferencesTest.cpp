// SPDX-License-Identifier: MIT

// The preferences as a person uses them: the real executable, real clicks, its files read back.

#include "Desktop.h"
#include "controls/theme/Theme.h"
#include "platform/base/Files.h"
#include "platform/x11/XcbConnection.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>

using namespace Qt::StringLiterals;

using namespace pintalux;
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

class PreferencesTest : public testing::Test {
protected:
    void SetUp() override
    {
        const QJsonObject settings{{u"autoSave"_s, false}, {u"saveFolder"_s, home.filePath(u"capturas"_s)},
            {u"hasLaunchedBefore"_s, true}};
        makeFolders(config());
        replaceFile(config() + u"/defaults.json"_s, QJsonDocument(settings).toJson());
        auto environment = desktop().environment();
        environment.insert(u"XDG_CONFIG_HOME"_s, home.filePath(u"config"_s));
        environment.insert(u"XDG_DATA_HOME"_s, home.filePath(u"data"_s));
        program.setProcessEnvironment(environment);
    }

    void TearDown() override
    {
        EXPECT_EQ(program.state(), QProcess::Running);
        program.terminate();
        EXPECT_TRUE(program.waitForFinished(patience));
    }

    void openPreferences()
    {
        program.start(QString::fromUtf8(PINTALUX_PROGRAM), {u"--trace"_s});
        ASSERT_TRUE(reaches("en marcha"));
        callProgram(u"ActivateAction"_s, {u"showPreferences"_s, u"[]"_s, u"{}"_s});
        ASSERT_TRUE(reaches("ventana pintada"));
        window = QString::fromUtf8(
            desktop().run(u"xdotool"_s, {u"search"_s, u"--sync"_s, u"--name"_s, u"^Ajustes de Pintalux$"_s}))
                     .trimmed();
        desktop().run(u"xdotool"_s, {u"windowactivate"_s, u"--sync"_s, window});
        const auto shape = desktop().run(u"xdotool"_s, {u"getwindowgeometry"_s, u"--shell"_s, window});
        height = valueOf("HEIGHT", shape);
        ASSERT_GT(height, 0);
    }

    /// A number of what xdotool prints for a shell.
    static int valueOf(const QByteArray& name, const QByteArray& printedLines)
    {
        for (const auto& line : printedLines.split('\n'))
            if (line.startsWith(name + '='))
                return line.mid(name.size() + 1).toInt();
        return -1;
    }

    /// What the screen shows at a point of the window.
    QColor shownAt(int x, int y) const
    {
        const auto place = desktop().run(u"xdotool"_s,
            {u"mousemove"_s, u"--window"_s, window, QString::number(x), QString::number(y),
                u"getmouselocation"_s, u"--shell"_s});
        return pictureByOthers().pixelColor(valueOf("X", place), valueOf("Y", place));
    }

    bool reaches(const QByteArray& milestone)
    {
        return waitUntil(
            [&] { return (printed += program.readAllStandardError()).contains(milestone); }, 10000);
    }

    /// A click on a point of the window; `y` less than nothing counts from its bottom.
    void click(int x, int y) const
    {
        desktop().run(u"xdotool"_s,
            {u"mousemove"_s, u"--window"_s, window, QString::number(x),
                QString::number(y < 0 ? height + y : y), u"click"_s, u"1"_s});
    }

    void scrollToTheEnd() const
    {
        desktop().run(u"xdotool"_s,
            {u"mousemove"_s, u"--window"_s, window, u"300"_s, u"150"_s, u"click"_s, u"--repeat"_s, u"40"_s,
                u"--delay"_s, u"5"_s, u"5"_s});
        letPass(300);
    }

    static QJsonObject read(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                              : QJsonObject();
    }
    bool stores(const QString& key, const QJsonValue& value) const
    {
        return waitUntil([&] { return read(config() + u"/defaults.json"_s).value(key) == value; });
    }

    QString config() const { return home.filePath(u"config/pintalux"_s); }

    QTemporaryDir home;
    QProcess program;
    QByteArray printed;
    QString window;
    int height = 0;
};

// Points of the window's content.
constexpr int switchColumn = 525;
constexpr int saveAutomatically = 180;
constexpr QPoint copyOnlyTile{462, 389};
constexpr QPoint combinations{451, 582};
// From its bottom, scrolled to the end.
constexpr int showPalette = -463;
constexpr int openAtLogin = -191;
constexpr QPoint save{86, -50};

} // namespace

TEST_F(PreferencesTest, WhatIsClickedIsInTheStoredFileAtOnce)
{
    openPreferences();
    click(switchColumn, saveAutomatically);
    EXPECT_TRUE(stores(u"autoSave"_s, true));
    click(copyOnlyTile.x(), copyOnlyTile.y());
    EXPECT_TRUE(stores(u"afterCapture"_s, u"copyOnly"_s));
    scrollToTheEnd();
    click(switchColumn, showPalette);
    EXPECT_TRUE(stores(u"toolbarHidden"_s, true)) << "off means hidden";
    click(save.x(), save.y());
    const auto copy = home.filePath(u"data/pintalux/Configuración guardada.json"_s);
    EXPECT_TRUE(waitUntil([&] { return !read(copy).isEmpty(); })) << "no copy of the settings";

    const auto autostart = home.filePath(u"config/autostart/pintalux.desktop"_s);
    click(switchColumn, openAtLogin);
    EXPECT_TRUE(waitUntil([&] { return QFile::exists(autostart); }));
    click(switchColumn, openAtLogin);
    EXPECT_TRUE(waitUntil([&] { return !QFile::exists(autostart); }));
}

TEST_F(PreferencesTest, AnotherCombinationOfKeysCapturesAtOnce)
{
    openPreferences();
    click(combinations.x(), combinations.y());
    letPass(300); // the list has opened
    desktop().run(u"xdotool"_s, {u"key"_s, u"Down"_s, u"Return"_s});
    EXPECT_TRUE(stores(u"shortcutPreset"_s, u"optionShift"_s));
    desktop().run(u"xdotool"_s, {u"key"_s, u"alt+shift+1"_s});
    EXPECT_TRUE(reaches("superposición pintada"));
    desktop().run(u"xdotool"_s, {u"key"_s, u"Escape"_s});
}

TEST_F(PreferencesTest, WindowsAreDarkWhileTheDesktopWishesSo)
{
    constexpr uint dark = 1;
    constexpr uint light = 2;
    FakePortal portal(dark);
    openPreferences();
    const auto isGround
        = [&](const QColor& color) { return waitUntil([&] { return shownAt(8, 300) == color; }); };
    EXPECT_TRUE(isGround(Theme::darkTheme().form));
    portal.wish(light);
    EXPECT_TRUE(isGround(Theme::light().form));
    portal.wish(dark);
    EXPECT_TRUE(isGround(Theme::darkTheme().form));
}

TEST_F(PreferencesTest, WindowsAreDarkWhileTheThemeOfTheDesktopIsCalledDark)
{
    std::optional<FakeSettingsDaemon> daemon("Mint-Y-Dark-Aqua");
    openPreferences();
    const auto isGround
        = [&](const QColor& color) { return waitUntil([&] { return shownAt(8, 300) == color; }); };
    EXPECT_TRUE(isGround(Theme::darkTheme().form));
    daemon->publish("Mint-Y-Aqua");
    EXPECT_TRUE(isGround(Theme::light().form));
    daemon->publish("Mint-Y-Dark");
    EXPECT_TRUE(isGround(Theme::darkTheme().form));
    // Desktops restart their daemon, and may start it after the programs of the session.
    daemon.reset();
    EXPECT_TRUE(isGround(Theme::light().form));
    daemon.emplace("Mint-Y-Dark-Aqua");
    EXPECT_TRUE(isGround(Theme::darkTheme().form));
}
