#include "present/Report.h"

#include "engine/Regression.h"
#include "platform/Formats.h"

#include <QStringBuilder>

#include <cmath>

namespace nuvo {

namespace {

QString covarianceCell(double value, TRegression::Form form, QChar point)
{
    if (form == TRegression::Form::Table)
        return FormatFloat(u" 0.00E+0;-0.00E+0", value, point) % u"   ";
    // The query's report leaves the blank before a zero out.
    return QStringView(value > 0.0 ? u" " : u"") % FormatFloat(u"0.00E+0", value, point) % u"    ";
}

QString correlationCell(double value, QChar point)
{
    // No blank before a zero either, nor before what is as good as one.
    return QStringView(value > ZeroTolerance ? u" " : u"") % FormatFloat(u"0.00E+0", value, point) % u"    ";
}

} // namespace

ReportBlocks reportBlocks(TRegression &regression, QChar point)
{
    const auto fix3 = [point](double value) { return FloatToStrFixed(value, 8, 3, point); };
    const auto fix4 = [point](double value) { return FloatToStrFixed(value, 8, 4, point); };
    const auto number = [](int value) { return QString::number(value); };
    const int n = regression.GetNumObs();
    const int k = regression.GetNumVars();

    ReportBlocks blocks;
    blocks.DepVar = kLineEnd % u"    Y = " % regression.ResponseVarY().OutputTerm();
    blocks.DOF = kLineEnd % u"     Regression " % number(k) % kLineEnd % u"     Residual " % number(n - k - 1) %
                 kLineEnd % u"     Total " % number(n - 1);
    blocks.DataCount = number(n);
    blocks.SSquared = fix3(regression.GetMSE());
    blocks.SSE = fix3(regression.GetSSE());
    blocks.SSR = fix3(regression.GetSSR());
    blocks.FStat = u"(" % number(k) % u"," % number(n - k - 1) % u"): " % fix3(regression.GetF());
    blocks.IndepVars = blocks.Means = blocks.StdDevs = blocks.StdErrs = kLineEnd.toString();
    blocks.Coeffs = kLineEnd % u"     B0: " % fix4(regression.Getb(0)) % kLineEnd;
    blocks.Means += u"     Y: " % fix4(regression.GetyBar()) % kLineEnd;
    blocks.StdDevs += u"     " % fix4(regression.GetyStdErr()) % kLineEnd;

    blocks.CovarianceLines = QStringList{QStringLiteral("Covariance Matrix:"), QStringLiteral(" ")};
    for (int r = 0; r <= k; ++r) {
        QString row;
        for (int c = 0; c <= k; ++c) {
            row += covarianceCell(regression.GetCovar(r, c), regression.DataSetForm(), point);
            if (r == c)
                blocks.StdErrs += u"   " % fix4(std::sqrt(regression.GetCovar(r, r))) % kLineEnd;
        }
        blocks.CovarianceLines += row;
    }

    const auto t = [&regression](int i) { return regression.Getb(i) / std::sqrt(regression.GetCovar(i, i)); };
    blocks.TValues = kLineEnd % u"  " % fix4(t(0)) % kLineEnd;
    int listed = 0;
    for (int i = 1; i <= k; ++i) {
        const TIndepVar &variable = regression.GetcVar(i);
        if (variable.Transformation() == u"Inactive")
            continue;
        const QString j = number(++listed);
        blocks.IndepVars += u"     X" % j % u" = " % variable.OutputTerm() % kLineEnd;
        blocks.Coeffs += u"     B" % j % u": " % fix4(regression.Getb(i)) % kLineEnd;
        blocks.Means += u"     X" % j % u": " % fix4(regression.GetxBar(i)) % kLineEnd;
        blocks.StdDevs += u"     " % fix4(regression.GetxStdErr(i)) % kLineEnd;
        blocks.TValues += u"  " % fix4(t(i)) % kLineEnd;
    }

    blocks.CorrelationLines = QStringList{QStringLiteral("Correlation Matrix:"), QStringLiteral(" ")};
    for (int r = 0; r <= k; ++r) {
        QString row;
        for (int c = 0; c <= k; ++c)
            row += correlationCell(regression.GetCorr(r, c), point);
        blocks.CorrelationLines += row;
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
