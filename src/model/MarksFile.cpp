// SPDX-License-Identifier: MIT
#include "model/MarksFile.h"

#include "model/JsonReader.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

/// What a kind of mark cannot do without.
struct Needs {
    AnnotationKind kind;
    bool start;
    bool end;
    bool points;
    bool color;
    bool lineWidth;
};

constexpr std::array<Needs, 10> needsTable{{
    //                            start  end    points colour width
    {AnnotationKind::arrow, true, true, false, true, true},
    {AnnotationKind::rectangle, true, true, false, true, true},
    {AnnotationKind::ellipse, true, true, false, true, true},
    {AnnotationKind::line, true, true, false, true, true},
    {AnnotationKind::pen, false, false, true, true, true},
    {AnnotationKind::highlighter, false, false, true, true, true},
    {AnnotationKind::text, true, false, false, true, false},
    {AnnotationKind::step, true, false, false, true, true},
    {AnnotationKind::blur, true, true, false, false, false},
    {AnnotationKind::image, true, true, false, false, false},
}};
static_assert(isComplete(needsTable, &Needs::kind));

constexpr std::array<QStringView, 4> fileFields{u"$schema", u"pixelScale", u"annotations", u"beautify"};
constexpr std::array<QStringView, 18> markFields{u"kind", u"id", u"start", u"end", u"points", u"color",
    u"lineWidth", u"filled", u"text", u"fontSize", u"number", u"blurStyle", u"arrowStyle", u"handwritten",
    u"control", u"pointer", u"boxWidth", u"image"};
constexpr std::array<QStringView, 6> frameFields{
    u"enabled", u"gradient", u"padding", u"cornerRadius", u"shadow", u"border"};

constexpr double largest = 1e6;

double length(const JsonPlace& place) { return place.number(0, largest); }
/// Strokes far wider than any picture take the toolkit's rasteriser many seconds.
double lineWidth(const JsonPlace& place) { return place.number(0, 10000); }
double fontSize(const JsonPlace& place) { return place.number(0.1, 10000); }

/// Sets `target` from the field of that name when it is there (or must be).
template <typename T, typename Read>
void assign(const JsonFields& fields, const QString& name, T& target, Read read, bool needed = false)
{
    if (const auto place = needed ? std::optional(fields.require(name)) : fields.find(name))
        target = read(*place);
}

qsizetype lineAt(const QByteArray& text, qsizetype offset)
{
    return text.first(std::clamp<qsizetype>(offset, 0, text.size())).count('\n') + 1;
}

QList<QPointF> points(const JsonPlace& place)
{
    QList<QPointF> list;
    for (const auto& element : place.elements())
        list << element.point();
    return list;
}

Annotation annotation(const JsonPlace& place, const MarksFile::ImageLoader& loadImage)
{
    const JsonFields fields(place, markFields);
    Annotation mark;
    mark.kind = fields.require(u"kind"_s).enumeration<AnnotationKind>();
    const auto& needs = needsTable[std::size_t(mark.kind)];

    assign(fields, u"id"_s, mark.id, std::mem_fn(&JsonPlace::uuid));
    assign(fields, u"start"_s, mark.start, std::mem_fn(&JsonPlace::point), needs.start);
    mark.end = mark.start;
    assign(fields, u"end"_s, mark.end, std::mem_fn(&JsonPlace::point), needs.end);
    assign(fields, u"points"_s, mark.points, points, needs.points);
    assign(fields, u"color"_s, mark.color, std::mem_fn(&JsonPlace::color), needs.color);
    assign(fields, u"lineWidth"_s, mark.lineWidth, lineWidth, needs.lineWidth);
    assign(fields, u"filled"_s, mark.filled, std::mem_fn(&JsonPlace::boolean));
    assign(fields, u"text"_s, mark.text, std::mem_fn(&JsonPlace::string));
    assign(fields, u"fontSize"_s, mark.fontSize, fontSize);
    assign(fields, u"number"_s, mark.number, std::mem_fn(&JsonPlace::integer));
    assign(fields, u"blurStyle"_s, mark.blurStyle, std::mem_fn(&JsonPlace::enumeration<BlurStyle>));
    assign(fields, u"arrowStyle"_s, mark.arrowStyle, std::mem_fn(&JsonPlace::enumeration<ArrowStyle>));
    assign(fields, u"handwritten"_s, mark.handwritten, std::mem_fn(&JsonPlace::boolean));
    assign(fields, u"control"_s, mark.control, std::mem_fn(&JsonPlace::point));
    assign(fields, u"pointer"_s, mark.pointer, std::mem_fn(&JsonPlace::point));
    assign(fields, u"boxWidth"_s, mark.boxWidth, length);
    const auto load = [&](const JsonPlace& image) {
        try {
            return loadImage(image.string());
        } catch (const Error& error) {
            throw Error(error.domain, error.code, image.path + u": "_s + error.localizedDescription);
        }
    };
    assign(fields, u"image"_s, mark.image, load, mark.kind == AnnotationKind::image);
    return mark;
}

BeautifySettings beautifySettings(const JsonPlace& place)
{
    constexpr double mostPoints = 2000;
    const auto points = [](const JsonPlace& field) { return field.number(0, mostPoints); };
    const JsonFields fields(place, frameFields);
    BeautifySettings settings;
    assign(fields, u"enabled"_s, settings.enabled, std::mem_fn(&JsonPlace::boolean));
    assign(fields, u"gradient"_s, settings.gradient, std::mem_fn(&JsonPlace::integer));
    assign(fields, u"padding"_s, settings.padding, points);
    assign(fields, u"cornerRadius"_s, settings.cornerRadius, points);
    assign(fields, u"shadow"_s, settings.shadow, std::mem_fn(&JsonPlace::boolean));
    assign(fields, u"border"_s, settings.border, std::mem_fn(&JsonPlace::boolean));
    return settings;
}

} // namespace

MarksFile MarksFile::parse(const QByteArray& json, const ImageLoader& loadImage)
{
    QJsonParseError problem{};
    const auto document = QJsonDocument::fromJson(json, &problem);
    if (document.isNull())
        throw Error(
            Error::ownDomain, 2, u"no es JSON válido (línea %1)."_s.arg(lineAt(json, problem.offset)));

    if (const auto repeated = repeatedName(json))
        JsonPlace{{}, repeated->path}.fail(u"aparece dos veces."_s);
    const JsonFields fields(
        {document.isObject() ? QJsonValue(document.object()) : QJsonValue(document.array()), u"$"_s},
        fileFields);
    if (const auto schema = fields.find(u"$schema"_s)) // for editors that complete what is typed
        schema->string();
    MarksFile marks;
    assign(fields, u"pixelScale"_s, marks.pixelScale,
        [](const JsonPlace& place) { return place.number(0.1, 16); });
    if (const auto list = fields.find(u"annotations"_s))
        for (const auto& element : list->elements())
            marks.annotations << annotation(element, loadImage);
    assign(fields, u"beautify"_s, marks.beautify, beautifySettings);
    return marks;
}

} // namespace pintalux
