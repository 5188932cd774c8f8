#pragma once

#include <QTest>

#include <tuple>

namespace navorin {

template <typename>
using ColumnName = const char *;

/// Gives a data table all its columns.
template <typename... T>
void addColumns(ColumnName<T>... names)
{
    (QTest::addColumn<T>(names), ...);
}

/// The values of the present row in these columns.
template <typename... T>
[[nodiscard]] std::tuple<T...> fetched(ColumnName<T>... names)
{
    return {*static_cast<T *>(QTest::qData(names, qMetaTypeId<T>()))...};
}

} // namespace navorin
