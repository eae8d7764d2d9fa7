// SPDX-License-Identifier: MIT
#include "platform/session/LoginItem.h"

#include "Stage.h"

namespace {

/// A configuration folder of its own and a program in a folder with an unusual name, which tells that it ran.
class LoginItemTest : public testing::Test {
protected:
    LoginItemTest()
        : previous(qgetenv("XDG_CONFIG_HOME"))
    {
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(root.filePath(u"config"_s)));
        QDir(root.path()).mkpath(programFolder);
        program = root.filePath(programFolder + u"/pintalux"_s);
        stage::put(program, "#!/bin/sh\nprintf %s \"$# $0\" > \"${0%/*}/ran\"\n");
        QFile(program).setPermissions(QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner);
        item = LoginItem::create(program);
    }
    ~LoginItemTest() override
    {
        previous.isNull() ? qunsetenv("XDG_CONFIG_HOME") : qputenv("XDG_CONFIG_HOME", previous);
    }

    const QString programFolder = u"a b \"c\" $HOME `d` \\e 'g' ñ\tz"_s;
    QTemporaryDir root;
    QByteArray previous;
    QString entry = root.filePath(u"config/autostart/pintalux.desktop"_s);
    QString program;
    std::unique_ptr<LoginItem> item;
};

} // namespace

TEST_F(LoginItemTest, TheDesktopStartsThisVeryProgramWhateverItsPathIsMadeOf)
{
    item->setEnabled(true);
    ASSERT_EQ(QProcess::execute(u"gio"_s, {u"launch"_s, entry}), 0);
    const auto ran = root.filePath(programFolder + u"/ran"_s);
    for (int i = 0; i < 200 && QFileInfo(ran).size() == 0; ++i)
        QThread::msleep(10);
    EXPECT_EQ(stage::contents(ran), "0 " + QFile::encodeName(program));

    LoginItem::create(u"/tmp/50%f/p"_s)->setEnabled(true);
    EXPECT_TRUE(stage::contents(entry).contains("Exec=\"/tmp/50%%f/p\"\n")) << "no field code";
}

TEST_F(LoginItemTest, WhatTheSessionWouldNotStartCountsAsOff)
{
    struct Row {
        const char* text;
        bool isOn;
    };
    for (const auto& row : {
             Row{"# x\n\n[Desktop Entry]\r\n Exec = /bin/true \r\nHidden=false\r\n", true},
             Row{"[Desktop Entry]\nExec=/bin/true\nHidden=true\n", false},
             Row{"[Desktop Entry]\nExec=/bin/true\n#Hidden=true\n[Desktop Action x]\nHidden=true\n", true},
             Row{"[Desktop Entry]\nExec=/bin/true\nX-GNOME-Autostart-enabled=false\n", false},
             Row{"[Desktop Entry]\nExec=/bin/true\nTryExec=/no/longer/there\n", false},
             Row{"", false},
             Row{"\xFF\xFE\x01[Desktop", false},
         }) {
        QDir().mkpath(QFileInfo(entry).path());
        stage::put(entry, row.text);
        EXPECT_EQ(item->isEnabled(), row.isOn) << row.text;
    }
    item->setEnabled(true);
    EXPECT_TRUE(item->isEnabled()) << "an entry that was off is taken over";
    item->setEnabled(false);
    EXPECT_TRUE(
        QDir(QFileInfo(entry).path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    item->setEnabled(true);
    QFile::remove(program);
    EXPECT_FALSE(item->isEnabled()) << "the program has moved";
}

TEST_F(LoginItemTest, AFailureIsToldAndTheStateStaysTrue)
{
    QDir().mkpath(root.filePath(u"config"_s));
    stage::put(root.filePath(u"config/autostart"_s), "in the way");
    try {
        item->setEnabled(true);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const Error& error) {
        EXPECT_TRUE(error.localizedDescription.contains(u"no es una carpeta"))
            << error.localizedDescription.toStdString();
    }
    EXPECT_FALSE(item->isEnabled());
    EXPECT_EQ(stage::contents(root.filePath(u"config/autostart"_s)), "in the way");
}
