// SPDX-License-Identifier: MIT
#include "platform/session/ThemeName.h"

#include "platform/base/Error.h"
#include "platform/x11/windowing/XSettings.h"

TEST(ThemeName, AThemeIsDarkWhenAWordOfItsNameSaysSo)
{
    for (const auto& name : {u"Adwaita-dark"_s, u"Adwaita:dark"_s, u"Mint-Y-Dark-Aqua"_s, u"Arc-Dark"_s,
             u"Yaru-viridian-dark"_s, u"dark"_s})
        EXPECT_TRUE(isDarkTheme(name)) << name.toStdString();
    for (const auto& name : {u"Adwaita"_s, u"Arc-Darker"_s, u"Darkroom"_s, u""_s})
        EXPECT_FALSE(isDarkTheme(name)) << name.toStdString();
}

// As a daemon on this machine and one of the other byte order would publish them: a number, a colour, a text.
TEST(XSettings, TheTextIsFoundInBothByteOrdersAndNothingInWhatIsCutOff)
{
    using namespace std::string_literals;
    const QByteArray little = QByteArray::fromStdString("\0\0\0\0\1\0\0\0\3\0\0\0"s // order, serial, count
        + "\0\0\7\0Xft/DPI\0\0\0\0\0\0\x80\1\0"s                                    //
        + "\2\0\4\0Net/\0\0\0\0\1\1\1\1\1\1\1\1"s                                   //
        + "\1\0\x0d\0Net/ThemeName\0\0\0\0\0\0\0\x08\0\0\0Arc-Dark"s);
    const QByteArray big = QByteArray::fromStdString(
        "\1\0\0\0\0\0\0\1\0\0\0\1"s + "\1\0\0\x0dNet/ThemeName\0\0\0\0\0\0\0\0\0\0\x03"s + "Arc\0"s);
    EXPECT_EQ(x11::textSetting(little, "Net/ThemeName"), u"Arc-Dark");
    EXPECT_EQ(x11::textSetting(big, "Net/ThemeName"), u"Arc");
    EXPECT_FALSE(x11::textSetting(little, "Net/IconThemeName"));
    for (const auto& whole : {little, big})
        for (qsizetype length = 0; length < whole.size(); ++length)
            EXPECT_FALSE(x11::textSetting(whole.left(length), "Net/ThemeName")) << length;
}
