// SPDX-License-Identifier: MIT
#include "editor/state/DocumentEditing.h"

#include "render/Renderer.h"

#include <algorithm>
#include <cmath>

namespace pintalux {

namespace {

/// Largest part of the document's width and height that an inserted picture takes.
constexpr double insertedPart = 0.45;
/// Least width and height of a cropped document, in pixels.
constexpr double leastCrop = 2;

/// How far aside a copy lies from what it copies, in points.
constexpr double copyOffset = 14;

/// The offset of a copy in one direction: forward, unless that leaves a picture of this `length` and backward
/// does not. `first` and `last` are the mark's extent.
double asideWithin(double first, double last, double length, double step)
{
    return last + step > length && first - step >= 0 ? -step : step;
}

qsizetype indexOf(const Document& document, const QUuid& id)
{
    return std::ranges::find(document.annotations, id, &Annotation::id) - document.annotations.cbegin();
}

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
    const auto at = indexOf(document, id);
    if (at == document.annotations.size())
        return false;
    change(document.annotations[at]);
    return true;
}

void DocumentEditing::removeMark(Document& document, const QUuid& id)
{
    document.annotations.removeIf([&](const Annotation& mark) { return mark.id == id; });
}

std::optional<QUuid> DocumentEditing::duplicateMark(Document& document, const QUuid& id)
{
    const auto* mark = document.annotation(id);
    if (!mark)
        return std::nullopt;
    auto copy = *mark;
    copy.id = QUuid::createUuid();
    if (copy.kind == AnnotationKind::step)
        copy.number = nextStepNumber(document);
    const auto bounds = copy.bounds();
    const auto size = document.imageSize();
    const double step = copyOffset * document.pixelScale;
    copy.offset({asideWithin(bounds.left(), bounds.right(), size.width(), step),
        asideWithin(bounds.top(), bounds.bottom(), size.height(), step)});
    document.annotations.append(copy);
    return copy.id;
}

std::optional<qsizetype> DocumentEditing::placePast(const Document& document, const QUuid& id, Order order)
{
    const auto& marks = document.annotations;
    const auto from = indexOf(document, id);
    if (from == marks.size())
        return std::nullopt;
    const auto painted
        = [&](qsizetype at) { return Renderer::paintedBounds(marks[at], document.pixelScale, 1); };
    const auto own = painted(from);
    const qsizetype step = order == Order::forward ? 1 : -1;
    for (auto at = from + step; at >= 0 && at < marks.size(); at += step)
        if (own.intersects(painted(at)))
            return at;
    return std::nullopt;
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

QRect DocumentEditing::croppedArea(const Document& document, const QRectF& rect)
{
    return outwardRounded(rect) & document.image.rect();
}

std::optional<Document> DocumentEditing::cropped(const Document& document, const QRectF& rect)
{
    const auto area = croppedArea(document, rect);
    const bool largeEnough = area.width() >= leastCrop && area.height() >= leastCrop
        && rect.width() >= leastCrop && rect.height() >= leastCrop;
    return largeEnough ? document.cropped(area) : std::nullopt;
}

} // namespace pintalux
