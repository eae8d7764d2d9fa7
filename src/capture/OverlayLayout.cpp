// SPDX-License-Identifier: MIT
#include "capture/OverlayLayout.h"

#include "model/Palette.h"
#include "platform/graphics/Geometry.h"

#include <span>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// Points, as everything here.
constexpr double labelMargin = 6;
constexpr double readoutHeight = 24;
constexpr double readoutGap = 8;

struct Instruction {
    QStringView key; ///< empty for the first, which is text alone
    QStringView text;
};
constexpr std::array<Instruction, 4> areaInstructions{
    {{u"", u"Arrastra para seleccionar"}, {u"Espacio", u"ventana"}, {u"↩", u"pantalla"}, {u"Esc", u"salir"}}};
constexpr std::array<Instruction, 3> windowInstructions{
    {{u"", u"Haz clic en una ventana"}, {u"Espacio", u"área"}, {u"Esc", u"salir"}}};
constexpr std::array<Instruction, 4> noWindowsInstructions{
    {{u"", u"Esta sesión no dice qué ventanas hay: arrastra para seleccionar"}, {u"Espacio", u"área"},
        {u"↩", u"pantalla"}, {u"Esc", u"salir"}}};
constexpr std::array<Instruction, 2> textInstructions{
    {{u"", u"Selecciona el texto que quieres copiar"}, {u"Esc", u"salir"}}};
constexpr std::array<Instruction, 2> colorInstructions{
    {{u"", u"Haz clic para copiar el color"}, {u"Esc", u"salir"}}};

/// By the ordinal of the mode.
constexpr std::array<std::span<const Instruction>, 4> instructions{
    areaInstructions, windowInstructions, textInstructions, colorInstructions};

TextAttributes labelAttributes() { return {Draw::systemFont(12, FontWeight::semibold), Qt::white}; }

// A position computed from whole pixels and a fractional scale comes back a hair beside the whole number.
constexpr double tolerance = 1e-6;
int roundedDown(double pixels) { return int(std::floor(pixels + tolerance)); }
int roundedUp(double pixels) { return int(std::ceil(pixels - tolerance)); }

/// The picture's own size, or the view's where the screen is not the one that it was taken from.
QRectF pictureRect(const OverlayScene& scene)
{
    const auto own = QSizeF(scene.imageSize) / scene.pixelScale;
    const auto difference = own - scene.viewSize;
    const bool same = std::abs(difference.width()) < 1 && std::abs(difference.height()) < 1;
    return {QPointF(0, 0), same ? own : scene.viewSize};
}

QString sizeText(const OverlayScene& scene)
{
    const auto& selection = *scene.selection;
    const auto size = scene.selectsWindows() ? QSize(roundedDown(selection.width() * scene.pixelScale),
                          roundedDown(selection.height() * scene.pixelScale))
                                             : pixelsOf(selection, scene.pixelScale, scene.imageSize).size();
    return u"%1 × %2"_s.arg(std::max(0, size.width())).arg(std::max(0, size.height()));
}

OverlayLayout::Label labelOf(const OverlayScene& scene, const QRectF& bounds)
{
    constexpr double besideText = 22; // padding and the margin to the screen's edge
    const auto attributes = labelAttributes();
    const auto size = sizeText(scene);
    const auto& selection = *scene.selection;

    OverlayLayout::Label label;
    TextLine numbers;
    const auto separator = u"   "_s;
    numbers.appendWithEvenDigits(separator + size, attributes);
    if (scene.selectsWindows() && !scene.windowTitle.isEmpty()) {
        const double room = bounds.width() - besideText - labelMargin - numbers.size().width();
        const auto title = shortenedInTheMiddle(scene.windowTitle, attributes, room);
        label.text.append(title, attributes);
        label.text.appendWithEvenDigits(separator + size, attributes);
        label.content = title + separator + size;
    } else {
        label.text.appendWithEvenDigits(size, attributes);
        label.content = size;
    }

    const auto text = label.text.size();
    double x = std::max(selection.left(), labelMargin);
    x = std::max(labelMargin, std::min(x, bounds.right() - text.width() - besideText));
    double y = selection.bottom() + 8;
    const double lowest = bounds.bottom() - text.height() - 10;
    if (y > lowest)
        y = selection.bottom() - text.height() - 16;
    y = std::max(labelMargin, std::min(y, lowest));
    label.pill = {x, y, text.width() + 16, text.height() + 8};
    label.textOrigin = {x + 8, y + 4};
    return label;
}

std::span<const Instruction> instructionsFor(const OverlayScene& scene)
{
    if (scene.mode == OverlayMode::window && !scene.listsWindows)
        return noWindowsInstructions;
    return instructions[std::size_t(scene.mode)];
}

OverlayLayout::Bar barOf(const OverlayScene& scene, const QRectF& bounds)
{
    const TextAttributes plain{Draw::systemFont(12.5, FontWeight::medium), Qt::white};
    const TextAttributes keys{Draw::systemFont(11.5, FontWeight::bold), Palette::brandLight};
    OverlayLayout::Bar bar;
    for (const auto& [key, text] : instructionsFor(scene)) {
        if (bar.text.size().width() > 0)
            bar.text.append(u"     "_s, plain);
        if (!key.isEmpty())
            bar.text.append(key.toString() + u"  "_s, keys);
        bar.text.append(text.toString(), plain);
    }
    const auto size = bar.text.size();
    bar.frame = {bounds.center().x() - size.width() / 2 - 18, 34, size.width() + 36, size.height() + 16};
    bar.textOrigin = bar.frame.topLeft() + QPointF(18, 8);
    return bar;
}

OverlayLayout::Loupe loupeOf(const OverlayScene& scene, const QRectF& bounds)
{
    constexpr double distance = 22;
    constexpr double besideEdge = 8;
    constexpr double below = 34; // room for the readout
    const auto pointer = *scene.mouse;
    OverlayLayout::Loupe loupe;
    loupe.pixel = pixelAt(pointer, scene.pixelScale);

    const bool fitsRight = pointer.x() + distance + loupeSide <= bounds.right() - besideEdge;
    const bool fitsBelow = pointer.y() + distance + loupeSide + below <= bounds.bottom() - besideEdge;
    const double x = fitsRight ? pointer.x() + distance : pointer.x() - loupeSide - distance;
    const double y = fitsBelow ? pointer.y() + distance : pointer.y() - loupeSide - distance - below;
    // Screens without room on either side get it at their edge.
    const auto kept = [](double place, double end) { return std::max(0.0, std::min(place, end)); };
    const double height = loupeSide + readoutGap + readoutHeight;
    loupe.frame
        = {kept(x, bounds.right() - loupeSide), kept(y, bounds.bottom() - height), loupeSide, loupeSide};

    // All characters are equally wide, so any colour gives the width.
    const auto text = TextBlock(readoutText(u"#000000"_s, loupe.pixel), readoutAttributes()).size();
    const double width = std::max(loupeSide, text.width() + 34);
    loupe.readout = {kept(loupe.frame.left(), bounds.right() - width), loupe.frame.bottom() + readoutGap,
        width, readoutHeight};
    return loupe;
}

// How far each thing is drawn beyond its rectangle.
constexpr double frameReach = 6; // a handle's radius and half its line
constexpr double edgeReach = 1;

QRect whole(const QRectF& rect, double reach = edgeReach) { return expanded(rect, reach).toAlignedRect(); }

QRegion frameRegion(const QRectF& selection)
{
    const auto inside = expanded(selection, -frameReach);
    const QRegion outer(whole(selection, frameReach));
    return inside.isValid() ? outer - QRegion(inside.toRect().adjusted(1, 1, -1, -1)) : outer;
}

QRegion loupeRegion(const OverlayLayout::Loupe& loupe)
{
    constexpr double shadowReach = 34; // a Gaussian of sigma 9
    constexpr double shadowOffset = 6;
    const auto shadow = expanded(loupe.frame, shadowReach).translated(0, shadowOffset);
    return QRegion(whole(shadow)) + whole(loupe.readout);
}

QRegion labelRegion(const OverlayLayout::Label& label) { return whole(label.pill); }
QRegion barRegion(const OverlayLayout::Bar& bar) { return whole(bar.frame); }

/// Both places of a thing that moved, changed, came or went; nothing for one that stayed the same.
template <typename Part, typename Same, typename Region>
QRegion changed(const std::optional<Part>& before, const std::optional<Part>& after, Same same, Region region)
{
    if (before && after && same(*before, *after))
        return {};
    return (before ? region(*before) : QRegion()) + (after ? region(*after) : QRegion());
}

} // namespace

QPoint pixelAt(QPointF viewPoint, double pixelScale)
{
    return {roundedDown(viewPoint.x() * pixelScale), roundedDown(viewPoint.y() * pixelScale)};
}

QRect pixelsOf(const QRectF& viewRect, double pixelScale, QSize imageSize)
{
    const QPoint first = pixelAt(viewRect.topLeft(), pixelScale);
    const QPoint end(roundedUp(viewRect.right() * pixelScale), roundedUp(viewRect.bottom() * pixelScale));
    return QRect(first, QSize(end.x() - first.x(), end.y() - first.y())) & QRect(QPoint(), imageSize);
}

TextAttributes readoutAttributes() { return {Draw::monospacedFont(11, FontWeight::medium), Qt::white}; }

QString readoutText(const QString& hex, QPoint pixel)
{
    return u"%1   %2, %3"_s.arg(hex).arg(pixel.x()).arg(pixel.y());
}

OverlayLayout layOut(const OverlayScene& scene)
{
    OverlayLayout layout;
    layout.mode = scene.mode;
    layout.selectsWindows = scene.selectsWindows();
    layout.bounds = {QPointF(0, 0), scene.viewSize};
    layout.picture = pictureRect(scene);
    if (scene.mode != OverlayMode::color)
        layout.selection = scene.selection;
    if (layout.selection)
        layout.label = labelOf(scene, layout.bounds);
    const bool pointerHere = scene.mouse && containsPoint(layout.bounds, *scene.mouse);
    if (pointerHere && scene.mode == OverlayMode::color)
        layout.loupe = loupeOf(scene, layout.bounds);
    if (scene.mouse ? pointerHere : scene.hasKeyboard)
        layout.bar = barOf(scene, layout.bounds);
    return layout;
}

QRegion damage(const OverlayLayout& before, const OverlayLayout& after)
{
    if (before.bounds != after.bounds || before.picture != after.picture
        || before.isDimmed() != after.isDimmed())
        return whole(after.bounds | after.picture);

    QRegion region;
    if (before.selection != after.selection || before.hasHandles() != after.hasHandles()) {
        const auto frame
            = [](const auto& selection) { return selection ? frameRegion(*selection) : QRegion(); };
        const auto bright
            = [](const auto& selection) { return selection ? QRegion(whole(*selection)) : QRegion(); };
        region += frame(before.selection) + frame(after.selection);
        region += bright(before.selection).xored(bright(after.selection));
    }
    region += changed(
        before.label, after.label,
        [](const auto& one, const auto& other) {
            return one.pill == other.pill && one.content == other.content;
        },
        labelRegion);
    region += changed(
        before.bar, after.bar, [&](const auto&, const auto&) { return before.mode == after.mode; },
        barRegion);
    region += changed(
        before.loupe, after.loupe,
        [](const auto& one, const auto& other) {
            return one.frame == other.frame && one.pixel == other.pixel;
        },
        loupeRegion);
    return region & whole(after.bounds | after.picture);
}

} // namespace pintalux
