#include "model/JsonReader.h"

#include "model/Color.h"

#include <cmath>

namespace pintalux {

bool JsonPlace::boolean() const
{
    if (!value.isBool())
        fail(u"debe ser true o false."_qs);
    return value.toBool();
}

double JsonPlace::number(double least, double most) const
{
    if (!value.isDouble())
        fail(u"debe ser un número."_qs);
    const double number = value.toDouble();
    if (!std::isfinite(number))
        fail(u"el número no es finito."_qs);
    if (number < least || number > most)
        fail(u"el número debe estar entre %1 y %2."_qs.arg(least, 0, 'g', 10).arg(most, 0, 'g', 10));
    return number;
}

int JsonPlace::integer() const
{
    const double whole = number();
    if (whole != std::floor(whole))
        fail(u"debe ser un número entero."_qs);
    return int(whole);
}

QString JsonPlace::string() const
{
    if (!value.isString())
        fail(u"debe ser un texto."_qs);
    return value.toString();
}

QPointF JsonPlace::point() const
{
    if (!value.isArray() || value.toArray().size() != 2)
        fail(u"debe ser un punto [x, y]."_qs);
    const auto coordinates = elements();
    return {coordinates[0].number(), coordinates[1].number()};
}

QColor JsonPlace::color() const
{
    const auto text = string();
    const auto parsed = text.size() == 7 && text.startsWith(u'#') ? colorFromHex(text) : std::nullopt;
    if (!parsed)
        fail(u"debe ser un color «#RRGGBB»."_qs);
    return *parsed;
}

QUuid JsonPlace::uuid() const
{
    const auto id = QUuid::fromString(string());
    if (id.isNull())
        fail(u"debe ser un UUID."_qs);
    return id;
}

QJsonObject JsonPlace::object() const
{
    if (!value.isObject())
        fail(u"debe ser un objeto {…}."_qs);
    return value.toObject();
}

QList<JsonPlace> JsonPlace::elements() const
{
    if (!value.isArray())
        fail(u"debe ser una lista […]."_qs);
    QList<JsonPlace> places;
    const auto array = value.toArray();
    for (qsizetype i = 0; i < array.size(); ++i)
        places.append({array.at(i), path + u"[%1]"_qs.arg(i)});
    return places;
}

std::optional<JsonPlace> JsonFields::take(const QString& name)
{
    const auto value = fields.take(name);
    if (value.isUndefined() || value.isNull())
        return std::nullopt;
    return JsonPlace{value, path + u"."_qs + name};
}

JsonPlace JsonFields::require(const QString& name)
{
    auto place = take(name);
    if (!place)
        JsonPlace{{}, path}.fail(u"falta «%1»."_qs.arg(name));
    return *place;
}

void JsonFields::finish() const
{
    if (!fields.isEmpty())
        JsonPlace{{}, path + u"."_qs + fields.keys().constFirst()}.fail(u"campo desconocido."_qs);
}

} // namespace pintalux
