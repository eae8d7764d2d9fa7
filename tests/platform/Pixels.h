// SPDX-License-Identifier: MIT
#pragma once

/// Pictures to filter, and the plain arithmetic that filters are held to.
namespace pintalux::testing_pixels {

/// One channel of a picture, row by row.
using Plane = std::vector<double>;

/// One channel, convolved in double precision with a Gaussian cut off at six σ.
inline Plane referenceBlur(const Plane& source, QSize size, double sigma, bool repeatEdges)
{
    const int reach = static_cast<int>(std::ceil(6 * sigma));
    Plane weights;
    double total = 0;
    for (int offset = -reach; offset <= reach; ++offset) {
        weights.push_back(std::exp(-0.5 * offset * offset / (sigma * sigma)));
        total += weights.back();
    }
    const auto pass = [&](const Plane& from, int length, int step, int lines, int lineStep) {
        Plane to(from.size());
        for (int line = 0; line < lines; ++line)
            for (int i = 0; i < length; ++i) {
                double sum = 0;
                for (int offset = -reach; offset <= reach; ++offset) {
                    const int at = i + offset;
                    if (repeatEdges || (at >= 0 && at < length))
                        sum += weights[std::size_t(offset + reach)]
                            * from[std::size_t(line * lineStep + std::clamp(at, 0, length - 1) * step)];
                }
                to[std::size_t(line * lineStep + i * step)] = sum / total;
            }
        return to;
    };
    const int width = size.width();
    return pass(pass(source, width, 1, size.height(), width), size.height(), width, width, 1);
}

inline Plane channelOf(const QImage& image, int channel, int channels)
{
    Plane plane;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            plane.push_back(image.constScanLine(y)[x * channels + channel]);
    return plane;
}

inline double largestDifference(const Plane& a, const Plane& b)
{
    double largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        largest = std::max(largest, std::abs(a[i] - b[i]));
    return largest;
}

} // namespace pintalux::testing_pixels
