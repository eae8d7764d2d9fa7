// SPDX-License-Identifier: MIT
#pragma once

#include "model/Document.h"

#include <QRectF>

#include <functional>
#include <optional>

namespace pintalux {

/// What an editor does to a document, without history or selection.
namespace DocumentEditing {

/// Changes the first mark with this identity; false when there is none.
bool changeMark(Document& document, const QUuid& id, const std::function<void(Annotation&)>& change);
/// Removes every mark with this identity.
void removeMark(Document& document, const QUuid& id);

/// Puts a copy of the mark above all others, a little aside and within the picture if the mark is; a step
/// marker gets the next number. Its identity, or none when there is no such mark.
std::optional<QUuid> duplicateMark(Document& document, const QUuid& id);

/// Towards the viewer or away from them.
enum class Order { forward, backward };
/// Where in `annotations` the mark is to be put to pass the next one that it touches; none when it is already
/// in front of, or behind, all of these.
std::optional<qsizetype> placePast(const Document& document, const QUuid& id, Order order);

/// One more than the highest step number in use.
int nextStepNumber(const Document& document);

/// Where an inserted picture goes: centred on a document pixel, at its natural size but at most 45 % of the
/// document's width and height. `sourceScale` is the picture's pixels per point.
QRectF placeOfPicture(const Document& document, QSize pixels, QPointF center, double sourceScale);

/// What cropping to `rect` leaves of the picture: whole pixels, rounded outward.
QRect croppedArea(const Document& document, const QRectF& rect);

/// The document cut to `rect`, rounded outward to whole pixels. None when fewer than two pixels of the image
/// would remain on a side.
std::optional<Document> cropped(const Document& document, const QRectF& rect);

} // namespace DocumentEditing

} // namespace pintalux
