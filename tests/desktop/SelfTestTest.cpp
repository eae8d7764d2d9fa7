// SPDX-License-Identifier: MIT

// The program's own run through everything, on a real display.

#include "ProgramStage.h"
#include "Stage.h"

using namespace pintalux::test;

namespace {

constexpr int longestRun = 60'000;

/// Lines of the log that tell what worked, in their order; others stand between them.
const QStringList expectedLines{
    u"OCR: Hola desde Pintalux \\| Capturas elegantes con anotaciones en español"_s,
    u"Deshacer: 14 anotaciones, recorte 900x600; tras deshacer → 1400x900"_s,
    u"Portapapeles PNG: 1400x900, \\d+ bytes"_s,
    u"Configuración: exportada=true grosor=7 \\(guardado 7\\) flecha=outline"_s,
    u"Editor abierto"_s,
    u"Flecha con nodos: creada=arrow \\(medio \\(1060, 500\\)\\) punta=\\(1120, 660\\) anotaciones=1"_s,
    u"Paso con puntero: tipo=step puntero=\\(700, 600\\) seleccionado=true"_s,
    u"Llamada de texto: ancho=\\d+ \\(antes \\d+\\) puntero=\\(700, 420\\)"_s,
    u"Imagen insertada: image seleccionada=true herramienta=select"_s,
    u"Texto escrito: .+ cabe=true"_s,
    u"Borrador: 5 → 3 anotaciones; tras deshacer → 5"_s,
    u"Captura de pantalla completa: 1280x800"_s,
    u"Pantallas congeladas: 1; ventanas detectadas: 1"_s,
    u"Captura de ventana «Demostración — Ventana única» \\d+x\\d+"_s,
    u"Superposición de color, 1280x800, capturada"_s,
};

/// A picture of the desktop without what shows that the demonstration window has lost the focus.
QImage withoutTitleBar(QImage screen)
{
    QPainter(&screen).fillRect(QRect(200, 120, 422, 25), Qt::black);
    return screen;
}

class SelfTestTest : public ProgramStage {
protected:
    SelfTestTest()
        : ProgramStage({{u"strokeWidth"_s, 7}, {u"arrowStyle"_s, u"outline"_s}})
    {
    }
    void TearDown() override { EXPECT_EQ(stage::contents(store), kept) << "the settings"; }

    /// The run ended by itself, well.
    bool ends()
    {
        return waitUntil([this] { return program.state() == QProcess::NotRunning; }, longestRun)
            && program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0;
    }

    const QByteArray kept = stage::contents(store);
    const QDir out{home.filePath(u"new/out"_s)};
};

} // namespace

TEST_F(SelfTestTest, LogsEveryStepWritesEveryPictureAndLeavesTheSettingsAlone)
{
    const DemoWindow window(u"Ventana única"_s, u"420x300+200+120"_s, u"#2E9E6B"_s);
    const auto before = pictureByOthers();
    start(program, {u"--selftest"_s, out.path(), u"--overlay"_s});
    ASSERT_TRUE(ends());
    ASSERT_EQ(differingPixels(pictureByOthers(), before), 0) << "the desktop changed meanwhile";

    EXPECT_EQ(out.entryList(QDir::Files),
        (QStringList{u"ajustes.png"_s, u"callouts.png"_s, u"capture-full.png"_s, u"capture-window.png"_s,
            u"color-chooser.png"_s, u"configuracion.json"_s, u"export-beautify.png"_s, u"export-plain.png"_s,
            u"overlay-area.png"_s, u"overlay-color.png"_s, u"overlay-text.png"_s, u"overlay-window.png"_s,
            u"sample.png"_s, u"selftest.log"_s, u"sketch.png"_s, u"steps.png"_s, u"window-editor.png"_s}));
    // With an editor, a thumbnail and a message of its own on the screen.
    EXPECT_EQ(differingPixels(
                  withoutTitleBar(QImage(out.filePath(u"capture-full.png"_s))), withoutTitleBar(before)),
        0);

    const auto log = stage::contents(out.filePath(u"selftest.log"_s));
    const auto lines = QString::fromUtf8(log).split(u'\n');
    EXPECT_EQ(lines.size(), 34) << log.constData();
    qsizetype at = 0;
    for (const auto& expected : expectedLines) {
        at = lines.indexOf(QRegularExpression(QRegularExpression::anchoredPattern(expected)), at);
        ASSERT_GE(at, 0) << expected.toStdString() << "\n" << log.constData();
    }
    QString prefixed;
    for (const auto& line : lines)
        prefixed += u"[selftest] "_s + line + u"\n"_s;
    EXPECT_EQ(QString::fromUtf8(program.readAllStandardOutput()), prefixed);
}

TEST_F(SelfTestTest, KilledHalfWayItLeavesTheSettingsAlone)
{
    start(program, {u"--selftest"_s, out.path()});
    QByteArray printed;
    // The settings have been changed and put back, and an editor has remembered its choices.
    ASSERT_TRUE(
        waitUntil([&] { return (printed += program.readAllStandardOutput()).contains("Panel de flecha"); },
            longestRun));
    program.kill();
    ASSERT_TRUE(program.waitForFinished(longestRun));
    EXPECT_FALSE(out.exists(u"selftest.log"_s));
}
