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

/// One more than the highest step number in use.
int nextStepNumber(const Document& document);

/// Where an inserted picture goes: centred on a document pixel, at its natural size but at most 45 % of the
/// document's width and height. `sourceScale` is the picture's pixels per point.
QRectF placeOfPicture(const Document& document, QSize pixels, QPointF center, double sourceScale);

/// The document cut to `rect`, rounded outward to whole pixels. None when fewer than two pixels of the image
/// would remain on a side.
std::optional<Document> cropped(const Document& document, const QRectF& rect);

} // namespace DocumentEditing

} // namespace pintalux
