// SPDX-License-Identifier: MIT
#include "editor/state/DocumentEditing.h"

#include <algorithm>
#include <cmath>

namespace pintalux {

namespace {

/// Largest part of the document's width and height that an inserted picture takes.
constexpr double insertedPart = 0.45;
/// Least width and height of a cropped document, in pixels.
constexpr double leastCrop = 2;

/// The smallest rectangle of whole pixels around `rect`.
QRect outwardRounded(const QRectF& rect)
{
    const QPoint least(int(std::floor(rect.left())), int(std::floor(rect.top())));
    const QPoint beyond(int(std::ceil(rect.right())), int(std::ceil(rect.bottom())));
    return {least, QSize(beyond.x() - least.x(), beyond.y() - least.y())};
}

} // namespace

bool DocumentEditing::changeMark(
    Document& document, const QUuid& id, const std::function<void(Annotation&)>& change)
{
    // Found without detaching: snapshots share the list.
    const auto at = std::ranges::find(std::as_const(document.annotations), id, &Annotation::id)
        - document.annotations.cbegin();
    if (at == document.annotations.size())
        return false;
    change(document.annotations[at]);
    return true;
}

void DocumentEditing::removeMark(Document& document, const QUuid& id)
{
    document.annotations.removeIf([&](const Annotation& mark) { return mark.id == id; });
}

int DocumentEditing::nextStepNumber(const Document& document)
{
    std::optional<int> highest;
    for (const auto& mark : document.annotations)
        if (mark.kind == AnnotationKind::step)
            highest = std::max(highest.value_or(mark.number), mark.number);
    return highest.value_or(0) + 1;
}

QRectF DocumentEditing::placeOfPicture(
    const Document& document, QSize pixels, QPointF center, double sourceScale)
{
    const QSizeF natural = QSizeF(pixels) * (document.pixelScale / std::max(sourceScale, 1.0));
    const auto room = document.imageSize() * insertedPart;
    const double fit = std::min({1.0, room.width() / std::max(natural.width(), 1.0),
        room.height() / std::max(natural.height(), 1.0)});
    const QPointF half(natural.width() * fit / 2, natural.height() * fit / 2);
    return {center - half, center + half};
}

std::optional<Document> DocumentEditing::cropped(const Document& document, const QRectF& rect)
{
    const auto area = outwardRounded(rect) & document.image.rect();
    const bool largeEnough = area.width() >= leastCrop && area.height() >= leastCrop
        && rect.width() >= leastCrop && rect.height() >= leastCrop;
    return largeEnough ? document.cropped(area) : std::nullopt;
}

} // namespace pintalux
