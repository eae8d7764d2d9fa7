// SPDX-License-Identifier: MIT
#include "Desktop.h"
#include "platform/backend/DisplaySystem.h"
#include "platform/x11/X11Workspace.h"
#include "platform/x11/XcbConnection.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

using namespace pintalux::test;

namespace {

bool getsFocus(const DemoWindow& window, const DisplaySession& session = desktop())
{
    return waitUntil([&] { return focusedWindow(session) == window.id(); });
}

// Stands for the person's program that opens folders and addresses: writes down what it is given.
class Opener {
public:
    Opener()
    {
        QFile script(folder.filePath(u"xdg-open"_s));
        script.open(QIODevice::WriteOnly);
        script.write("#!/bin/sh\nprintf '%s\\n' \"$1\" >> \"$(dirname \"$0\")/opened\"\n");
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        script.close();
    }
    ~Opener() { qputenv("PATH", path); }

    void install() const { qputenv("PATH", folder.path().toLocal8Bit() + ':' + path); }

    QByteArray takeOpened() const
    {
        QFile file(folder.filePath(u"opened"_s));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        const auto bytes = file.readAll();
        if (!bytes.isEmpty())
            file.remove();
        return bytes;
    }
    bool opens(const QByteArray& address) const
    {
        return waitUntil([&] { return takeOpened() == address + '\n'; });
    }

private:
    QTemporaryDir folder;
    QByteArray path = qgetenv("PATH");
};

// Stands for the person's file manager on the bus.
class FileManager : public QDBusVirtualObject {
public:
    FileManager()
        : bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"file manager"_s))
    {
        bus.registerVirtualObject(u"/org/freedesktop/FileManager1"_s, this);
        bus.registerService(u"org.freedesktop.FileManager1"_s);
    }
    ~FileManager() override { QDBusConnection::disconnectFromBus(u"file manager"_s); }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& from) override
    {
        shown.append(message.member() + u' ' + message.arguments().value(0).toStringList().join(u'|'));
        return from.send(message.createReply());
    }

    QStringList shown;

private:
    QDBusConnection bus;
};

} // namespace

TEST(Workspace, TheWindowThatWasActiveBeforeGetsTheFocusBackFromAnUnmanagedOne)
{
    const DemoWindow first(u"Primera"_s, u"400x300+50+50"_s, u"#3B6FE0"_s);
    const DemoWindow second(u"Segunda"_s, u"400x300+500+50"_s, u"#2E9E6B"_s);
    ASSERT_TRUE(getsFocus(second));
    const auto workspace = DisplaySystem::makeWorkspace();
    const auto before = workspace->frontmostWindow();
    ASSERT_TRUE(before);
    EXPECT_EQ(*before, (WindowHandle{second.id().toULongLong(), second.processId()}));

    {
        QWidget overlay(nullptr, Qt::FramelessWindowHint | Qt::Tool | Qt::BypassWindowManagerHint);
        overlay.setGeometry(0, 0, 1280, 800);
        overlay.show();
        overlay.activateWindow();
        ASSERT_TRUE(waitUntil([&] { return focusedWindow() == QString::number(overlay.winId()); }));
        overlay.hide();
        letPass(100);
    }
    workspace->activate(*before);
    EXPECT_TRUE(getsFocus(second));
    workspace->activate({first.id().toULongLong(), first.processId()});
    EXPECT_TRUE(getsFocus(first)) << "also one that was not active before";
    EXPECT_EQ(workspace->frontmostWindow()->processId, first.processId());
}

TEST(Workspace, OwnWindowsAreNobodyElsesButMayBeActivatedAndGoneOnesCannot)
{
    const auto workspace = DisplaySystem::makeWorkspace();
    QWidget own;
    own.setGeometry(700, 400, 200, 150);
    own.show();
    ASSERT_TRUE(waitUntil([&] {
        own.activateWindow(); // a manager that has just started may overlook the first window
        return own.isActiveWindow();
    }));
    EXPECT_FALSE(workspace->frontmostWindow());

    const DemoWindow other(u"Otra"_s, u"400x300+50+50"_s, u"#3B6FE0"_s);
    ASSERT_TRUE(getsFocus(other));
    workspace->activate({own.winId(), 0});
    EXPECT_TRUE(waitUntil([&] { return own.isActiveWindow(); }));

    DemoWindow gone(u"Efímera"_s, u"400x300+50+50"_s, u"#3B6FE0"_s);
    const WindowHandle handle{gone.id().toULongLong(), gone.processId()};
    gone.end();
    letPass(200); // the manager gives it to another one
    const auto focused = focusedWindow();
    workspace->activate(handle);
    workspace->activate({});
    letPass(200);
    EXPECT_EQ(focusedWindow(), focused) << "a window that has gone changes nothing";
}

TEST(Workspace, WithoutAWindowManagerTheFocusIsGivenDirectly)
{
    DisplaySession session({.size = {800, 600}, .windowManager = false});
    const DemoWindow first(u"Primera"_s, u"300x200+10+10"_s, u"#3B6FE0"_s, session);
    const DemoWindow second(u"Segunda"_s, u"300x200+400+10"_s, u"#2E9E6B"_s, session);
    X11Workspace workspace(session.display());
    for (const auto* window : {&first, &second, &first}) {
        workspace.activate({window->id().toULongLong(), 0});
        EXPECT_TRUE(getsFocus(*window, session));
        const auto front = workspace.frontmostWindow();
        ASSERT_TRUE(front);
        EXPECT_EQ(front->processId, window->processId());
    }
}

// One test, for the toolkit looks for the opening program until it has found one.
TEST(Workspace, FoldersGoToThePersonsProgramAndAFileToTheirFileManagerWhereThereIsOne)
{
    const auto workspace = DisplaySystem::makeWorkspace();
    Opener opener;
    qputenv("PATH", "/nonexistent");
    EXPECT_FALSE(workspace->openFolder(u"/tmp"_s)) << "nothing could show it";
    opener.install();
    EXPECT_TRUE(workspace->openFolder(u"/tmp/Mis capturas"_s));
    EXPECT_TRUE(opener.opens("file:///tmp/Mis%20capturas"));
    EXPECT_TRUE(workspace->openUrl(QUrl(u"https://example.org/a"_s)));
    EXPECT_TRUE(opener.opens("https://example.org/a"));
    {
        FileManager manager;
        workspace->revealFile(u"/tmp/año #1.png"_s);
        EXPECT_TRUE(waitUntil([&] { return !manager.shown.isEmpty(); }));
        EXPECT_EQ(manager.shown, QStringList{u"ShowItems file:///tmp/a%C3%B1o%20%231.png"_s});
    }
    letPass(100);
    EXPECT_EQ(opener.takeOpened(), "") << "once is enough";
    workspace->revealFile(u"/tmp/año #1.png"_s);
    EXPECT_TRUE(opener.opens("file:///tmp"));
}
