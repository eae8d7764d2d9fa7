// The program's own run through everything, on a real display.

#include "Desktop.h"
#include "platform/Files.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace pintalux;
using namespace pintalux::test;

namespace {

constexpr int longestRun = 60'000;

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What the log says, line by line, in this order.
const QStringList expectedLines{
    u"OCR: Hola desde Pintalux \\| Capturas elegantes con anotaciones en español"_qs,
    u"Exportación simple: 1400x900"_qs,
    u"Exportación embellecida: \\d+x\\d+"_qs,
    u"Llamadas: 6 anotaciones; tras deshacer → 5"_qs,
    u"Pasos: 11 anotaciones; tras deshacer → 10"_qs,
    u"A mano: 6 anotaciones; tras deshacer → 5"_qs,
    u"Deshacer: 14 anotaciones, recorte 900x600; tras deshacer → 1400x900"_qs,
    u"Portapapeles PNG: 1400x900, \\d+ bytes"_qs,
    u"Color inicial: #FF0000"_qs,
    u"Nombres:"_qs,
    u"  Pintalux 2.+ a las .+\\.png"_qs,
    u"  Pintalux Safari — Inicio 2.+ a las .+\\.png"_qs,
    u"  Pintalux 2026 2.+ a las .+\\.png"_qs,
    u"Configuración: exportada=true grosor=7 \\(guardado 7\\) flecha=outline"_qs,
    u"Abriendo editor…"_qs,
    u"Editor abierto"_qs,
    u"Flecha con nodos: creada=arrow \\(medio \\(1060, 500\\)\\) punta=\\(1120, 660\\) anotaciones=1"_qs,
    u"Deshacer reorientación → punta \\(860, 600\\)"_qs,
    u"Paso con puntero: tipo=step puntero=\\(700, 600\\) seleccionado=true"_qs,
    u"Puntero reorientado → \\(430, 620\\)"_qs,
    u"Llamada de texto: ancho=\\d+ \\(antes \\d+\\) puntero=\\(700, 420\\)"_qs,
    u"Imagen insertada: image seleccionada=true herramienta=select"_qs,
    u"Texto escrito: .+ cabe=true"_qs,
    u"Borrador: 5 → 3 anotaciones; tras deshacer → 5"_qs,
    u"Panel de flecha visible: true; seleccionada=true"_qs,
    u"Permiso de Grabación de pantalla: true"_qs,
    u"Ventana propia \\d+x\\d+"_qs,
    u"Captura de pantalla completa: 1280x800"_qs,
    u"Pantallas congeladas: 1; ventanas detectadas: 1"_qs,
    u"Captura de ventana «Demostración — Ventana única» \\d+x\\d+"_qs,
    u"Superposición de area, 1280x800, capturada"_qs,
    u"Superposición de window, 1280x800, capturada"_qs,
    u"Superposición de text, 1280x800, capturada"_qs,
    u"Superposición de color, 1280x800, capturada"_qs,
};

/// A picture of the desktop without what shows that the demonstration window has lost the focus.
QImage withoutTitleBar(QImage screen)
{
    QPainter(&screen).fillRect(QRect(200, 120, 422, 25), Qt::black);
    return screen;
}

class SelfTestTest : public testing::Test {
protected:
    void SetUp() override
    {
        const QJsonObject settings{
            {u"strokeWidth"_qs, 7}, {u"arrowStyle"_qs, u"outline"_qs}, {u"autoSave"_qs, true}};
        makeFolders(QFileInfo(store).path());
        replaceFile(store, QJsonDocument(settings).toJson());
        auto environment = desktop().environment();
        environment.insert(u"XDG_CONFIG_HOME"_qs, home.filePath(u"config"_qs));
        program.setProcessEnvironment(environment);
        kept = contents(store);
    }

    void start(const QStringList& options) { program.start(QString::fromUtf8(PINTALUX_PROGRAM), options); }
    /// The run ended by itself, well.
    bool ends()
    {
        return waitUntil([this] { return program.state() == QProcess::NotRunning; }, longestRun)
            && program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0;
    }

    QTemporaryDir home;
    const QString store = home.filePath(u"config/pintalux/defaults.json"_qs);
    const QDir out{home.filePath(u"new/out"_qs)};
    QProcess program;
    QByteArray kept;
};

} // namespace

TEST_F(SelfTestTest, LogsEveryStepWritesEveryPictureAndLeavesTheSettingsAlone)
{
    const DemoWindow window(u"Ventana única"_qs, u"420x300+200+120"_qs, u"#2E9E6B"_qs);
    const auto before = pictureByOthers();
    start({u"--selftest"_qs, out.path(), u"--overlay"_qs});
    ASSERT_TRUE(ends());
    ASSERT_EQ(differingPixels(pictureByOthers(), before), 0) << "the desktop changed meanwhile";

    EXPECT_EQ(out.entryList(QDir::Files),
        (QStringList{u"ajustes.png"_qs, u"callouts.png"_qs, u"capture-full.png"_qs, u"capture-window.png"_qs,
            u"color-chooser.png"_qs, u"configuracion.json"_qs, u"export-beautify.png"_qs,
            u"export-plain.png"_qs, u"overlay-area.png"_qs, u"overlay-color.png"_qs, u"overlay-text.png"_qs,
            u"overlay-window.png"_qs, u"sample.png"_qs, u"selftest.log"_qs, u"sketch.png"_qs, u"steps.png"_qs,
            u"window-editor.png"_qs}));
    // With an editor, a thumbnail and a message of its own on the screen.
    EXPECT_EQ(differingPixels(
                  withoutTitleBar(QImage(out.filePath(u"capture-full.png"_qs))), withoutTitleBar(before)),
        0);

    const auto log = contents(out.filePath(u"selftest.log"_qs));
    const auto lines = QString::fromUtf8(log).split(u'\n');
    ASSERT_EQ(lines.size(), expectedLines.size()) << log.constData();
    for (qsizetype i = 0; i < lines.size(); ++i)
        EXPECT_TRUE(QRegularExpression(QRegularExpression::anchoredPattern(expectedLines[i]))
                        .match(lines[i])
                        .hasMatch())
            << lines[i].toStdString() << "\n"
            << expectedLines[i].toStdString();
    QString prefixed;
    for (const auto& line : lines)
        prefixed += u"[selftest] "_qs + line + u"\n"_qs;
    EXPECT_EQ(QString::fromUtf8(program.readAllStandardOutput()), prefixed);
    EXPECT_EQ(contents(store), kept);
}

TEST_F(SelfTestTest, KilledHalfWayItLeavesTheSettingsAlone)
{
    start({u"--selftest"_qs, out.path()});
    QByteArray printed;
    // The settings have been changed and put back, and an editor has remembered its choices.
    ASSERT_TRUE(
        waitUntil([&] { return (printed += program.readAllStandardOutput()).contains("Panel de flecha"); },
            longestRun));
    program.kill();
    ASSERT_TRUE(program.waitForFinished(longestRun));
    EXPECT_EQ(contents(store), kept);
    EXPECT_FALSE(out.exists(u"selftest.log"_qs));
}

TEST_F(SelfTestTest, WhatCannotBeWrittenIsLoggedAndTheRunGoesOn)
{
    replaceFile(home.filePath(u"new"_qs), "in the way of the folder");
    start({u"--selftest"_qs, out.path()});
    ASSERT_TRUE(ends());
    const auto printed = program.readAllStandardOutput();
    EXPECT_TRUE(printed.contains("[selftest] FALLO sample.png: ")) << printed.constData();
    EXPECT_TRUE(printed.contains("[selftest] FALLO configuración: ")) << printed.constData();
    EXPECT_TRUE(printed.contains("[selftest] Pantallas congeladas: 1")) << printed.constData();
    EXPECT_EQ(contents(store), kept);
}
