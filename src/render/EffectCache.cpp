// SPDX-License-Identifier: MIT
#include "render/EffectCache.h"

#include <QColorSpace>

#include <algorithm>
#include <numeric>
#include <vector>

namespace pintalux {

namespace {

std::vector<int> upTo(int count)
{
    std::vector<int> all(std::size_t(std::max(0, count)));
    std::iota(all.begin(), all.end(), 0);
    return all;
}

} // namespace

QImage EffectCache::image(BlurStyle style, const QImage& source, double pixelScale)
{
    return pixels(style, source, pixelScale, upTo(source.width()), upTo(source.height()));
}

QImage EffectCache::pixels(BlurStyle style, const QImage& source, double pixelScale,
    std::span<const int> columns, std::span<const int> rows)
{
    if (!prepare(style, source, pixelScale))
        return {};
    auto made = [&] {
        switch (style) {
        case BlurStyle::pixelate:
            return cells.pixellated(columns, rows);
        case BlurStyle::blur:
            return blur.pixels(columns, rows);
        }
        return QImage();
    }();
    made.setColorSpace(source.colorSpace());
    return made;
}

bool EffectCache::prepare(BlurStyle style, const QImage& source, double pixelScale)
{
    if (source.cacheKey() != sourceKey || pixelScale != sourceScale) {
        sourceKey = source.cacheKey();
        sourceScale = pixelScale;
        cells = {};
        blur = {};
    }
    if (cells.isNull())
        cells = RedactionCells(source, cellSide(pixelScale));
    if (cells.isNull())
        return false;
    if (style == BlurStyle::blur && blur.isNull())
        blur = RedactionBlur(cells, 12 * pixelScale);
    return true;
}

} // namespace pintalux
