// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QPainter>
#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

/// Deterministic 4K pictures to measure with.
namespace pintalux::bench {

inline const QSize frameSize(3840, 2160);

inline void drawWindow(QPainter& painter, const QRect& frame, QRandomGenerator& random, bool dark)
{
    QLinearGradient bar(frame.topLeft(), frame.topLeft() + QPoint(0, 60));
    bar.setColorAt(0, dark ? QColor(70, 74, 82) : QColor(242, 242, 244));
    bar.setColorAt(1, dark ? QColor(52, 55, 61) : QColor(222, 222, 226));
    painter.setPen(QColor(0, 0, 0, 60));
    painter.setBrush(dark ? QColor(30, 32, 36) : QColor(Qt::white));
    painter.drawRoundedRect(frame, 20, 20);
    painter.fillRect(QRect(frame.topLeft() + QPoint(2, 20), QSize(frame.width() - 3, 40)), bar);
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < 3; ++i) {
        painter.setBrush(QColor::fromHsv(i * 50, 180, 230));
        painter.drawEllipse(frame.topLeft() + QPoint(36 + i * 40, 40), 12, 12);
    }
    static const std::array<const char*, 12> words{"captura", "ventana", "el", "de", "informe", "que",
        "pantalla", "texto", "imagen", "y", "flecha", "resultado"};
    for (int y = frame.top() + 100; y < frame.bottom() - 40; y += 34) {
        QString line;
        for (int left = random.bounded(4, 14); left > 0; --left)
            line += QString::fromLatin1(words[std::size_t(random.bounded(int(words.size())))]) + u' ';
        painter.setPen(random.bounded(6) == 0 ? QColor(40, 110, 220)
                : dark                        ? QColor(215, 218, 224)
                                              : QColor(30, 30, 34));
        painter.drawText(QRect(frame.left() + 90, y, frame.width() - 120, 34), Qt::AlignVCenter, line);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromHsv(random.bounded(360), 150, 220));
        painter.drawRoundedRect(QRect(frame.left() + 30, y + 4, 26, 26), 6, 6);
    }
}

/// A desktop: a background gradient, windows full of text, buttons, coloured icons.
inline QImage screenPicture()
{
    QImage image(frameSize, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    QLinearGradient background(0, 0, 3840, 2160);
    background.setColorAt(0, QColor(28, 58, 110));
    background.setColorAt(1, QColor(150, 90, 140));
    painter.fillRect(image.rect(), background);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(24);
    painter.setFont(font);
    QRandomGenerator random(7);
    drawWindow(painter, {120, 160, 1500, 1300}, random, false);
    drawWindow(painter, {1300, 420, 1400, 1500}, random, true);
    drawWindow(painter, {2300, 120, 1400, 1200}, random, false);
    painter.fillRect(QRect(0, 0, 3840, 56), QColor(245, 245, 247));
    for (int i = 0; i < 24; ++i) {
        QRadialGradient icon(QPointF(1250 + i * 60, 2100), 40);
        icon.setColorAt(0, QColor::fromHsv(random.bounded(360), 120, 255));
        icon.setColorAt(1, QColor::fromHsv(random.bounded(360), 200, 160));
        painter.setBrush(icon);
        painter.drawRoundedRect(QRect(1226 + i * 60, 2076, 48, 48), 12, 12);
    }
    return image;
}

/// A lattice of random values of `cell` pixels, smoothly interpolated.
class Noise {
public:
    Noise(int cell, QRandomGenerator& random)
        : cell(cell)
        , columns(frameSize.width() / cell + 2)
        , values(std::size_t(columns) * std::size_t(frameSize.height() / cell + 2))
    {
        for (double& value : values)
            value = random.generateDouble() - 0.5;
    }

    double at(int x, int y) const
    {
        const double u = smooth(double(x % cell) / cell);
        const double v = smooth(double(y % cell) / cell);
        const double* row = &values[std::size_t(y / cell) * std::size_t(columns) + std::size_t(x / cell)];
        const double* below = row + columns;
        return (row[0] * (1 - u) + row[1] * u) * (1 - v) + (below[0] * (1 - u) + below[1] * u) * v;
    }

private:
    static double smooth(double t) { return t * t * (3 - 2 * t); }

    int cell;
    int columns;
    std::vector<double> values;
};

/// A photograph: smooth noise of many sizes, much the same in all three colours, and fine grain.
inline QImage photoPicture()
{
    QRandomGenerator random(11);
    std::vector<Noise> light;
    std::vector<Noise> colour;
    for (int cell = 512; cell >= 4; cell /= 2)
        light.emplace_back(cell, random);
    for (int channel = 0; channel < 3; ++channel)
        colour.emplace_back(256, random);
    QImage image(frameSize, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            double sum = 128;
            double amplitude = 130;
            for (const Noise& octave : light) {
                sum += amplitude * octave.at(x, y);
                amplitude *= 0.6;
            }
            std::array<int, 3> rgb{};
            for (std::size_t channel = 0; channel < 3; ++channel) {
                const double grain = (random.generateDouble() + random.generateDouble() - 1) * 4;
                rgb[channel]
                    = std::clamp(int(std::lround(sum + 60 * colour[channel].at(x, y) + grain)), 0, 255);
            }
            line[x] = qRgb(rgb[0], rgb[1], rgb[2]);
        }
    }
    return image;
}

} // namespace pintalux::bench
