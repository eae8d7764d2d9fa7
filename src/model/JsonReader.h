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

#include <climits>
#include <optional>
#include <span>

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

/// Reads the fields of a JSON object that has no others than those known.
class JsonFields {
public:
    /// Fails on the first field that is not among `known`: a name that was mistyped is told before what it
    /// should have been is missed.
    JsonFields(const JsonPlace& place, std::span<const QStringView> known);

    /// The field of that name, which is a known one; none when it is missing.
    std::optional<JsonPlace> find(const QString& name) const;
    /// The field of that name; fails when it is missing.
    JsonPlace require(const QString& name) const;

private:
    QString path;
    QJsonObject fields;
};

/// The first name that stands twice in one object, with its place ("$.annotations[1].color"); none when there
/// is no such name, which a JSON parser would not tell. `json` is valid. Objects that lie deeper than
/// `deepest` (the outermost is 1) are not looked at.
struct RepeatedName {
    QString name;
    QString path;
};
std::optional<RepeatedName> repeatedName(const QByteArray& json, int deepest = INT_MAX);

} // namespace pintalux
