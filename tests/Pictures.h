// SPDX-License-Identifier: MIT
#pragma once

#include <QColorSpace>
#include <QImage>
#include <QRandomGenerator>

#include <algorithm>
#include <cstdlib>

// Pictures to begin with, and how two of them compare.

namespace pintalux::test {

inline QImage plain(QSize size, const QColor& color = Qt::white, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(size, format);
    image.fill(color);
    image.setColorSpace(QColorSpace::SRgb);
    return image;
}

/// A picture in which no two neighbouring pixels are alike; with transparency where the format has it.
inline QImage noise(QSize size, QImage::Format format = QImage::Format_RGB32, quint32 seed = 1)
{
    QImage image(size, QImage::Format_ARGB32);
    QRandomGenerator random(seed);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, random.generate());
    image.setColorSpace(QColorSpace::SRgb);
    return image.convertToFormat(format);
}

/// The largest difference of a component.
inline int apart(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
        std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))});
}

inline bool near(const QColor& a, const QColor& b, int slack = 3) { return apart(a.rgb(), b.rgb()) <= slack; }

/// How many places of a picture hold; `holds` is asked with a column and a row.
template <typename Holds> qsizetype countPixels(const QImage& image, Holds holds)
{
    qsizetype count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += holds(x, y) ? 1 : 0;
    return count;
}

/// The number of pixels whose colour differs; all of them when the sizes do.
inline qsizetype differingPixels(const QImage& a, const QImage& b)
{
    if (a.size() != b.size() || a.isNull())
        return std::max<qsizetype>(1, qsizetype(a.width()) * a.height());
    return countPixels(a, [&](int x, int y) { return a.pixel(x, y) != b.pixel(x, y); });
}

/// The smallest rectangle around all pixels in which two pictures of one size and format differ by more than
/// `slack`.
inline QRect difference(const QImage& a, const QImage& b, int slack = 0)
{
    QRect area;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (apart(a.pixel(x, y), b.pixel(x, y)) > slack)
                area |= QRect(x, y, 1, 1);
    return area;
}

} // namespace pintalux::test
