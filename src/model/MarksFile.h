// SPDX-License-Identifier: MIT
#pragma once

#include "model/Annotation.h"
#include "model/BeautifySettings.h"

#include <QByteArray>
#include <QImage>
#include <QList>

#include <functional>
#include <optional>

namespace pintalux {

/// What a marks file asks to draw on a picture.
///
/// The file is a JSON object `{"pixelScale": 2, "annotations": […], "beautify": {…}}`. Fields carry the names
/// of `Annotation` and `BeautifySettings`; missing ones have their defaults, but what a kind of mark cannot
/// do without must be there. Points are `[x, y]`, colours "#RRGGBB", enumerations their raw values, `id` a
/// UUID and `image` a path relative to the file.
struct MarksFile {
    std::optional<double> pixelScale; ///< image pixels per point; none: as the picture itself says
    QList<Annotation> annotations;
    BeautifySettings beautify;

    /// Opens the picture that a mark names; throws `Error` when it cannot.
    using ImageLoader = std::function<QImage(const QString& path)>;

    /// Reads the text of a marks file. Throws `Error`, whose description names the place in the file, for
    /// anything but valid JSON, for unknown fields, wrong types and numbers that are not finite or beyond
    /// ±1 000 000.
    static MarksFile parse(const QByteArray& json, const ImageLoader& loadImage);
};

} // namespace pintalux
