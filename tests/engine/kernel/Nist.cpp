// SPDX-License-Identifier: MIT
#include "engine/kernel/Nist.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace {

std::ifstream opened(const std::filesystem::path &file)
{
    std::ifstream stream(file);
    if (!stream)
        throw std::runtime_error("cannot open " + file.string());
    return stream;
}

NistSet::Figure figure(const nlohmann::json &certified, const nlohmann::json &fromDoubles)
{
    return {certified.get<std::string>(), fromDoubles.get<std::string>()};
}

} // namespace

NistSet readNist(const std::string &name)
{
    const std::filesystem::path folder = std::filesystem::path(NUVO_TEST_DATA) / "nist";
    const std::filesystem::path powers = folder / (name + "_powers.csv");
    std::ifstream csv = opened(std::filesystem::exists(powers) ? powers : folder / (name + ".csv"));
    NistSet set;
    std::string line;
    std::getline(csv, line);
    set.columns.resize(static_cast<std::size_t>(std::count(line.begin(), line.end(), ',')) + 1);
    while (std::getline(csv, line)) {
        std::istringstream cells(line);
        std::string cell;
        for (std::vector<double> &column : set.columns) {
            std::getline(cells, cell, ',');
            column.push_back(std::stod(cell));
        }
    }
    std::rotate(set.columns.begin(), set.columns.begin() + 1, set.columns.end());

    const nlohmann::json json = nlohmann::json::parse(opened(folder / (name + ".json")));
    const nlohmann::json &certified = json.at("certified");
    const nlohmann::json &doubles = json.at("exact_from_double_columns");
    for (std::size_t i = 0; i < certified.at("coefficients").size(); ++i) {
        const nlohmann::json &published = certified.at("coefficients").at(i);
        const nlohmann::json &exact = doubles.at("coefficients").at(i);
        set.coefficients.push_back(figure(published.at("estimate"), exact.at("estimate")));
        set.standardErrors.push_back(figure(published.at("standard_deviation"), exact.at("standard_deviation")));
    }
    const nlohmann::json &variance = certified.at("analysis_of_variance");
    set.residualDeviation =
        figure(certified.at("residual_standard_deviation"), doubles.at("residual_standard_deviation"));
    set.regressionSquares = figure(variance.at("regression").at("ss"), doubles.at("regression_sum_of_squares"));
    set.residualSquares = figure(variance.at("residual").at("ss"), doubles.at("residual_sum_of_squares"));
    return set;
}

double digitsAgreed(double got, const std::string &published)
{
    const double value = std::stod(published);
    // One in the last published place: the text with its digits replaced by 0...01.
    std::string unit = published.substr(0, published.find_first_of("eE"));
    const std::size_t last = unit.find_last_of("0123456789");
    std::replace_if(
        unit.begin(), unit.end(), [](unsigned char c) { return std::isdigit(c) != 0; }, '0');
    unit[last] = '1';
    const std::size_t exponent = published.find_first_of("eE");
    const double place =
        std::fabs(std::stod(exponent == std::string::npos ? unit : unit + published.substr(exponent)));
    const double error = std::fabs(got - value);
    if (error <= place / 2)
        return 15;
    return std::min(15.0, -std::log10(error / std::fabs(value)));
}
