// SPDX-License-Identifier: MIT

// Reading text: how many words come out right, and how long it takes, over pictures as people capture them.
// The counter "acierto" is the share of the words that were drawn and come out, in order, as they were.

#include "capture/text/OCR.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QPainter>
#include <QStringList>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <functional>
#include <vector>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

/// A picture and what it says.
struct Scene {
    QImage image;
    QString text;
};

QFont font(const QString& family, double pixels, int weight = QFont::Normal)
{
    QFont result(family);
    result.setPixelSize(qRound(pixels));
    result.setWeight(QFont::Weight(weight));
    return result;
}

const QStringList spanish{
    u"El veloz murciélago hindú comía feliz cardillo y kiwi."_s,
    u"La cigüeña tocaba el saxofón detrás del palenque de paja."_s,
    u"¿Cuántos años tienes? ¡Qué sorpresa tan agradable!"_s,
    u"La reunión será el próximo miércoles a las 10:30 en la sala 4."_s,
    u"Configuración guardada correctamente en la carpeta Capturas"_s,
    u"El presupuesto de diseño para el año que viene está pendiente"_s,
    u"Por favor, revisa los últimos cambios antes de publicarlos."_s,
    u"Según el análisis, las ventas crecieron un 18 % este otoño."_s,
};
const QStringList english{
    u"The quick brown fox jumps over the lazy dog near the river."_s,
    u"Your changes have been saved to the server successfully."_s,
    u"Please restart the application to finish the update."_s,
    u"Error 404: the requested page could not be found."_s,
    u"Settings are stored in your home folder by default."_s,
};
const QStringList code{
    u"int main(int argc, char** argv)"_s,
    u"return window.show();"_s,
    u"git commit --message first"_s,
    u"sudo apt install cmake ninja-build"_s,
    u"const total = price + shipping;"_s,
    u"drwxr-xr-x 2 root root 4096 docs"_s,
};

struct Look {
    QString family = u"Inter"_s;
    double pixels = 14;
    QColor ink{0x1F, 0x23, 0x28};
    QColor paper{Qt::white};
    double scale = 1;
    int weight = QFont::Normal;
};

Scene paragraph(const QStringList& lines, const Look& look)
{
    const double lineHeight = look.pixels * 1.7;
    QImage image(int(640 * look.scale), int((lineHeight * double(lines.size()) + 40) * look.scale),
        QImage::Format_RGB32);
    image.fill(look.paper);
    QPainter painter(&image);
    painter.setFont(font(look.family, look.pixels * look.scale, look.weight));
    painter.setPen(look.ink);
    double y = 20 + look.pixels;
    for (const auto& line : lines) {
        painter.drawText(QPointF(24, y) * look.scale, line);
        y += lineHeight;
    }
    return {image, lines.join(u'\n')};
}

/// Words on capsules of many colours, beside ordinary text.
Scene buttons(double pixels)
{
    QImage image(640, 320, QImage::Format_RGB32);
    image.fill(QColor(0xF7, 0xF7, 0xFA));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const std::vector<std::pair<QColor, QColor>> colors{{QColor(0x3A, 0x86, 0xFF), Qt::white},
        {QColor(0xD9, 0x30, 0x25), Qt::white}, {QColor(0x1E, 0x8E, 0x3E), Qt::white},
        {QColor(0xF9, 0xC2, 0x3C), Qt::black}, {QColor(0x20, 0x21, 0x24), Qt::white},
        {QColor(0x6E, 0x56, 0xF8), Qt::white}};
    const QStringList labels{u"Guardar cambios"_s, u"Eliminar cuenta"_s, u"Enviar mensaje"_s,
        u"Advertencia importante"_s, u"Iniciar sesión"_s, u"Más información"_s};
    QStringList said;
    for (int index = 0; index < 6; ++index) {
        const QRectF capsule(30 + (index % 2) * 300, 20 + (index / 2) * 60, 240, 36);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors[std::size_t(index)].first);
        painter.drawRoundedRect(capsule, 10, 10);
        painter.setPen(colors[std::size_t(index)].second);
        painter.setFont(font(u"Inter"_s, pixels, QFont::Medium));
        painter.drawText(capsule, Qt::AlignCenter, labels[index]);
        said << labels[index];
    }
    painter.setPen(QColor(0x1F, 0x23, 0x28));
    painter.setFont(font(u"Inter"_s, pixels));
    painter.drawText(QPointF(30, 240), spanish[0]);
    painter.drawText(QPointF(30, 270), spanish[1]);
    return {image, (said << spanish[0] << spanish[1]).join(u'\n')};
}

/// A program's window: a dark side bar, a coloured header, a table with faint text.
Scene window()
{
    QImage image(900, 420, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(0, 0, 900, 64, QColor(0x3B, 0x6F, 0xE0));
    painter.fillRect(0, 64, 200, 356, QColor(0x20, 0x1F, 0x26));
    QStringList said;
    const auto say
        = [&](double x, double y, double pixels, int weight, const QColor& ink, const QString& text) {
              painter.setFont(font(u"Inter"_s, pixels, weight));
              painter.setPen(ink);
              painter.drawText(QPointF(x, y), text);
              said << text;
          };
    say(24, 40, 18, QFont::DemiBold, Qt::white, u"Resumen de ventas"_s);
    const QStringList sections{u"Inicio"_s, u"Pedidos"_s, u"Productos"_s, u"Clientes"_s, u"Campañas"_s};
    const QStringList rows{u"Tienda de Sevilla"_s, u"Almacén de Málaga"_s, u"Oficina de Cádiz"_s,
        u"Taller de Córdoba"_s, u"Sede de Jaén"_s};
    const QStringList states{
        u"Enviado ayer"_s, u"Pendiente de pago"_s, u"Cancelado"_s, u"Enviado hoy"_s, u"En preparación"_s};
    for (int row = 0; row < 5; ++row) {
        const double y = 110 + row * 56;
        say(28, y, 13, QFont::Medium, QColor(0xE6, 0xE5, 0xEE), sections[row]);
        say(240, y, 13, QFont::Normal, QColor(0x1F, 0x23, 0x28), rows[row]);
        say(620, y, 13, QFont::Normal, QColor(0x8C, 0x8A, 0x99), states[row]);
    }
    return {image, said.join(u'\n')};
}

Scene gradient()
{
    QImage image(760, 200, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient colors(0, 0, 760, 200);
    colors.setColorAt(0, QColor(0x6E, 0x56, 0xF8));
    colors.setColorAt(1, QColor(0xD9, 0x48, 0x8F));
    painter.fillRect(image.rect(), colors);
    painter.setPen(Qt::white);
    painter.setFont(font(u"Inter"_s, 30, QFont::Bold));
    painter.drawText(QPointF(40, 80), u"Capturas que dan gusto"_s);
    painter.setFont(font(u"Inter"_s, 15));
    painter.drawText(QPointF(40, 130), spanish[4]);
    return {image, u"Capturas que dan gusto\n"_s + spanish[4]};
}

Scene titles()
{
    QImage image(900, 330, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setPen(QColor(0x1F, 0x23, 0x28));
    painter.setFont(font(u"Inter"_s, 84, QFont::Bold));
    painter.drawText(QPointF(40, 110), u"Hola a todos"_s);
    painter.setFont(font(u"Quicksand"_s, 44, QFont::Bold));
    painter.drawText(QPointF(40, 190), u"Capturas elegantes"_s);
    painter.setFont(font(u"Inter"_s, 20));
    painter.drawText(QPointF(40, 240), spanish[3]);
    painter.setFont(font(u"Inter"_s, 12));
    painter.drawText(QPointF(40, 290), spanish[6]);
    return {
        image, QStringList{u"Hola a todos"_s, u"Capturas elegantes"_s, spanish[3], spanish[6]}.join(u'\n')};
}

/// A screen full of text: about a thousand words in three columns.
Scene fullScreen()
{
    QImage image(1920, 1080, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setPen(QColor(0x1F, 0x23, 0x28));
    painter.setFont(font(u"Inter"_s, 13));
    QStringList said;
    for (int row = 0; row < 46; ++row)
        for (int column = 0; column < 3; ++column) {
            const auto& line = spanish[(row + column * 3) % spanish.size()];
            painter.drawText(QPointF(40 + column * 620, 40 + row * 22), line);
            said << line;
        }
    return {image, said.join(u'\n')};
}

struct Sample {
    const char* name;
    bool clean; ///< dark on light, of an ordinary size
    std::function<Scene()> make;
};

const std::vector<Sample>& samples()
{
    static const std::vector<Sample> all{
        {"castellano_14", true, [] { return paragraph(spanish, {}); }},
        {"castellano_16_2x", true, [] { return paragraph(spanish, {.pixels = 16, .scale = 2}); }},
        {"castellano_negrita_15", true,
            [] { return paragraph(spanish, {.pixels = 15, .weight = QFont::DemiBold}); }},
        {"castellano_dejavu_13", true,
            [] { return paragraph(spanish, {.family = u"DejaVu Sans"_s, .pixels = 13}); }},
        {"ingles_13", true, [] { return paragraph(english, {.pixels = 13}); }},
        {"titulos", true, titles},
        {"pequeno_11", false, [] { return paragraph(spanish, {.pixels = 11}); }},
        {"oscuro_13", false,
            [] {
                return paragraph(spanish,
                    {.pixels = 13, .ink = QColor(0xE6, 0xE6, 0xE6), .paper = QColor(0x1E, 0x1F, 0x24)});
            }},
        {"oscuro_11", false,
            [] {
                return paragraph(spanish,
                    {.pixels = 11, .ink = QColor(0xCD, 0xCB, 0xD8), .paper = QColor(0x20, 0x1F, 0x26)});
            }},
        {"tenue_13", false,
            [] { return paragraph(spanish, {.pixels = 13, .ink = QColor(0x8C, 0x8A, 0x99)}); }},
        {"terminal_14", false,
            [] {
                return paragraph(code,
                    {.family = u"DejaVu Sans Mono"_s, .ink = QColor(0x33, 0xDD, 0x55), .paper = Qt::black});
            }},
        {"rojo_sobre_azul_16", false,
            [] {
                return paragraph(english,
                    {.pixels = 16, .ink = QColor(0xFF, 0xD5, 0x4A), .paper = QColor(0x16, 0x3A, 0x9E)});
            }},
        {"botones_14", false, [] { return buttons(14); }},
        {"ventana_13", false, window},
        {"degradado", false, gradient},
        {"pantalla_llena", true, fullScreen},
    };
    return all;
}

/// Length of the longest list of words that both have in this order.
qsizetype commonWords(const QStringList& one, const QStringList& other)
{
    std::vector<qsizetype> row(std::size_t(other.size() + 1), 0);
    for (const auto& word : one) {
        qsizetype diagonal = 0;
        for (qsizetype column = 1; column <= other.size(); ++column) {
            auto& cell = row[std::size_t(column)];
            const auto above = cell;
            cell = word == other[column - 1] ? diagonal + 1 : std::max(cell, row[std::size_t(column - 1)]);
            diagonal = above;
        }
    }
    return row.back();
}

QStringList wordsOf(const QString& text) { return text.simplified().split(u' ', Qt::SkipEmptyParts); }

/// Line by line in any order, for the drawn order of a window with columns is not its reading order.
qsizetype wordsFound(const Scene& scene, const QString& read)
{
    auto left = wordsOf(read);
    qsizetype found = 0;
    for (const auto& line : scene.text.split(u'\n')) {
        const auto words = wordsOf(line);
        found += commonWords(words, left);
    }
    return found;
}

struct Tally {
    double found = 0;
    double drawn = 0;
};
Tally cleanWords, allWords;

void readText(benchmark::State& state, const Sample& sample)
{
    const auto scene = sample.make();
    QString read;
    for (auto _ : state)
        read = OCR::recognizeSync(scene.image).value_or(QString());
    const auto found = double(wordsFound(scene, read));
    const auto drawn = double(wordsOf(scene.text).size());
    state.counters["acierto"] = found / drawn;
    allWords.found += found;
    allWords.drawn += drawn;
    if (sample.clean) {
        cleanWords.found += found;
        cleanWords.drawn += drawn;
    }
    if (found < drawn && qEnvironmentVariableIsSet("SHOW_MISTAKES"))
        std::printf("--- %s\n%s\n", sample.name, qPrintable(read));
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    OCR::recognizeSync(samples().front().make().image); // loads the languages
    for (const auto& sample : samples())
        benchmark::RegisterBenchmark(
            sample.name, [&sample](benchmark::State& state) { readText(state, sample); })
            ->Unit(benchmark::kMillisecond)
            ->Iterations(1);
    benchmark::RunSpecifiedBenchmarks();
    std::printf("aciertos: limpias %.2f %%, todas %.2f %% de %.0f palabras\n",
        100 * cleanWords.found / cleanWords.drawn, 100 * allWords.found / allWords.drawn, allWords.drawn);
    return 0;
}
