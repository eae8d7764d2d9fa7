// SPDX-License-Identifier: MIT
#pragma once

#include "Pictures.h"
#include "render/Renderer.h"

/// Small documents, drawn and measured.
namespace pintalux::testing_scene {

using test::difference;

inline QImage plain(int width, int height, const QColor& color = Qt::white)
{
    return test::plain({width, height}, color, QImage::Format_ARGB32_Premultiplied);
}

/// Without transparency.
inline QImage noise(int width, int height)
{
    return test::noise({width, height}).convertToFormat(QImage::Format_ARGB32_Premultiplied);
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

inline bool isColor(const QImage& image, QPointF at, const QColor& color, int slack = 3)
{
    const QColor pixel = image.pixelColor(at.toPoint());
    return test::near(pixel, color, slack);
}

} // namespace pintalux::testing_scene
