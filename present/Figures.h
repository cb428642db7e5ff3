// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Diagnostics.h"
#include "engine/kernel/Inference.h"
#include "engine/kernel/Influence.h"
#include "engine/kernel/Prediction.h"
#include "engine/kernel/Robust.h"
#include "platform/Export.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <limits>
#include <optional>
#include <utility>
#include <vector>

class TRegression;

namespace nuvo {

/// All that a reader is shown of a regression, as numbers, at one moment: reports, pages, windows and JSON only lay
/// it out. It stays as it is when the regression is changed or goes. A figure that does not exist is NaN.
/// Coefficients are counted from 0, the constant, to m; columns and observations from 0, so that column j has
/// coefficient j + 1.
struct Figures
{
    static constexpr double None = std::numeric_limits<double>::quiet_NaN();
    using Numbers = std::vector<double>;
    using Matrix = std::vector<Numbers>; ///< by rows

    /// Records of the dataset, as TRegression counts them.
    struct Records
    {
        std::optional<long long> total; ///< in the dataset, where that is known
        long long read = 0;
        long long used = 0;
        long long skipped = 0;
        bool more = false; ///< there are some behind the first 2500 that were used
    };
    /// Where the records used can be more than the observations.
    struct Sample
    {
        int size = 0;       ///< observations taken down
        bool even = false;  ///< drawn evenly over all records, else the first ones
        bool whole = false; ///< they are all records used
    };
    /// The response or a column.
    struct Variable
    {
        QString term;
        bool listed = true; ///< not "Inactive", which reports leave out
        double mean = 0;
        double standardDeviation = 0; ///< divisor n - 1
        double least = 0;
        double greatest = 0;
    };
    /// The constant or a column.
    struct Coefficient
    {
        double estimate = 0;
        double standardError = 0;
        double t = 0; ///< estimate / standardError
    };
    /// The analysis of variance and what follows from it.
    struct SumsOfSquares
    {
        double residual = 0;   ///< SSE
        double regression = 0; ///< SSR
        double total = None;   ///< SST = SSE + SSR
        double mse = 0;        ///< SSE / (n - m - 1)
        double syx = None;     ///< the square root of it
        double rSquared = None;
        double f = 0;
    };
    /// Records that a term cannot use, whatever the other terms can.
    struct LeftOut
    {
        QString term;
        long long null = 0;
        long long invalid = 0;
    };
    /// Standard errors without a constant variance.
    struct Robust
    {
        QString kind; ///< "hc0" to "hc3" or "hac"
        nuvo::Robust errors;
    };
    /// The response's term at given values of the fields.
    struct Prediction
    {
        std::vector<std::pair<QString, double>> at; ///< fields and their values
        nuvo::Prediction predicted;
    };

    // What was fitted.

    QDateTime time; ///< when the figures were taken
    bool query = false;
    QString source; ///< the table's name, or the first line of the statement
    QString description;
    QString message; ///< that of the report
    bool loaded = false;
    bool current = false;       ///< whether what follows belongs to the observations loaded now
    long long observations = 0; ///< n
    int controls = 0;           ///< m
    long long degreesOfFreedom = 0;
    std::optional<Sample> sample; ///< where every record was used
    Records records;
    std::vector<LeftOut> leftOut; ///< the response first; empty where it was not asked

    // The fit.

    Variable response;
    std::vector<Variable> columns;
    std::vector<Coefficient> coefficients;
    SumsOfSquares sums;
    Matrix covariance;
    Matrix correlation;
    bool exact = false;         ///< the response is, to working precision, a linear combination of the terms
    QStringList dependentTerms; ///< linear combinations of the terms before them
    QStringList infiniteTerms;  ///< infinite or no number in some observation
    double digits = 16;         ///< of the coefficients that the data determine, TRegression::GetDigits()

    // The observations of a current fit, or its sample of them.

    std::vector<long long> record; ///< where each stands in the dataset, from 1, skipped records counted
    Numbers observed;              ///< the response
    std::vector<Numbers> x;        ///< a column each
    Numbers fitted;
    Numbers residuals;

    // What was asked for beyond that.

    std::optional<nuvo::Inference> inference;
    Matrix classical; ///< covariances of the coefficients of the inference
    std::optional<nuvo::Diagnostics> diagnostics;
    std::optional<nuvo::Influence> influence;
    std::optional<Robust> robust;
    std::vector<Prediction> predictions;
};

/// What is asked for beyond the fit.
struct Asked
{
    double level = 0.95; ///< of intervals, more than 0 and less than 1
    bool influence = false;
    std::optional<RobustKind> robust;
};

/// Takes down what a regression holds, a successful fit or not. The records of an open dataset are counted
/// only where a load did not walk them all and ShowWarnings asks for it.
NUVO_EXPORT Figures figures(TRegression &regression);
/// With inference and diagnostics of a current fit, and what else is asked for.
NUVO_EXPORT Figures figures(TRegression &regression, const Asked &asked);

/// The same as a page and JSON show them, where inference was asked for. A fit's accessors, and the report with them,
/// divide whatever there is; here is nothing that rounding made up: of dependent terms no coefficient, error or t,
/// and those of the others are of the fit without them; without degrees of freedom no MSE, s, F or errors; of an
/// exact fit errors of 0 and neither t nor F, and a residual sum, MSE and s of 0 where they are no more than rounding
/// leaves.
NUVO_EXPORT Figures figuresThatExist(Figures figures);

/// What the load left out, in one line, and in further lines the terms that say nothing: columns that are linear
/// combinations of others, terms that are infinite or no number in some record.
NUVO_EXPORT QString leftOut(const Figures &figures);

} // namespace nuvo
