// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Loading.h"
#include "support/Text.h"

#include <QElapsedTimer>
#include <QSignalSpy>

#include <boost/multiprecision/cpp_bin_float.hpp>

#include <vector>

// What loads of every record are held against.

/// About 90 digits.
using Big =
    boost::multiprecision::number<boost::multiprecision::cpp_bin_float<300, boost::multiprecision::digit_base_2>,
                                  boost::multiprecision::et_off>;

/// A fit with 90 digits: of y on the constant and columns, each a list of the records' values.
struct BigFit
{
    std::vector<Big> b;
    std::vector<Big> errors; ///< standard errors
    Big sse;
    Big sst;
    Big mean;
    Big deviation; ///< of y

    /// With weights: how often each record is there.
    BigFit(const std::vector<std::vector<double>> &x, const std::vector<double> &y,
           const std::vector<qint64> &weights = {});
};

/// Decimal digits that two numbers have in common, 16 at most.
double digitsOf(double got, const Big &wanted);

void expectDigits(TRegression &regression, const BigFit &wanted, double digits);

/// A statement whose records have no end, over columns y and a.
inline QString endless()
{
    return text(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i * 1.0 AS y, (i % 7) * 1.0 AS "
        "a FROM n");
}

/// Runs events until something holds, for ten seconds at most.
template <class Condition>
bool waitFor(const Condition &condition)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition() && clock.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return condition();
}
