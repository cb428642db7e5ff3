// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Factors.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

/// Data of tests/data/inference with the figures that belong to them, worked out there with 100 digits.
struct ReferenceSet // NOLINT(bugprone-exception-escape): JSON's moves are said to throw nothing
{
    nlohmann::json figures;
    std::vector<std::vector<double>> columns;
    std::vector<double> response;

    nuvo::ObservedColumns observed() const;
};

/// \throws std::runtime_error
ReferenceSet readReference(const std::string &name);

nuvo::CrossProducts productsOf(const nuvo::ObservedColumns &observed);

/// What the figures of a fit, gathered by name, have in common with those of a reference.
struct Agreement
{
    double digits = 17;    ///< of the worst figure: -log10 of the relative error
    std::string worst;     ///< its name
    std::string different; ///< names of figures that are numbers on one side only
};

/// Compares all that is in `wanted`, null standing for a NaN. A figure below `negligible` times the largest of its
/// array is compared with that; arrays of arrays column by column.
Agreement compare(const nlohmann::json &got, const nlohmann::json &wanted, const std::string &name);
