// SPDX-License-Identifier: MIT
#include "present/Page.h"

#include "platform/Messages.h"
#include "present/Pagewarnings.h"
#include "present/Significant.h"
#include "present/Words.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuvo {

void Page::add(Kind kind, const QString &text)
{
    parts.append({kind, withoutControls(text), {}, {}});
}

void Page::addLine(const QStringList &pieces)
{
    if (!pieces.isEmpty())
        parts.append({Kind::Line, {}, pieces, {}});
}

void Page::addTable(Table table)
{
    for (Column &column : table.columns)
        column.heading = withoutControls(column.heading);
    for (QStringList &row : table.rows) {
        for (QString &cell : row)
            cell = withoutControls(cell);
    }
    parts.append({Kind::Table, {}, {}, std::move(table)});
}

namespace {

using Kind = Page::Kind;
using Numbers = Figures::Numbers;

constexpr std::size_t MostObservations = 20; ///< shown of those that stand out

double at(const Numbers &numbers, std::size_t i)
{
    return i < numbers.size() ? numbers[i] : Figures::None;
}

class Writer
{
    Q_DECLARE_TR_FUNCTIONS(PageWords)

public:
    Writer(const Figures &figures, const PageStyle &style)
        : figures_(figures), style_(style), n_(figures.observations), m_(figures.controls)
    {
        page_.point = style.point;
    }

    Page write()
    {
        heading();
        if (!figures_.current) {
            page_.add(Kind::Paragraph, tr("No result."));
            return page_;
        }
        coefficients();
        varianceAnalysis();
        measures();
        warnings();
        diagnostics();
        terms();
        robust();
        predictions();
        if (style_.influence)
            observations();
        if (style_.matrices) {
            matrix(tr("Covariances of the coefficients"), figures_.covariance);
            matrix(tr("Correlations of the coefficients"), figures_.correlation);
        }
        if (!figures_.message.isEmpty())
            page_.add(Kind::Paragraph, DisplayLines(figures_.message));
        return page_;
    }

private:
    QString figure(double value) const { return significant(value, style_.digits, style_.point); }
    QString p(double value) const { return probability(value, style_.digits, style_.point); }
    /// "name = value", nothing for a figure that does not exist.
    void put(QStringList &pieces, const QString &name, double value) const
    {
        if (!std::isnan(value))
            pieces += name + QStringLiteral(" = ") + figure(value);
    }
    /// From 0. Those of the inference exist where the figures make sense: of a dependent column they do not.
    Figures::Coefficient coefficientOf(std::size_t i) const
    {
        if (!figures_.inference)
            return figures_.coefficients[i];
        const Inference &inference = *figures_.inference;
        return {at(inference.coefficients, i), at(inference.standardErrors, i), at(inference.tValues, i)};
    }
    double fStatistic() const { return figures_.inference ? figures_.inference->f : figures_.sums.f; }
    /// The coefficient's name, from 0.
    QString termOf(std::size_t coefficient) const
    {
        return coefficient == 0 ? tr("(constant)") : figures_.columns[coefficient - 1].term;
    }
    QString level() const
    {
        const double percent = figures_.inference ? figures_.inference->level * 100 : 95;
        return significant(percent, 15, style_.point) + QStringLiteral(" %");
    }

    void heading()
    {
        QStringList names;
        for (const Figures::Variable &column : figures_.columns)
            names += column.term;
        page_.add(
            Kind::Title,
            names.isEmpty()
                ? tr("Linear regression of %1 on a constant alone").arg(figures_.response.term)
                : tr("Linear regression of %1 on %2").arg(figures_.response.term, names.join(QStringLiteral(", "))));
        for (const QString &line : DisplayLines(figures_.description).split(u'\n', Qt::SkipEmptyParts))
            page_.add(Kind::Paragraph, line);
        page_.add(
            Kind::Paragraph,
            (figures_.query ? tr("Query %1, %2. %3", "source, time, what became of the records")
                            : tr("Table %1, %2. %3", "source, time, what became of the records"))
                .arg(figures_.source, figures_.time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")), records()));
    }

    /// What the records that were not used lack, term by term.
    QString lacking() const
    {
        QStringList lacking;
        for (const Figures::LeftOut &one : figures_.leftOut) {
            if (one.null > 0 && one.invalid > 0)
                lacking += tr("%1 is null in %2 and impossible in %3")
                               .arg(one.term, QString::number(one.null), QString::number(one.invalid));
            else if (one.null > 0)
                lacking += tr("%1 is null in %2").arg(one.term, QString::number(one.null));
            else if (one.invalid > 0)
                lacking += tr("%1 is impossible in %2").arg(one.term, QString::number(one.invalid));
        }
        return lacking.join(QStringLiteral("; "));
    }

    /// How many records were used and what the others lack.
    QString records() const
    {
        const Figures::Records &records = figures_.records;
        const long long looked = records.used + records.skipped; // at; a server looks at more than are read
        const QString used = QString::number(records.used);
        const QString all = QString::number(looked);
        const QString why = lacking();
        QStringList text;
        if (records.skipped == 0)
            text += tr("%1 of %2 records were used.").arg(used, all);
        else if (why.isEmpty())
            text +=
                tr("%1 of %2 records were used, %3 could not be.").arg(used, all, QString::number(records.skipped));
        else
            text += tr("%1 of %2 records were used, %3 could not be: %4.")
                        .arg(used, all, QString::number(records.skipped), why);
        if (records.more)
            text += tr("These are the first 2,500 records; --records all uses every one (in a form, AllRecords).");
        if (figures_.sample && !figures_.sample->whole) {
            const QString sample =
                figures_.sample->even
                    ? tr("Diagnostics, robust errors and what is told of single observations are those of a sample "
                         "of %1 records, drawn evenly over all of them.")
                    : tr("Diagnostics, robust errors and what is told of single observations are those of a sample "
                         "of %1 records, the first ones.");
            text += sample.arg(figures_.sample->size);
        }
        if (records.total && *records.total > looked)
            text += tr("The dataset has %1 records.").arg(*records.total);
        return text.join(u' ');
    }

    void coefficients()
    {
        const Inference *inference = figures_.inference ? &*figures_.inference : nullptr;
        page_.add(Kind::Heading,
                  inference != nullptr ? tr("Coefficients with %1 intervals").arg(level()) : tr("Coefficients"));
        Page::Table table;
        table.columns = {{tr("Term"), false}, {tr("Estimate")}, {tr("Std. error")}, {QStringLiteral("t")}};
        if (inference != nullptr)
            table.columns += {{QStringLiteral("p")}, {tr("Low")}, {tr("High")}, {QStringLiteral("VIF")}};
        for (std::size_t i = 0; i < figures_.coefficients.size(); ++i) {
            const Figures::Coefficient one = coefficientOf(i);
            QStringList row{termOf(i), figure(one.estimate), figure(one.standardError), figure(one.t)};
            if (inference != nullptr) {
                const Interval interval = i < inference->confidence.size() ? inference->confidence[i]
                                                                           : Interval{Figures::None, Figures::None};
                row << p(at(inference->pValues, i)) << figure(interval[0]) << figure(interval[1])
                    << (i == 0 ? QString() : figure(at(inference->vif, i - 1)));
            }
            table.rows += row;
        }
        page_.addTable(table);
    }

    void varianceAnalysis()
    {
        const Figures::SumsOfSquares &sums = figures_.sums;
        page_.add(Kind::Heading, tr("Analysis of variance"));
        Page::Table table;
        table.columns = {
            {tr("Source"), false}, {tr("df")}, {tr("Sum of squares")}, {tr("Mean square")}, {QStringLiteral("F")}};
        const int regressionDf = int(std::clamp<long long>(n_ - 1, 0, m_));
        QStringList regression{tr("Regression"), QString::number(regressionDf), figure(sums.regression),
                               figure(regressionDf > 0 ? sums.regression / regressionDf : Figures::None),
                               figure(m_ > 0 ? fStatistic() : Figures::None)};
        if (figures_.inference) {
            table.columns += {QStringLiteral("p")};
            regression += p(figures_.inference->fPValue);
        }
        const long long df = std::max(0LL, n_ - m_ - 1);
        table.rows = {
            regression,
            {tr("Residual"), QString::number(df), figure(sums.residual), figure(df > 0 ? sums.mse : Figures::None)},
            {tr("Total"), QString::number(n_ - 1), figure(sums.total)}};
        page_.addTable(table);
    }

    void measures()
    {
        const Figures::SumsOfSquares &sums = figures_.sums;
        QStringList pieces;
        put(pieces, QStringLiteral("s"), sums.syx);
        put(pieces, QStringLiteral("R²"), sums.rSquared);
        if (figures_.inference)
            put(pieces, tr("adjusted R²"), figures_.inference->adjustedRSquared);
        if (m_ > 0 && !std::isnan(fStatistic())) {
            QString f =
                QStringLiteral("F(%1, %2) = %3").arg(m_).arg(std::max(0LL, n_ - m_ - 1)).arg(figure(fStatistic()));
            if (figures_.inference && !std::isnan(figures_.inference->fPValue)) {
                const QString text = p(figures_.inference->fPValue);
                f += text.startsWith(u'<') ? QStringLiteral(", p ") + text : QStringLiteral(", p = ") + text;
            }
            pieces += f;
        }
        if (figures_.inference) {
            put(pieces, QStringLiteral("AIC"), figures_.inference->aic);
            put(pieces, QStringLiteral("BIC"), figures_.inference->bic);
        }
        page_.addLine(pieces);
    }

    void warnings()
    {
        const QStringList list = pageWarnings(figures_, style_.digits, style_.point);
        if (list.isEmpty())
            return;
        page_.add(Kind::Heading, tr("Worth a warning"));
        for (const QString &warning : list)
            page_.add(Kind::Item, warning);
    }

    void diagnostics()
    {
        if (!figures_.diagnostics)
            return;
        const Diagnostics &tests = *figures_.diagnostics;
        page_.add(Kind::Heading, tr("Diagnostics"));
        Page::Table table;
        table.columns = {
            {tr("Test"), false}, {tr("Statistic")}, {tr("df")}, {QStringLiteral("p")}, {tr("asks for"), false}};
        const auto row = [&](const QString &name, const TestResult &test, const QString &question,
                             double second = 0) {
            QString df;
            if (!std::isnan(test.statistic) && test.degrees > 0)
                df = figure(test.degrees);
            if (!df.isEmpty() && second > 0)
                df += QStringLiteral(", ") + figure(second);
            table.rows += {name, figure(test.statistic), df, p(test.pValue), question};
        };
        row(QStringLiteral("Breusch-Pagan"), tests.breuschPagan, tr("even scatter"));
        row(QStringLiteral("White"), tests.white, tr("even scatter"));
        row(QStringLiteral("Jarque-Bera"), tests.jarqueBera, tr("normal residuals"));
        row(QStringLiteral("Shapiro-Wilk"), tests.shapiroWilk, tr("normal residuals"));
        row(QStringLiteral("RESET"), tests.reset, tr("the right form"), tests.resetDenominator);
        page_.addTable(table);
        QStringList pieces;
        put(pieces, QStringLiteral("Durbin-Watson"), tests.durbinWatson);
        put(pieces, QStringLiteral("PRESS"), tests.press);
        put(pieces, tr("predicted R²"), tests.predictedRSquared);
        page_.addLine(pieces);
    }

    void terms()
    {
        if (!figures_.inference)
            return;
        const Inference &inference = *figures_.inference;
        if (m_ > 0) {
            page_.add(Kind::Heading, tr("What each term does"));
            Page::Table table;
            table.columns = {{tr("Term"), false},   {tr("Standardized")},      {tr("Partial r")},
                             {tr("Semipartial r")}, {tr("SS added in order")}, {tr("SS added last")},
                             {tr("Tolerance")}};
            for (std::size_t j = 0; j < figures_.columns.size(); ++j)
                table.rows += {figures_.columns[j].term,
                               figure(at(inference.standardized, j)),
                               figure(at(inference.partialCorrelations, j)),
                               figure(at(inference.semipartialCorrelations, j)),
                               figure(at(inference.sequentialSumsOfSquares, j)),
                               figure(at(inference.partialSumsOfSquares, j)),
                               figure(at(inference.tolerance, j))};
            page_.addTable(table);
        }
        QStringList pieces;
        put(pieces, tr("log likelihood"), inference.logLikelihood);
        put(pieces, QStringLiteral("AICc"), inference.aicc);
        put(pieces, QStringLiteral("HQC"), inference.hqc);
        page_.addLine(pieces);
        QStringList indices;
        for (const double index : inference.conditionIndices)
            indices += figure(index);
        if (!indices.isEmpty())
            page_.addLine(QStringList{tr("Condition indices:")} + indices);
    }

    void robust()
    {
        if (!figures_.robust)
            return;
        const Robust &robust = figures_.robust->errors;
        page_.add(Kind::Heading, tr("Robust standard errors (%1)").arg(figures_.robust->kind.toUpper()));
        Page::Table table;
        table.columns = {
            {tr("Term"), false}, {tr("Estimate")}, {tr("Std. error")}, {QStringLiteral("t")}, {QStringLiteral("p")}};
        for (std::size_t i = 0; i < figures_.coefficients.size(); ++i)
            table.rows += {termOf(i), figure(coefficientOf(i).estimate), figure(at(robust.standardErrors, i)),
                           figure(at(robust.tValues, i)), p(at(robust.pValues, i))};
        page_.addTable(table);
    }

    void predictions()
    {
        if (figures_.predictions.empty())
            return;
        page_.add(Kind::Heading, tr("Predictions of %1 with %2 intervals").arg(figures_.response.term, level()));
        Page::Table table;
        table.columns = {{tr("At"), false}, {tr("Value")},   {tr("Std. error")}, {tr("Mean low")},
                         {tr("Mean high")}, {tr("New low")}, {tr("New high")}};
        for (const Figures::Prediction &one : figures_.predictions) {
            QStringList place;
            for (const auto &[field, value] : one.at)
                place += field + u'=' + significant(value, 17, style_.point);
            table.rows += {place.join(QStringLiteral(", ")),    figure(one.predicted.value),
                           figure(one.predicted.standardError), figure(one.predicted.confidence[0]),
                           figure(one.predicted.confidence[1]), figure(one.predicted.prediction[0]),
                           figure(one.predicted.prediction[1])};
        }
        page_.addTable(table);
    }

    void observations()
    {
        const std::vector<StandOut> found = standOuts(figures_);
        if (!figures_.influence)
            return;
        page_.add(Kind::Heading, tr("Observations worth looking at"));
        if (found.empty()) {
            page_.add(Kind::Paragraph, tr("None stands out."));
            return;
        }
        const Influence &influence = *figures_.influence;
        Page::Table table;
        table.columns = {{tr("Record"), false},    {figures_.response.term},   {tr("Fitted")},
                         {tr("Residual")},         {tr("Leverage")},           {tr("Studentized")},
                         {QStringLiteral("Cook")}, {QStringLiteral("DFFITS")}, {tr("stands out by"), false}};
        for (std::size_t k = 0; k < std::min(found.size(), MostObservations); ++k) {
            const std::size_t i = found[k].observation;
            table.rows += {QString::number(recordOf(figures_, i)),
                           figure(at(figures_.observed, i)),
                           figure(at(figures_.fitted, i)),
                           figure(at(figures_.residuals, i)),
                           figure(influence.leverage[i]),
                           figure(influence.studentizedResiduals[i]),
                           figure(influence.cook[i]),
                           figure(influence.dffits[i]),
                           found[k].inWords()};
        }
        page_.addTable(table);
        if (found.size() > MostObservations)
            page_.add(Kind::Paragraph, tr("The %1 with the largest Cook's distances of %2 that stand out.")
                                           .arg(MostObservations)
                                           .arg(found.size()));
    }

    void matrix(const QString &name, const Figures::Matrix &matrix)
    {
        page_.add(Kind::Heading, name);
        Page::Table table;
        table.columns = {{tr("Term"), false}};
        for (std::size_t i = 0; i < matrix.size(); ++i) {
            table.columns += {termOf(i)};
            QStringList row{termOf(i)};
            for (const double value : matrix[i])
                row += figure(value);
            table.rows += row;
        }
        page_.addTable(table);
    }

    const Figures &figures_;
    const PageStyle &style_;
    const long long n_;
    const int m_;
    Page page_;
};

} // namespace

Page statisticsPage(const Figures &figures, const PageStyle &style)
{
    const Figures shown = figuresThatExist(figures);
    return Writer(shown, style).write();
}

} // namespace nuvo
