// SPDX-License-Identifier: MIT
#include "model/JsonReader.h"

#include "platform/graphics/Color.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include <algorithm>
#include <cctype>
#include <cmath>

using namespace Qt::StringLiterals;

namespace pintalux {

bool JsonPlace::boolean() const
{
    if (!value.isBool())
        fail(u"debe ser true o false."_s);
    return value.toBool();
}

double JsonPlace::number(double least, double most) const
{
    if (!value.isDouble())
        fail(u"debe ser un número."_s);
    const double number = value.toDouble();
    if (!std::isfinite(number))
        fail(u"el número no es finito."_s);
    if (number < least || number > most)
        fail(u"el número debe estar entre %1 y %2."_s.arg(least, 0, 'g', 12).arg(most, 0, 'g', 12));
    return number;
}

int JsonPlace::integer() const
{
    const double whole = number();
    if (whole != std::floor(whole))
        fail(u"debe ser un número entero."_s);
    return int(whole);
}

QString JsonPlace::string() const
{
    if (!value.isString())
        fail(u"debe ser un texto."_s);
    return value.toString();
}

QPointF JsonPlace::point() const
{
    if (!value.isArray() || value.toArray().size() != 2)
        fail(u"debe ser un punto [x, y]."_s);
    const auto coordinates = elements();
    return {coordinates[0].number(), coordinates[1].number()};
}

QColor JsonPlace::color() const
{
    const auto text = string();
    const auto parsed = text.size() == 7 && text.startsWith(u'#') ? colorFromHex(text) : std::nullopt;
    if (!parsed)
        fail(u"debe ser un color «#RRGGBB»."_s);
    return *parsed;
}

QUuid JsonPlace::uuid() const
{
    constexpr qsizetype plainLength = 36; // without braces
    const auto text = string();
    const auto id = QUuid::fromString(text);
    if (id.isNull() || text.size() != plainLength)
        fail(u"debe ser un UUID."_s);
    return id;
}

QJsonObject JsonPlace::object() const
{
    if (!value.isObject())
        fail(u"debe ser un objeto {…}."_s);
    return value.toObject();
}

QList<JsonPlace> JsonPlace::elements() const
{
    if (!value.isArray())
        fail(u"debe ser una lista […]."_s);
    QList<JsonPlace> places;
    const auto array = value.toArray();
    for (qsizetype i = 0; i < array.size(); ++i)
        places.append({array.at(i), path + u"[%1]"_s.arg(i)});
    return places;
}

JsonFields::JsonFields(const JsonPlace& place, std::span<const QStringView> known)
    : path(place.path)
    , fields(place.object())
{
    for (const auto& name : fields.keys())
        if (std::ranges::find(known, name) == known.end())
            JsonPlace{{}, path + u"."_s + name}.fail(u"campo desconocido."_s);
}

std::optional<JsonPlace> JsonFields::find(const QString& name) const
{
    const auto value = fields.value(name);
    return value.isUndefined() ? std::nullopt : std::optional(JsonPlace{value, path + u"."_s + name});
}

JsonPlace JsonFields::require(const QString& name) const
{
    auto place = find(name);
    if (!place)
        JsonPlace{{}, path}.fail(u"falta «%1»."_s.arg(name));
    return *place;
}

namespace {

/// Walks through valid JSON and keeps the names of the objects that it is in.
class NameWalk {
public:
    NameWalk(const QByteArray& text, int deepestObject)
        : json(text)
        , deepest(deepestObject)
    {
    }

    std::optional<RepeatedName> firstRepeated()
    {
        for (; at < json.size(); ++at) {
            const char sign = json[at];
            if (sign == '{' || sign == '[')
                open.append({sign == '{', placeOfNext(), 0, {}, {}});
            else if (sign == '}' || sign == ']')
                open.removeLast();
            else if (sign == ',' && !open.isEmpty())
                ++open.last().index;
            else if (sign == '"')
                if (auto repeated = text())
                    return repeated;
        }
        return std::nullopt;
    }

private:
    struct Container {
        bool isObject;
        QString path;
        qsizetype index; ///< of the element that is read, in a list
        QSet<QString> names;
        QString name; ///< of the field that is read, in an object
    };

    QString placeOfNext() const
    {
        if (open.isEmpty())
            return u"$"_s;
        const auto& in = open.last();
        return in.isObject ? in.path + u"."_s + in.name : in.path + u"[%1]"_s.arg(in.index);
    }

    /// From a quotation mark to the one that ends the text.
    std::optional<RepeatedName> text()
    {
        const auto start = at;
        while (json[++at] != '"')
            at += json[at] == '\\';
        auto next = at + 1;
        while (next < json.size() && std::isspace(static_cast<unsigned char>(json[next])))
            ++next;
        if (open.isEmpty() || !open.last().isObject || next == json.size() || json[next] != ':')
            return std::nullopt;
        auto& object = open.last();
        // A name may be written with escapes.
        object.name
            = QJsonDocument::fromJson('[' + json.mid(start, at + 1 - start) + ']').array().at(0).toString();
        const bool isRepeated = object.names.contains(object.name);
        object.names.insert(object.name);
        if (isRepeated && open.size() <= deepest)
            return RepeatedName{object.name, placeOfNext()};
        return std::nullopt;
    }

    const QByteArray& json;
    int deepest;
    qsizetype at = 0;
    QList<Container> open;
};

} // namespace

std::optional<RepeatedName> repeatedName(const QByteArray& json, int deepest)
{
    return NameWalk(json, deepest).firstRepeated();
}

} // namespace pintalux
