// SPDX-License-Identifier: MIT
#include "present/Pagewarnings.h"

#include "platform/Messages.h"
#include "present/Significant.h"
#include "present/Words.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace nuvo {

namespace {

constexpr double MuchInflation = 10;
constexpr double Significance = 0.05;
constexpr double LargeResidual = 2;
constexpr std::size_t MostNamed = 10; ///< records named in a sentence

QString listed(const QStringList &items)
{
    if (items.size() < 2)
        return items.join(QString());
    return PageWords::tr("%1 and %2", "of a list, all but the last and the last")
        .arg(items.mid(0, items.size() - 1).join(QStringLiteral(", ")), items.last());
}

/// Minus the power of the absolute value is never above 0, unlike most fields that are called so.
bool isOddPower(const Figures::Variable &column)
{
    static const QRegularExpression power(QStringLiteral("\\^ *\\d*[13579](\\.0*)? *$"));
    return column.least < 0 && column.greatest <= 0 && power.match(column.term).hasMatch();
}

class Warnings
{
    Q_DECLARE_TR_FUNCTIONS(PageWords)

public:
    Warnings(const Figures &figures, int digits, QChar point) : figures_(figures), digits_(digits), point_(point) {}

    QStringList all()
    {
        ofTheTerms();
        ofTheFit();
        ofInflation();
        ofLeverages();
        ofObservations();
        if (figures_.diagnostics)
            ofTests(*figures_.diagnostics);
        return list_;
    }

private:
    QString figure(double value) const { return significant(value, digits_, point_); }

    void ofTheTerms()
    {
        if (!figures_.infiniteTerms.isEmpty())
            list_ += tr("Infinite or no number in some of the records used, so that no figure can be had: "
                        "%1.")
                         .arg(listed(figures_.infiniteTerms));
        if (!figures_.dependentTerms.isEmpty())
            list_ +=
                (figures_.inference
                     ? tr("Linear combinations of the terms before them: %1. They add nothing; the other figures "
                          "are those of the fit without them.")
                     : tr("Linear combinations of the terms before them: %1. The fitted values hold, what belongs "
                          "to the terms combined means nothing: leave some of them out."))
                    .arg(listed(figures_.dependentTerms));
        QStringList odd;
        for (const Figures::Variable &column : figures_.columns) {
            if (isOddPower(column))
                odd += column.term;
        }
        if (!odd.isEmpty())
            list_ += tr("An odd power is that of the absolute value with a minus sign: %1. Of values above 0 its "
                        "coefficient has the opposite sign of what it would have otherwise.")
                         .arg(listed(odd));
    }

    void ofTheFit()
    {
        const long long n = figures_.observations;
        const int p = figures_.controls + 1;
        if (n <= p)
            list_ += tr("%1 observations for %2 coefficients leave no degrees of freedom: the fit goes "
                        "through every observation and nothing tells its error.")
                         .arg(n)
                         .arg(p);
        else if (figures_.exact)
            list_ += tr("The fit is exact: the response is a combination of the terms, and nothing is left "
                        "to tell errors from.");
        else if (figures_.inference && figures_.controls > 0 && figures_.inference->fPValue > Significance)
            list_ += tr("All terms together are not distinguished from none at 5 % (F test, p = %1).")
                         .arg(figure(figures_.inference->fPValue));
    }

    void ofInflation()
    {
        if (!figures_.inference)
            return;
        QStringList inflated;
        const Figures::Numbers &vif = figures_.inference->vif;
        for (std::size_t j = 0; j < vif.size() && j < figures_.columns.size(); ++j) {
            if (vif[j] > MuchInflation)
                inflated += QStringLiteral("%1 (%2)").arg(figures_.columns[j].term, figure(vif[j]));
        }
        if (!inflated.isEmpty())
            list_ +=
                (inflated.size() == 1
                     ? tr("Variance inflation above 10: %1. The other terms say nearly what this one says; their "
                          "coefficients are uncertain and can turn when one of them is left out.")
                     : tr("Variance inflation above 10: %1. The other terms say nearly what each of these says; "
                          "their coefficients are uncertain and can turn when one of them is left out."))
                    .arg(listed(inflated));
    }

    /// Records that the fit goes through whatever their response is.
    void ofLeverages()
    {
        QStringList records;
        std::size_t count = 0;
        const std::size_t n = figures_.influence ? figures_.influence->leverage.size() : 0;
        for (std::size_t i = 0; i < n; ++i) {
            if (figures_.influence->leverage[i] == 1 && ++count <= MostNamed)
                records += tr("record %1").arg(recordOf(figures_, i));
        }
        if (count > MostNamed)
            records += tr("%1 more").arg(count - MostNamed);
        if (count > 0 && figures_.observations > figures_.controls + 1)
            list_ +=
                (count == 1 ? tr("A leverage of 1: %1. The fit goes through it whatever the response is there; "
                                 "PRESS, predicted R², HC2 and HC3 do not exist.")
                            : tr("A leverage of 1: %1. The fit goes through them whatever the response is there; "
                                 "PRESS, predicted R², HC2 and HC3 do not exist."))
                    .arg(listed(records));
    }

    void ofObservations()
    {
        QStringList records;
        std::size_t count = 0;
        for (const StandOut &standOut : standOuts(figures_)) {
            if (!standOut.leverage || !standOut.residual)
                continue;
            const std::size_t i = standOut.observation;
            if (++count <= MostNamed)
                records += tr("record %1 (leverage %2, studentized residual %3)")
                               .arg(QString::number(recordOf(figures_, i)), figure(figures_.influence->leverage[i]),
                                    figure(figures_.influence->studentizedResiduals[i]));
        }
        if (count > MostNamed)
            records += tr("%1 more").arg(count - MostNamed);
        if (count > 0)
            list_ +=
                (count == 1 ? tr("Far from the others in the terms and badly fitted: %1. The coefficients depend "
                                 "on it.")
                            : tr("Far from the others in the terms and badly fitted: %1. The coefficients depend "
                                 "on them."))
                    .arg(listed(records));
    }

    /// A test by its name with what it says when it fails.
    void failed(const TestResult &test, const QString &name, const QString &sentence)
    {
        if (test.pValue < Significance)
            list_ += sentence.arg(name, probability(test.pValue, digits_, point_));
    }

    void ofTests(const Diagnostics &tests)
    {
        const QString variance = tr("%1 fails at 5 % (p = %2): the residuals do not scatter evenly, so that standard "
                                    "errors mislead; robust ones allow for that.");
        const QString normal =
            tr("%1 fails at 5 % (p = %2): the residuals are not normally distributed; p-values and "
               "intervals of a small sample mislead.");
        failed(tests.breuschPagan, QStringLiteral("Breusch-Pagan"), variance);
        failed(tests.white, QStringLiteral("White"), variance);
        failed(tests.jarqueBera, QStringLiteral("Jarque-Bera"), normal);
        failed(tests.shapiroWilk, QStringLiteral("Shapiro-Wilk"), normal);
        failed(tests.reset, QStringLiteral("RESET"),
               tr("%1 fails at 5 % (p = %2): something curved is left; a square, a product or a logarithm may be "
                  "missing."));
    }

    const Figures &figures_;
    const int digits_;
    const QChar point_;
    QStringList list_;
};

} // namespace

QString StandOut::inWords() const
{
    QStringList words;
    const std::pair<bool, QString> all[] = {{leverage, PageWords::tr("leverage")},
                                            {residual, PageWords::tr("residual")},
                                            {cook, QStringLiteral("Cook")},
                                            {dffits, QStringLiteral("DFFITS")}};
    for (const auto &[is, word] : all) {
        if (is)
            words += word;
    }
    return words.join(QStringLiteral(", "));
}

std::vector<StandOut> standOuts(const Figures &figures)
{
    std::vector<StandOut> found;
    if (!figures.influence)
        return found;
    const Influence &influence = *figures.influence;
    const double n = double(influence.leverage.size());
    const double p = figures.controls + 1;
    for (std::size_t i = 0; i < influence.leverage.size(); ++i) {
        StandOut one;
        one.observation = i;
        one.leverage = influence.leverage[i] > 2 * p / n;
        one.residual = std::fabs(influence.studentizedResiduals[i]) > LargeResidual;
        one.dffits = std::fabs(influence.dffits[i]) > 2 * std::sqrt(p / n);
        one.cook = influence.cook[i] > 4 / n;
        if (one.leverage || one.residual || one.dffits || one.cook)
            found.push_back(one);
    }
    // An undefined distance (a leverage of 1) comes first: nothing stands out more.
    const auto distance = [&](const StandOut &one) {
        const double cook = influence.cook[one.observation];
        return std::isnan(cook) ? std::numeric_limits<double>::infinity() : cook;
    };
    std::stable_sort(found.begin(), found.end(),
                     [&](const StandOut &a, const StandOut &b) { return distance(a) > distance(b); });
    return found;
}

long long recordOf(const Figures &figures, std::size_t observation)
{
    return observation < figures.record.size() ? figures.record[observation] : (long long)(observation) + 1;
}

QStringList pageWarnings(const Figures &figures, int digits, QChar point)
{
    QStringList list = Warnings(figures, digits, point).all();
    for (QString &text : list)
        text = withoutControls(text);
    return list;
}

} // namespace nuvo
