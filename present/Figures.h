#pragma once

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

    struct Records
    {
        std::optional<long long> total; ///< in the dataset, where it was asked
        long long read = 0;
        long long used = 0;
        long long skipped = 0;
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
    struct Coefficient
    {
        double estimate = 0;
        double standardError = 0;
        double t = 0; ///< estimate / standardError
    };
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
    struct Interval
    {
        double low = None;
        double high = None;
    };
    struct Test
    {
        double statistic = None;
        double df = None;         ///< of a chi-squared, or the first of an F
        double residualDf = None; ///< the second of an F
        double pValue = None;
    };
    struct Inference
    {
        double level = 0.95; ///< of the intervals
        Numbers pValues;     ///< of the coefficients, two-sided; m + 1
        std::vector<Interval> confidence;
        double fPValue = None;
        double adjustedRSquared = None;
        double logLikelihood = None;
        double aic = None;
        double aicc = None;
        double bic = None;
        double hqc = None;
        // Of the columns; m each.
        Numbers standardized;
        Numbers tolerance;
        Numbers vif;
        Numbers partialCorrelations;
        Numbers semipartialCorrelations;
        Numbers sequentialSumsOfSquares;
        Numbers partialSumsOfSquares;
        Numbers conditionIndices; ///< m + 1, ascending from 1
    };
    struct Diagnostics
    {
        double durbinWatson = None;
        double press = None;
        double predictedRSquared = None;
        Test breuschPagan;
        Test white;
        Test jarqueBera;
        Test shapiroWilk;
        Test reset;
    };
    /// Records that a term cannot use, whatever the other terms can.
    struct LeftOut
    {
        QString term;
        long long null = 0;
        long long invalid = 0;
    };
    /// Of the observations; n each.
    struct Influence
    {
        Numbers leverage;
        Numbers standardizedResiduals;
        Numbers studentizedResiduals;
        Numbers cook;
        Numbers dffits;
        Numbers covRatio;
        Matrix dfbetas; ///< a row of m + 1 for each
    };
    struct Robust
    {
        QString kind; ///< "hc0" to "hc3" or "hac"
        Numbers standardErrors;
        Numbers tValues;
        Numbers pValues;
        Matrix covariance;
    };
    struct Prediction
    {
        std::vector<std::pair<QString, double>> at; ///< fields and their values
        double value = None;
        double standardError = None; ///< of the mean
        Interval confidence;         ///< of the mean
        Interval prediction;         ///< of a new observation
    };

    // What was fitted.

    QDateTime time; ///< when the figures were taken
    bool query = false;
    QString source; ///< the table's name, or the first line of the statement
    QString description;
    QString message; ///< that of the report
    bool loaded = false;
    bool current = false; ///< whether what follows belongs to the observations loaded now
    int observations = 0; ///< n
    int controls = 0;     ///< m
    int degreesOfFreedom = 0;
    Records records;
    std::vector<LeftOut> leftOut; ///< the response first; empty where it was not asked

    // The fit.

    Variable response;
    std::vector<Variable> columns;
    std::vector<Coefficient> coefficients;
    SumsOfSquares sums;
    Matrix covariance;
    Matrix correlation;
    QStringList dependentTerms; ///< linear combinations of the terms before them
    QStringList infiniteTerms;  ///< infinite or no number in some observation

    // The observations of a current fit.

    std::vector<long long> record; ///< where each stands in the dataset, from 1; empty where that is not known
    Numbers observed;              ///< the response
    std::vector<Numbers> x;        ///< a column each
    Numbers fitted;
    Numbers residuals;

    // What was asked for beyond that.

    std::optional<Inference> inference;
    std::optional<Diagnostics> diagnostics;
    std::optional<Influence> influence;
    std::optional<Robust> robust;
    std::vector<Prediction> predictions;
};

/// Takes down what a regression holds, a successful fit or not. The records of the dataset are counted where it is
/// open.
NUVO_EXPORT Figures figures(TRegression &regression);

/// What the load left out, in one line, and in further lines the terms that say nothing: columns that are linear
/// combinations of others, terms that are infinite or no number in some record.
NUVO_EXPORT QString leftOut(const Figures &figures);

} // namespace nuvo
