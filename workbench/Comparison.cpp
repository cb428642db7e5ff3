// SPDX-License-Identifier: MIT
#include "workbench/Comparison.h"

#include "engine/kernel/Nestedtest.h"
#include "present/Significant.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace nuvo {

namespace {

struct Comparison
{
    Q_DECLARE_TR_FUNCTIONS(Comparison)
};

QChar point()
{
    return QLocale().decimalPoint().front();
}

/// Sums over the same numbers in another order differ by rounding, those over others nearly always by more.
bool isSame(double one, double other)
{
    constexpr double rounding = 1e-9;
    return std::abs(one - other) <= rounding * std::max(std::abs(one), std::abs(other));
}

bool areFromOnePlace(const ModelState &one, const ModelState &other)
{
    return one.database == other.database && one.table == other.table && one.sql == other.sql;
}

QString obstacleOf(const KeptModel &one, const KeptModel &other)
{
    if (!areFromOnePlace(one.state, other.state))
        return Comparison::tr("They are of different tables: R², s and AIC do not compare.");
    if (one.state.model.term(0) != other.state.model.term(0))
        return Comparison::tr("They have different responses: R², s and AIC do not compare.");
    if (one.n != other.n)
        return Comparison::tr("They are of different numbers of records: R², s and AIC do not compare. Where a field "
                              "has nulls, a filter such as FIELD IS NOT NULL gives both the same.");
    if (!isSame(one.total, other.total))
        return Comparison::tr("They are of as many records, but not of the same ones: R², s and AIC do not compare.");
    return {};
}

bool contains(QStringList terms, const QStringList &others)
{
    return std::all_of(others.begin(), others.end(), [&](const QString &term) { return terms.removeOne(term); });
}

/// \pre the terms of the smaller one are among those of the larger one
QString testText(const KeptModel &smaller, const KeptModel &larger)
{
    const NestedTest test =
        nestedTest({smaller.residual, smaller.degreesOfFreedom}, {larger.residual, larger.degreesOfFreedom});
    if (std::isnan(test.f))
        return {};
    constexpr double level = 0.05;
    const QString figures = Comparison::tr("F(%1, %2) = %3, p = %4")
                                .arg(test.numerator)
                                .arg(test.denominator)
                                .arg(significant(test.f, 6, point()), probability(test.pValue, 4, point()));
    return (test.pValue < level ? Comparison::tr("The further terms of \"%1\" are needed at 5 %: %2.")
                                : Comparison::tr("The further terms of \"%1\" are not needed at 5 %: %2."))
        .arg(larger.title(), figures);
}

} // namespace

ModelComparison compare(const KeptModel &one, const KeptModel &other)
{
    ModelComparison comparison;
    comparison.differences = differences(one.state, other.state);
    comparison.obstacle = obstacleOf(one, other);
    const QStringList ours = one.state.terms();
    const QStringList theirs = other.state.terms();
    if (!comparison.obstacle.isEmpty() || ours.size() == theirs.size())
        return comparison;
    const bool larger = ours.size() > theirs.size();
    if (contains(larger ? ours : theirs, larger ? theirs : ours))
        comparison.test = larger ? testText(other, one) : testText(one, other);
    return comparison;
}

QString comparisonText(const KeptModel &one, const KeptModel &other)
{
    const ModelComparison comparison = compare(one, other);
    QStringList lines{Comparison::tr("First: %1").arg(one.title()), Comparison::tr("Second: %1").arg(other.title()),
                      QString()};
    lines += comparison.differences;
    lines.append(QString());
    const auto add = [&](const QString &what, double first, double second) {
        lines.append(
            QStringLiteral("%1: %2, %3").arg(what, significant(first, 6, point()), significant(second, 6, point())));
    };
    lines.append(QStringLiteral("%1: %2, %3")
                     .arg(Comparison::tr("Records"), QLocale().toString(one.n), QLocale().toString(other.n)));
    add(Comparison::tr("R²"), one.rSquared, other.rSquared);
    add(Comparison::tr("Adjusted R²"), one.adjustedRSquared, other.adjustedRSquared);
    add(Comparison::tr("s"), one.s, other.s);
    add(Comparison::tr("AIC"), one.aic, other.aic);
    for (const QString &sentence : {comparison.obstacle, comparison.test}) {
        if (!sentence.isEmpty())
            lines += {QString(), sentence};
    }
    return lines.join(u'\n');
}

} // namespace nuvo
