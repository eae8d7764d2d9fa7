// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
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

/// Whether the enumeration has a case of this value: the compiler spells one by its name and any other value
/// as a cast.
template <auto value> constexpr bool isCase()
{
    return std::string_view(__PRETTY_FUNCTION__).find("value = (") == std::string_view::npos;
}

/// True when `rows`, each with its case in `member`, stand in the order of the ordinals and none is missing:
/// then the row of a case is the one at its ordinal.
template <typename Rows, typename E, typename Row> constexpr bool isComplete(const Rows& rows, E Row::*member)
{
    std::size_t ordinal = 0;
    for (const auto& row : rows)
        if (static_cast<std::size_t>(row.*member) != ordinal++)
            return false;
    return !isCase<static_cast<E>(std::tuple_size_v<Rows>)>();
}

/// The same of the enumeration's own table, on which `enumRow` relies.
template <StringEnum E> constexpr bool isComplete()
{
    constexpr const auto& table = enumTable(E{});
    using Row = typename std::remove_cvref_t<decltype(table)>::value_type;
    return isComplete(table, &Row::value);
}

} // namespace pintalux
