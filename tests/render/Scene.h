// SPDX-License-Identifier: MIT
#pragma once

#include "render/Renderer.h"

#include <QColorSpace>

/// Small documents, drawn and measured.
namespace pintalux::testing_scene {

inline QImage plain(int width, int height, const QColor& color = Qt::white)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    image.setColorSpace(QColorSpace::SRgb);
    return image;
}

/// A picture in which no two neighbouring pixels are alike.
inline QImage noise(int width, int height)
{
    auto image = plain(width, height);
    unsigned state = 12345;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            state = state * 1664525 + 1013904223;
            image.setPixel(x, y, 0xFF000000 | (state >> 8));
        }
    }
    return image;
}

inline Annotation mark(
    AnnotationKind kind, QPointF start, QPointF end, const QColor& color = Qt::red, double width = 4)
{
    return {.kind = kind, .start = start, .end = end, .color = color, .lineWidth = width};
}

inline QImage drawn(
    const Document& document, const Renderer::Overlay& overlay = {}, const BeautifySettings& beautify = {})
{
    EffectCache cache;
    const auto size = Renderer::compositionSize(document.image, beautify, document.pixelScale).toSize();
    auto image = plain(size.width(), size.height(), Qt::transparent);
    QPainter painter(&image);
    GraphicsContext context(painter);
    Renderer::draw(document, beautify, cache, overlay, context);
    return image;
}

inline QImage drawn(const QImage& capture, const QList<Annotation>& marks, double scale = 1)
{
    return drawn(Document{capture, marks, scale});
}

/// The smallest rectangle around all pixels in which two pictures of one size differ by more than `slack`.
inline QRect difference(const QImage& a, const QImage& b, int slack = 0)
{
    QRect area;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const auto p = a.pixel(x, y);
            const auto q = b.pixel(x, y);
            const int most = std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                std::abs(qBlue(p) - qBlue(q)), std::abs(qAlpha(p) - qAlpha(q))});
            if (most > slack)
                area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}

inline bool isColor(const QImage& image, QPointF at, const QColor& color, int slack = 3)
{
    const QColor pixel = image.pixelColor(at.toPoint());
    return std::abs(pixel.red() - color.red()) <= slack && std::abs(pixel.green() - color.green()) <= slack
        && std::abs(pixel.blue() - color.blue()) <= slack;
}

} // namespace pintalux::testing_scene
