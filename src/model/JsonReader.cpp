// SPDX-License-Identifier: MIT
#include "model/JsonReader.h"

#include "platform/graphics/Color.h"

#include <QJsonArray>

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
    const auto id = QUuid::fromString(string());
    if (id.isNull())
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

std::optional<JsonPlace> JsonFields::take(const QString& name)
{
    const auto value = fields.take(name);
    if (value.isUndefined() || value.isNull())
        return std::nullopt;
    return JsonPlace{value, path + u"."_s + name};
}

JsonPlace JsonFields::require(const QString& name)
{
    auto place = take(name);
    if (!place)
        JsonPlace{{}, path}.fail(u"falta «%1»."_s.arg(name));
    return *place;
}

void JsonFields::finish() const
{
    if (!fields.isEmpty())
        JsonPlace{{}, path + u"."_s + fields.keys().constFirst()}.fail(u"campo desconocido."_s);
}

} // namespace pintalux
