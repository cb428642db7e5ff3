// SPDX-License-Identifier: MIT
#include "engine/kernel/Inferencereference.h"

#include "engine/kernel/Lowparts.h"

#include <cmath>
#include <fstream>
#include <stdexcept>

nuvo::ObservedColumns ReferenceSet::observed() const
{
    nuvo::ObservedColumns result;
    result.n = static_cast<int>(response.size());
    result.m = static_cast<int>(columns.size());
    for (std::size_t j = 0; j < columns.size(); ++j)
        result.x[j + 1] = columns[j].data();
    result.y = response.data();
    return result;
}

ReferenceSet readReference(const std::string &name)
{
    const std::string file = std::string(NUVO_TEST_DATA) + "/inference/" + name + ".json";
    std::ifstream stream(file);
    if (!stream)
        throw std::runtime_error("cannot open " + file);
    ReferenceSet set;
    set.figures = nlohmann::json::parse(stream);
    set.columns = set.figures.at("columns").get<std::vector<std::vector<double>>>();
    set.response = set.figures.at("response").get<std::vector<double>>();
    return set;
}

nuvo::CrossProducts productsOf(const nuvo::ObservedColumns &observed)
{
    std::vector<nuvo::ExtendedColumn> columns;
    const auto add = [&](const double *values, const double *low) {
        columns.push_back({{values, nuvo::minMax(values, observed.n).largest()}, low});
    };
    for (int j = 1; j <= observed.m; ++j)
        add(observed.x[j], observed.xLow[j]);
    add(observed.y, observed.yLow);
    nuvo::CrossProducts products;
    nuvo::crossProducts(columns, observed.n, products);
    return products;
}

namespace {

void take(Agreement &sum, const Agreement &part)
{
    if (part.digits < sum.digits) {
        sum.digits = part.digits;
        sum.worst = part.worst;
    }
    sum.different += part.different;
}

double largestOf(const nlohmann::json &array)
{
    double largest = 0;
    for (const nlohmann::json &value : array)
        if (value.is_number())
            largest = std::fmax(largest, std::fabs(value.get<double>()));
    return largest;
}

Agreement compareNumber(const nlohmann::json &got, const nlohmann::json &wanted, double size, const std::string &name)
{
    Agreement result;
    const bool gotNumber = got.is_number() && std::isfinite(got.get<double>());
    if (gotNumber != wanted.is_number()) {
        result.different = name + " ";
        return result;
    }
    if (!gotNumber)
        return result;
    const double value = wanted.get<double>();
    const double error = std::fabs(got.get<double>() - value);
    const double scale = std::fmax(std::fabs(value), size);
    if (error > 0) {
        result.digits = std::fmin(17, scale > 0 ? -std::log10(error / scale) : 0);
        result.worst = name;
    }
    return result;
}

} // namespace

Agreement compare(const nlohmann::json &got, const nlohmann::json &wanted, const std::string &name)
{
    // What cancels to nearly nothing, one residual or correlation of many, is known to the digits of the others.
    constexpr double negligible = 1e-3;
    Agreement result;
    if (wanted.is_object()) {
        for (const auto &[key, value] : wanted.items())
            take(result, compare(got.is_object() && got.contains(key) ? got.at(key) : nlohmann::json(), value,
                                 name + "." + key));
    } else if (wanted.is_array()) {
        if (!got.is_array() || got.size() != wanted.size()) {
            result.different = name + " ";
            return result;
        }
        const double size = negligible * largestOf(wanted);
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            const std::string element = name + "[" + std::to_string(i) + "]";
            if (wanted[i].is_structured())
                take(result, compare(got[i], wanted[i], element));
            else
                take(result, compareNumber(got[i], wanted[i], size, element));
        }
    } else if (wanted.is_null() && got.is_object()) {
        for (const auto &[key, value] : got.items()) // a figure that does not exist as a whole
            if (key == "statistic" || key == "pValue")
                take(result, compareNumber(value, wanted, 0, name + "." + key));
    } else {
        result = compareNumber(got, wanted, 0, name);
    }
    return result;
}
