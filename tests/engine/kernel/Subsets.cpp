// SPDX-License-Identifier: MIT
#include "engine/kernel/Subsets.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>

using namespace nuvo;

std::vector<const double *> SubsetReference::pointers() const
{
    std::vector<const double *> result(columns.size());
    std::transform(columns.begin(), columns.end(), result.begin(), [](const auto &column) { return column.data(); });
    return result;
}

SubsetSums SubsetReference::sums() const
{
    return subsetSums(columns);
}

const std::vector<SubsetReference> &subsetReferences()
{
    static const std::vector<SubsetReference> references = [] {
        std::ifstream file(NUVO_TEST_DATA "/subsets/reference.json");
        std::vector<SubsetReference> result;
        for (const nlohmann::json &one : nlohmann::json::parse(file))
            result.push_back({one["name"], one["columns"], one});
        return result;
    }();
    return references;
}

const SubsetReference &subsetReference(std::string_view name)
{
    const auto &all = subsetReferences();
    return *std::find_if(all.begin(), all.end(), [&](const SubsetReference &one) { return one.name == name; });
}

SubsetSums subsetSums(const std::vector<std::vector<double>> &data)
{
    const int n = static_cast<int>(data[0].size());
    std::vector<DataColumn> columns;
    for (const std::vector<double> &values : data)
        columns.push_back({values.data(), minMax(values.data(), n).largest()});
    CrossProducts products;
    crossProducts(columns, n, products);
    return {products, static_cast<int>(data.size()) - 1};
}

ControlSet setOf(const nlohmann::json &controls)
{
    ControlSet set = 0;
    for (const nlohmann::json &control : controls)
        set |= ControlSet(1) << (control.get<int>() - 1);
    return set;
}

double errorOf(double got, const nlohmann::json &wanted)
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    if (wanted.is_null())
        return std::isnan(got) ? 0 : infinite;
    if (wanted.is_string())
        return got == infinite ? 0 : infinite;
    const double value = wanted;
    if (value == got)
        return 0;
    const double error = std::fabs(got - value) / std::fabs(value);
    return std::isnan(error) ? infinite : error;
}
