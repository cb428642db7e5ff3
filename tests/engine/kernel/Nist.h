// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// A reference set of tests/data/nist.
struct NistSet
{
    /// A figure as it was published, and what the columns give after rounding to doubles.
    struct Figure
    {
        std::string certified;
        std::string fromDoubles;
    };

    std::vector<std::vector<double>> columns; ///< the controls, and the response as the last one
    std::vector<Figure> coefficients;         ///< the constant first
    std::vector<Figure> standardErrors;
    Figure residualDeviation;
    Figure regressionSquares;
    Figure residualSquares;

    int observations() const { return static_cast<int>(columns[0].size()); }
    int controls() const { return static_cast<int>(columns.size()) - 1; }
};

/// Reads a set by its name, with powers as columns where it has some.  \throws std::runtime_error
NistSet readNist(const std::string &name);

/// How many digits agree: -log10 of the relative error, at most 15. A number that is the published one when rounded
/// to as many places has 15.
double digitsAgreed(double got, const std::string &published);
