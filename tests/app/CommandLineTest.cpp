// SPDX-License-Identifier: MIT
#include "app/commandline/CommandLine.h"

using Mode = CommandLine::Mode;

namespace {

CommandLine parsed(const char* arguments)
{
    return CommandLine::parse(QString::fromUtf8(arguments).split(u' ', Qt::SkipEmptyParts));
}

} // namespace

TEST(CommandLine, DecidesWhatTheProgramIsFor)
{
    struct Row {
        const char* arguments;
        Mode mode;
    };
    for (const auto& row : {
             Row{"", Mode::normal},
             Row{"--selftest", Mode::normal},
             Row{"--selftest /tmp/out --open x.png", Mode::selfTest},
             Row{"--selftest out --render-icon icons", Mode::renderIcon},
             Row{"--help --version", Mode::help},
             Row{"--version", Mode::version},
             Row{"--nonsense", Mode::misuse},
             Row{"foto.png otra.png", Mode::normal},
             Row{"-h", Mode::help},
             Row{"-x", Mode::misuse},
             Row{"--annotate a.png extra.png --marks m.json --output o.png", Mode::misuse},
             Row{"--annotate=a.png --marks=m.json --output=o.png", Mode::annotate},
             Row{"--annotate - --marks m.json --output -", Mode::annotate},
             Row{"--annotate - --marks - --output o.png", Mode::misuse},
             Row{"--annotate a.png --marks m.json --output --check", Mode::misuse},
             Row{"--annotate a.png --marks m.json --check=yes", Mode::misuse},
             Row{"--annotate a.png --marks m.json --check --json", Mode::annotate},
             Row{"--annotate a.png --marks m.json --output o.png --json", Mode::misuse},
             Row{"--annotate a.png --marks m.json --output o.png --capture area", Mode::misuse},
             Row{"--check", Mode::misuse},
             Row{"--screen HDMI-1", Mode::misuse},
             Row{"--output o.png --annotate a.png --marks m.json", Mode::annotate},
             Row{"--annotate a.png --marks m.json", Mode::misuse},
             Row{"--annotate a.png --check", Mode::misuse},
             Row{"--completion zsh", Mode::completion},
             Row{"--completion csh", Mode::misuse},
             Row{"--capture area", Mode::normal},
             Row{"--capture fullScreen --output o.png", Mode::captureToFile},
             Row{"--capture color --output -", Mode::captureToFile},
             Row{"--capture fullScreen --screen HDMI-1 --output o.png", Mode::captureToFile},
             Row{"--capture fullScreen --screen", Mode::misuse},
             Row{"--capture area --screen HDMI-1", Mode::misuse},
             Row{"--capture Area", Mode::misuse},
         })
        EXPECT_EQ(parsed(row.arguments).mode, row.mode) << row.arguments;
}

TEST(CommandLine, TheFirstOccurrenceCounts)
{
    EXPECT_EQ(parsed("--open a.png --open b.png").openFiles, QStringList{u"a.png"_s});
    const auto annotate = parsed("--annotate a.png --marks m.json --output o.png --marks n.json");
    EXPECT_EQ(annotate.marksFile, u"m.json");
    EXPECT_EQ(annotate.picture, u"a.png");
    EXPECT_EQ(annotate.outputFile, u"o.png");
    EXPECT_EQ(parsed("--selftest --overlay").directory, u"--overlay") << "the argument after it is its value";
    const auto selfTest = parsed("--keep-open --selftest out");
    EXPECT_TRUE(selfTest.keepOpen);
    EXPECT_FALSE(selfTest.overlay);
}

TEST(CommandLine, FilesWithoutAnOptionAreOpenedWhereNoneOfTheScannedOptionsIsGiven)
{
    EXPECT_EQ(parsed("a.png --trace b.png").openFiles, (QStringList{u"a.png"_s, u"b.png"_s}));
    EXPECT_EQ(parsed("-- -h").openFiles, QStringList{u"-h"_s});
    EXPECT_EQ(parsed("b.png --open a.png c.png").openFiles, QStringList{u"a.png"_s});
    EXPECT_EQ(parsed("--open=a=b.png").openFiles, QStringList{u"a=b.png"_s});
    for (const auto* arguments : {"a.png --open", "--overlay a.png", "--keep-open a.png", "--selftest"})
        EXPECT_TRUE(parsed(arguments).openFiles.isEmpty()) << arguments;
}

TEST(CommandLine, ProblemsNameTheArgument)
{
    EXPECT_EQ(parsed("--nonsense").problem, u"Opción desconocida: --nonsense");
    EXPECT_EQ(parsed("--annotate a.png --output o.png").problem, u"Falta el valor de --marks.");
    EXPECT_EQ(parsed("--output o.png").problem, u"--output solo sirve con --annotate o --capture.");
    EXPECT_EQ(parsed("--annotate a.png --marks m.json --output=").problem, u"Falta el valor de --output.");
}
