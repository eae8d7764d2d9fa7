// The program's own run through everything, on a real display.

#include "Desktop.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace pintalux;
using namespace pintalux::test;

TEST(SelfTest, CapturesWhatTheDisplayShowsAndLogsIt)
{
    const DemoWindow window(u"Ventana única"_qs, u"420x300+200+120"_qs, u"#2E9E6B"_qs);
    const QTemporaryDir folder;
    const QDir out(folder.filePath(u"new/out"_qs));
    const auto before = pictureByOthers();
    const auto printed = QString::fromUtf8(
        desktop().run(QString::fromUtf8(PINTALUX_PROGRAM), {u"--selftest"_qs, out.path()}));
    ASSERT_EQ(differingPixels(pictureByOthers(), before), 0) << "the desktop changed meanwhile";

    EXPECT_EQ(out.entryList({u"*.png"_qs}),
        (QStringList{u"callouts.png"_qs, u"capture-full.png"_qs, u"capture-window.png"_qs,
            u"export-beautify.png"_qs, u"export-plain.png"_qs, u"sample.png"_qs, u"sketch.png"_qs,
            u"steps.png"_qs}));
    EXPECT_EQ(differingPixels(QImage(out.filePath(u"capture-full.png"_qs)), before), 0);

    QFile file(out.filePath(u"selftest.log"_qs));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto log = QString::fromUtf8(file.readAll());
    EXPECT_FALSE(log.contains(u"FALLO")) << log.toStdString();
    EXPECT_TRUE(log.contains(u"Permiso de Grabación de pantalla: true\n"));
    EXPECT_TRUE(log.contains(u"Pantallas congeladas: 1; ventanas detectadas: 1\n"));
    EXPECT_TRUE(log.contains(u"Ventana única» "));
    QString prefixed;
    for (const auto& line : log.split(u'\n'))
        prefixed += u"[selftest] "_qs + line + u"\n"_qs;
    EXPECT_EQ(printed, prefixed);
}
