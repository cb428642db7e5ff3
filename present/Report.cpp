// SPDX-License-Identifier: MIT
#include "present/Report.h"

#include "engine/Mlrtypes.h"
#include "platform/Formats.h"

#include <QStringBuilder>

namespace nuvo {

QString covarianceCell(double value, bool query, QChar point)
{
    if (!query)
        return FormatFloat(u" 0.00E+0;-0.00E+0", value, point) % u"   ";
    // The query's report leaves the blank before a zero out.
    return QStringView(value > 0.0 ? u" " : u"") % FormatFloat(u"0.00E+0", value, point) % u"    ";
}

QString correlationCell(double value, QChar point)
{
    // No blank before a zero either, nor before what is as good as one.
    return QStringView(value > ZeroTolerance ? u" " : u"") % FormatFloat(u"0.00E+0", value, point) % u"    ";
}

ReportBlocks reportBlocks(const Figures &figures, QChar point)
{
    const auto fix3 = [point](double value) { return FloatToStrFixed(value, 8, 3, point); };
    const auto fix4 = [point](double value) { return FloatToStrFixed(value, 8, 4, point); };
    const auto number = [](long long value) { return QString::number(value); };
    const long long n = figures.observations;
    const int k = figures.controls;

    ReportBlocks blocks;
    blocks.DepVar = kLineEnd % u"    Y = " % figures.response.term;
    blocks.DOF = kLineEnd % u"     Regression " % number(k) % kLineEnd % u"     Residual " % number(n - k - 1) %
                 kLineEnd % u"     Total " % number(n - 1);
    blocks.DataCount = number(n);
    blocks.SSquared = fix3(figures.sums.mse);
    blocks.SSE = fix3(figures.sums.residual);
    blocks.SSR = fix3(figures.sums.regression);
    blocks.FStat = u"(" % number(k) % u"," % number(n - k - 1) % u"): " % fix3(figures.sums.f);
    blocks.IndepVars = blocks.Means = blocks.StdDevs = blocks.StdErrs = blocks.TValues = kLineEnd.toString();
    blocks.Coeffs = kLineEnd % u"     B0: " % fix4(figures.coefficients[0].estimate) % kLineEnd;
    blocks.Means += u"     Y: " % fix4(figures.response.mean) % kLineEnd;
    blocks.StdDevs += u"     " % fix4(figures.response.standardDeviation) % kLineEnd;
    blocks.TValues += u"  " % fix4(figures.coefficients[0].t) % kLineEnd;
    for (const Figures::Coefficient &coefficient : figures.coefficients)
        blocks.StdErrs += u"   " % fix4(coefficient.standardError) % kLineEnd;

    int listed = 0;
    for (std::size_t i = 0; i < figures.columns.size(); ++i) {
        const Figures::Variable &column = figures.columns[i];
        if (!column.listed)
            continue;
        const QString j = number(++listed);
        blocks.IndepVars += u"     X" % j % u" = " % column.term % kLineEnd;
        blocks.Coeffs += u"     B" % j % u": " % fix4(figures.coefficients[i + 1].estimate) % kLineEnd;
        blocks.Means += u"     X" % j % u": " % fix4(column.mean) % kLineEnd;
        blocks.StdDevs += u"     " % fix4(column.standardDeviation) % kLineEnd;
        blocks.TValues += u"  " % fix4(figures.coefficients[i + 1].t) % kLineEnd;
    }

    blocks.CovarianceLines = QStringList{QStringLiteral("Covariance Matrix:"), QStringLiteral(" ")};
    for (const Figures::Numbers &row : figures.covariance) {
        QString line;
        for (const double value : row)
            line += covarianceCell(value, figures.query, point);
        blocks.CovarianceLines += line;
    }
    blocks.CorrelationLines = QStringList{QStringLiteral("Correlation Matrix:"), QStringLiteral(" ")};
    for (const Figures::Numbers &row : figures.correlation) {
        QString line;
        for (const double value : row)
            line += correlationCell(value, point);
        blocks.CorrelationLines += line;
    }
    return blocks;
}

WindowTexts windowTexts(const ReportBlocks &blocks, QChar point)
{
    const double ssr = StrToFloat(blocks.SSR);
    const double sst = StrToFloat(blocks.SSE) + ssr;
    return {FloatToStrFixed(sst, 8, 3, point), FloatToStrFixed(ssr / sst, 8, 3, point)};
}

} // namespace nuvo
