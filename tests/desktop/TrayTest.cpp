// SPDX-License-Identifier: MIT
#include "Desktop.h"

using namespace pintalux::test;

namespace {

/// What a program has printed so far.
class Output {
public:
    explicit Output(QProcess& of)
        : process(of)
    {
    }

    bool says(const QByteArray& text, int limitMilliseconds = patience)
    {
        return waitUntil(
            [&] {
                process.waitForReadyRead(10);
                all += process.readAllStandardOutput();
                return all.contains(text);
            },
            limitMilliseconds);
    }

    QByteArray all;

private:
    QProcess& process;
};

QProcess& startItem(DisplaySession& session, const QStringList& arguments = {})
{
    return session.start(QStringLiteral(PINTALUX_STATUS_ITEM), arguments);
}

void xdotool(const DisplaySession& session, const QStringList& arguments)
{
    session.run(u"xdotool"_s, arguments);
    QThread::msleep(250);
}

/// The panel's strip with the one icon in it.
QImage panel(const DisplaySession& session) { return pictureByOthers(session).copy(0, 0, 40, 24); }

/// Pixels that stand out from the panel by being much lighter or darker.
int inked(const QImage& picture, bool light)
{
    return int(countPixels(picture, [&](int x, int y) {
        const int gray = qGray(picture.pixel(x, y));
        return light ? gray > 200 : gray < 80;
    }));
}

QStringList trayer(const QString& tint)
{
    return {u"--edge"_s, u"top"_s, u"--align"_s, u"left"_s, u"--widthtype"_s, u"request"_s, u"--heighttype"_s,
        u"pixel"_s, u"--height"_s, u"24"_s, u"--transparent"_s, u"true"_s, u"--alpha"_s, u"0"_s, u"--tint"_s,
        tint};
}

} // namespace

// An embedding panel that starts after the program: the icon comes, stands out from the panel, and its menu
// works.
TEST(StatusItem, ComesWhenAPanelDoesAndItsMenuTriggersActions)
{
    for (const bool darkPanel : {false, true}) {
        SCOPED_TRACE(darkPanel ? "dark panel" : "light panel");
        DisplaySession session({.size = {800, 600}});
        auto& item = startItem(session);
        Output output(item);
        ASSERT_TRUE(output.says("missing"));
        session.start(u"trayer"_s, trayer(darkPanel ? u"0x202020"_s : u"0xF0F0F0"_s));
        ASSERT_TRUE(output.says("appeared"));
        EXPECT_EQ(output.all.count("missing"), 1);
        EXPECT_TRUE(waitUntil([&] { return inked(panel(session), darkPanel) > 20; }))
            << "the icon stands out";

        xdotool(session, {u"mousemove"_s, u"12"_s, u"12"_s, u"click"_s, u"3"_s});
        ASSERT_TRUE(output.says("menu"));
        QThread::msleep(300);
        // Padding, header, rule: then the first capture's row.
        xdotool(session, {u"mousemove"_s, u"100"_s, u"71"_s});
        const auto highlighted = pictureByOthers(session).pixelColor(300, 71);
        EXPECT_NEAR(highlighted.hue(), 249, 4) << "the row under the pointer is solid violet";
        xdotool(session, {u"click"_s, u"1"_s});
        EXPECT_TRUE(output.says("chosen area")) << output.all.toStdString();
    }
}

// A host on the bus that starts after the program reads the menu and triggers an action of it.
TEST(StatusItem, ServesAHostThatDrawsTheMenuItself)
{
    DisplaySession session({.size = {800, 600}});
    auto& item = startItem(session, {u"--failed"_s});
    Output output(item);
    ASSERT_TRUE(output.says("missing"));
    auto& host = session.start(u"/usr/bin/python3"_s, {QStringLiteral(STATUS_HOST)});
    Output registered(host);
    ASSERT_TRUE(registered.says("ready"));
    ASSERT_TRUE(output.says("appeared"));
    ASSERT_TRUE(registered.says("\nitem "));
    QThread::msleep(300);
    registered.says("\n", 100);
    const auto service = QString::fromLatin1(
        registered.all.mid(registered.all.indexOf("item ") + 5).split('\n')[0].trimmed());
    const auto call = [&](const QString& method, const QStringList& arguments) {
        return session.run(u"gdbus"_s,
            QStringList{u"call"_s, u"--session"_s, u"-d"_s, service, u"-o"_s, u"/MenuBar"_s, u"-m"_s,
                u"com.canonical.dbusmenu."_s + method}
                + arguments);
    };
    call(u"AboutToShow"_s, {u"0"_s});
    const auto layout = QString::fromUtf8(call(u"GetLayout"_s, {u"0"_s, u"--"_s, u"-1"_s, u"[]"_s}));
    EXPECT_TRUE(layout.contains(u"El atajo está en uso por otra app."_s)) << "tool tips do not get there";
    EXPECT_TRUE(layout.contains(u"'shortcut': <[['Control', 'Shift', '1']]>"_s)) << layout.toStdString();
    const QRegularExpression row(u"\\((\\d+), \\{[^}]*'label': <'Capturar área'>"_s);
    const auto found = row.match(layout);
    ASSERT_TRUE(found.hasMatch()) << layout.toStdString();
    call(u"Event"_s, {found.captured(1), u"clicked"_s, u"<0>"_s, u"0"_s});
    EXPECT_TRUE(output.says("chosen area"));
}
