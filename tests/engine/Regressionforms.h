// SPDX-License-Identifier: MIT
#pragma once

#include "support/Regressions.h"

#include <vector>

template <class Component>
class RegressionForms : public RegressionOver<Component>
{
};
using RegressionComponents = testing::Types<TMLRTable, TMLRQuery>;
struct RegressionNames
{
    template <class Component>
    static std::string GetName(int)
    {
        return std::is_same_v<Component, TMLRTable> ? "Table" : "Query";
    }
};
TYPED_TEST_SUITE(RegressionForms, RegressionComponents, RegressionNames);

using Regressions = RegressionOver<TMLRTable>;

inline const std::vector<Row> kRecords = {{3, 1, 2, 0}, {5, 2, 0, 1},  {7, 4, 1, 1},
                                          {8, 5, 3, 5}, {12, 7, 4, 2}, {13, 8, 2, 9}};
