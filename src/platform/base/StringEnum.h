// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <algorithm>
#include <array>
#include <optional>
#include <tuple>
#include <type_traits>

namespace pintalux {

/// The mechanism of the string-backed enumerations: what is stored and shown comes from one table.
///
/// An enumeration joins by declaring, next to itself, `constexpr const auto& enumTable(E)`, which returns a
/// `std::array` of rows in declaration order. A row has at least the members `value`, `rawValue` (what is
/// persisted, never the ordinal) and `title` (what a person reads); further columns are the enumeration's
/// own.
template <typename E>
concept StringEnum = requires(E value)
{
    enumTable(value).front().value;
    enumTable(value).front().rawValue;
    enumTable(value).front().title;
};

/// The row of an enumeration that needs no further column.
template <typename E> struct TitledRow {
    E value;
    QStringView rawValue;
    QStringView title;
};

/// The row of a case.
template <StringEnum E> constexpr const auto& enumRow(E value)
{
    return enumTable(value)[static_cast<std::size_t>(value)];
}

template <StringEnum E> QString rawValue(E value) { return enumRow(value).rawValue.toString(); }

template <StringEnum E> QString title(E value) { return enumRow(value).title.toString(); }

/// Every case in declaration order.
template <StringEnum E> constexpr auto allCases()
{
    constexpr auto& table = enumTable(E{});
    std::array<E, std::tuple_size_v<std::remove_cvref_t<decltype(table)>>> cases{};
    std::ranges::transform(table, cases.begin(), [](const auto& row) { return row.value; });
    return cases;
}

/// The case that is stored as `raw`, compared to the letter; none for any other text.
template <StringEnum E> std::optional<E> fromRawValue(QStringView raw)
{
    for (const auto& row : enumTable(E{}))
        if (row.rawValue == raw)
            return row.value;
    return std::nullopt;
}

/// True when the rows stand in the order of the ordinals, on which `enumRow` relies.
template <StringEnum E> constexpr bool isOrdered()
{
    std::size_t ordinal = 0;
    for (const auto& row : enumTable(E{}))
        if (static_cast<std::size_t>(row.value) != ordinal++)
            return false;
    return true;
}

} // namespace pintalux
