// SPDX-License-Identifier: MIT
#pragma once

#include "platform/base/Error.h"
#include "platform/base/StringEnum.h"

#include <QColor>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QPointF>
#include <QStringList>
#include <QUuid>

#include <optional>

namespace pintalux {

/// A value in a JSON document together with its place, so that an error can name it.
struct JsonPlace {
    QJsonValue value;
    QString path; ///< such as "$.annotations[2].color"

    [[noreturn]] void fail(const QString& reason) const
    {
        throw Error(Error::ownDomain, 2, path + QStringLiteral(": ") + reason);
    }

    bool boolean() const;
    /// A finite number between the limits.
    double number(double least = -1e6, double most = 1e6) const;
    int integer() const;
    QString string() const;
    QPointF point() const;
    QColor color() const;
    QUuid uuid() const;
    QJsonObject object() const;
    QList<JsonPlace> elements() const;

    template <StringEnum E> E enumeration() const
    {
        if (const auto known = fromRawValue<E>(string()))
            return *known;
        QStringList names;
        for (const auto known : allCases<E>())
            names << QStringLiteral("«") + rawValue(known) + QStringLiteral("»");
        fail(QStringLiteral("valor desconocido; se admite ") + names.join(QStringLiteral(", "))
            + QStringLiteral("."));
    }
};

/// Reads the fields of a JSON object, each at most once, and then holds it against what was asked for.
class JsonFields {
public:
    explicit JsonFields(const JsonPlace& place)
        : path(place.path)
        , fields(place.object())
    {
    }

    bool has(const QString& name) const { return fields.contains(name); }

    /// The field of that name, or none. A null counts as none.
    std::optional<JsonPlace> take(const QString& name);
    /// The field of that name; fails when it is missing.
    JsonPlace require(const QString& name);
    /// Fails on the first field that nobody took.
    void finish() const;

private:
    QString path;
    QJsonObject fields; ///< those not yet taken
};

} // namespace pintalux
