// SPDX-License-Identifier: MIT
#include "platform/image/HeifImage.h"

#include <QColorSpace>

#include <libheif/heif.h>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace pintalux {

namespace {

struct Free {
    void operator()(heif_context* context) const { heif_context_free(context); }
    void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
    void operator()(heif_image* image) const { heif_image_release(image); }
    void operator()(heif_color_profile_nclx* profile) const { heif_nclx_color_profile_free(profile); }
};
template <typename T> using Owned = std::unique_ptr<T, Free>;

bool succeeded(const heif_error& error) { return error.code == heif_error_Ok; }

/// What the file says about its colours; sRGB when it says nothing that the toolkit knows.
QColorSpace colourSpace(const heif_image_handle* handle)
{
    if (const std::size_t size = heif_image_handle_get_raw_color_profile_size(handle); size > 0) {
        QByteArray profile(static_cast<qsizetype>(size), '\0');
        if (succeeded(heif_image_handle_get_raw_color_profile(handle, profile.data())))
            if (QColorSpace space = QColorSpace::fromIccProfile(profile); space.isValid())
                return space;
    }
    heif_color_profile_nclx* numbers = nullptr;
    const bool known = succeeded(heif_image_handle_get_nclx_color_profile(handle, &numbers));
    const Owned<heif_color_profile_nclx> owner(numbers);
    if (known && numbers->color_primaries == heif_color_primaries_SMPTE_EG_432_1)
        return QColorSpace::DisplayP3;
    return QColorSpace::SRgb;
}

} // namespace

bool looksLikeHeif(const QByteArray& bytes)
{
    if (bytes.size() < 12)
        return false;
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.constData());
    return heif_check_filetype(data, static_cast<int>(std::min<qsizetype>(bytes.size(), 4096)))
        != heif_filetype_no;
}

HeifImage decodeHeif(const QByteArray& bytes, qint64 limit)
{
    const Owned<heif_context> context(heif_context_alloc());
    heif_image_handle* found = nullptr;
    if (!context
        || !succeeded(heif_context_read_from_memory_without_copy(
            context.get(), bytes.constData(), static_cast<std::size_t>(bytes.size()), nullptr))
        || !succeeded(heif_context_get_primary_image_handle(context.get(), &found)))
        return {};
    const Owned<heif_image_handle> handle(found);
    const qint64 pixels = qint64(heif_image_handle_get_width(found)) * heif_image_handle_get_height(found);
    if (pixels > limit / 4)
        return {{}, true};

    heif_image* decoded = nullptr;
    const heif_error error
        = heif_decode_image(found, &decoded, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, nullptr);
    const Owned<heif_image> owner(decoded);
    if (!succeeded(error))
        return {};
    int stride = 0;
    const std::uint8_t* plane = heif_image_get_plane_readonly(decoded, heif_channel_interleaved, &stride);
    const int width = heif_image_get_width(decoded, heif_channel_interleaved);
    const int height = heif_image_get_height(decoded, heif_channel_interleaved);
    if (!plane || width <= 0 || height <= 0)
        return {};
    const auto format = heif_image_handle_is_premultiplied_alpha(found)
        ? QImage::Format_RGBA8888_Premultiplied
        : heif_image_handle_has_alpha_channel(found) ? QImage::Format_RGBA8888
                                                     : QImage::Format_RGBX8888;
    QImage image = QImage(plane, width, height, stride, format).copy();
    image.setColorSpace(colourSpace(found));
    return {image};
}

} // namespace pintalux
