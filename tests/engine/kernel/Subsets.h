// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Subsetsums.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>
#include <vector>

/// Data with its subsets and searches as exact arithmetic has them: tests/data/subsets/reference.json.
struct SubsetReference
{
    std::string name;
    std::vector<std::vector<double>> columns; ///< the controls, then the response
    nlohmann::json figures;

    int controls() const { return static_cast<int>(columns.size()) - 1; }
    nuvo::SubsetSums sums() const;
    std::vector<const double *> pointers() const;
};

const std::vector<SubsetReference> &subsetReferences();
const SubsetReference &subsetReference(std::string_view name);

/// Sums of these columns, the response last.
nuvo::SubsetSums subsetSums(const std::vector<std::vector<double>> &columns);

/// The set of these controls, from a list of their numbers.
nuvo::ControlSet setOf(const nlohmann::json &controls);

/// Relative error; where nothing is wanted, 0 for a NaN and infinite for a number.
double errorOf(double got, const nlohmann::json &wanted);
