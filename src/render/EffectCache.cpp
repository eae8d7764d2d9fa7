// SPDX-License-Identifier: MIT
#include "render/EffectCache.h"

#include "platform/image/ImageFilter.h"

#include <algorithm>

namespace pintalux {

QImage EffectCache::image(BlurStyle style, const QImage& source, double pixelScale)
{
    if (source.cacheKey() != sourceKey || pixelScale != sourceScale) {
        sourceKey = source.cacheKey();
        sourceScale = pixelScale;
        images.fill({});
    }
    auto& copy = images[std::size_t(style)];
    if (copy.isNull() && !source.isNull()) {
        copy = style == BlurStyle::pixelate ? ImageFilter::pixellate(source, std::max(9 * pixelScale, 6.0))
                                            : ImageFilter::gaussianBlur(source, 12 * pixelScale);
    }
    return copy;
}

} // namespace pintalux
