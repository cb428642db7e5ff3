#include "app/Textreport.h"
#include "support/Print.h"

#include <gtest/gtest.h>

namespace {

QString u(const char *text)
{
    return QString::fromUtf8(text);
}

/// A report on two columns with these names.
nuvo::ReportText report(const QString &first, const QString &second)
{
    nuvo::ReportText text;
    text.source = u("t");
    text.dateTime = u("2000-01-01 00:00:00");
    text.blocks.DepVar = u("\n\r    Y = y");
    text.blocks.IndepVars = u("\n\r     X1 = ") + first + u("\n\r     X2 = ") + second + u("\n\r");
    text.blocks.DataCount = u("5");
    text.blocks.DOF = u("\n\r     Regression 2\n\r     Residual 2\n\r     Total 4");
    text.blocks.Coeffs = u("\n\r     B0: 1.0000\n\r     B1: -2.5000\n\r     B2: 1.2345679E8\n\r");
    text.blocks.StdErrs = u("\n\r   0.1000\n\r   0.2000\n\r   0.3000\n\r");
    text.blocks.TValues = u("\n\r  10.0000\n\r  -12.5000\n\r  NAN\n\r");
    text.blocks.Means = u("\n\r     Y: 3.0000\n\r     X1: 4.0000\n\r     X2: 5.0000\n\r");
    text.blocks.StdDevs = u("\n\r     0.5000\n\r     0.6000\n\r     0.7000\n\r");
    text.blocks.SSE = u("1.000");
    text.blocks.SSR = u("2.000");
    text.blocks.SSquared = u("0.500");
    text.blocks.FStat = u("(2,2): 2.000");
    text.window.SST = u("3.000");
    text.window.RSquared = u("0.667");
    text.terms = {first, second};
    text.leftOut = u("Records: 5.");
    return text;
}

TEST(TerminalReport, FiguresStandBelowTheirCaptionsBehindTheirTerms)
{
    EXPECT_EQ(nuvo::terminalReport(report(u("a"), u("b")), 80),
              u(R"(Multiple Regression Analysis Report                          2000-01-01 00:00:00
Data: t
Number of observations: 5

Dependent Variable:   Mean:  Std. Dev. (Data):
      Y = y          3.0000             0.5000
Independent Variables:
     X1 = a          4.0000             0.6000
     X2 = b          5.0000             0.7000

                      Coefficients:  Std. Err. (Coeff):  t* Values
     B0:  (constant)         1.0000              0.1000    10.0000
     B1:  a                 -2.5000              0.2000   -12.5000
     B2:  b             1.2345679E8              0.3000        NAN

Sum of Squares                              Degrees of Freedom:
    Regression SSR : 2.000                      Regression 2
    Residual   SSE : 1.000                      Residual 2
    Total      SST : 3.000                      Total 4

s² : 0.500            R² : 0.667            F Statistic(2,2): 2.000

Records: 5.
)"));
}

TEST(TerminalReport, ALongNameHasALineOfItsOwnAndTheOthersStayInTheirColumns)
{
    const QString name = u("a very long name of a field, in dollars (1992) per head and year");
    const QString text = nuvo::terminalReport(report(name, u("b")), 80);
    EXPECT_TRUE(text.contains(u("     X1 = ") + name +
                              u("\n                     4.0000             0.6000\n"
                                "     X2 = b          5.0000             0.7000\n")))
        << text.toStdString();
    EXPECT_TRUE(text.contains(u("     B1:  ") + name +
                              u("\n                            -2.5000              0.2000   -12.5000\n"
                                "     B2:  b             1.2345679E8")))
        << text.toStdString();
    // On a wide terminal it fits.
    const QString wide = nuvo::terminalReport(report(name, u("b")), 140);
    EXPECT_TRUE(wide.contains(u("     X1 = ") + name + u("  4.0000             0.6000\n"))) << wide.toStdString();
}

TEST(TerminalReport, NoLineIsLongerThanTheTerminalUnlessANameIs)
{
    for (int length = 1; length < 60; ++length) {
        nuvo::ReportText text = report(QString(length, u'n'), u("b"));
        for (const QString &line : nuvo::terminalReport(text, 80).split(u'\n'))
            EXPECT_LE(nuvo::displayWidth(line), 80) << line.toStdString();
    }
}

TEST(TerminalReport, WideLettersTakeTwoColumns)
{
    EXPECT_EQ(nuvo::displayWidth(u("aä日本")), 6);
    const QString text = nuvo::terminalReport(report(u("日本"), u("bcde")), 80);
    EXPECT_TRUE(text.contains(u("     X1 = 日本       4.0000")));
    EXPECT_TRUE(text.contains(u("     X2 = bcde       5.0000")));
}

TEST(TerminalReport, AWideMatrixIsSetInGroupsOfColumns)
{
    nuvo::ReportText text = report(u("a"), u("b"));
    text.matrices = true;
    text.blocks.CovarianceLines = {u("Covariance Matrix:"), u(" ")};
    text.blocks.CorrelationLines = {u("Correlation Matrix:"), u(" ")};
    for (int row = 0; row < 11; ++row) {
        QString covariances;
        QString correlations;
        for (int column = 0; column < 11; ++column) {
            covariances += u("-1.%1E+%2   ").arg(row, 2, 10, QChar(u'0')).arg(10 + column);
            correlations += row == column ? u(" 1.00E+0    ") : u("-1.00E-1    ");
        }
        text.blocks.CovarianceLines.append(covariances);
        text.blocks.CorrelationLines.append(correlations);
    }
    const QString set = nuvo::terminalReport(text, 80);
    EXPECT_TRUE(set.contains(u("\nCovariance Matrix:\n"
                               "             B0        B1        B2        B3        B4        B5        B6\n"
                               "  B0  -1.00E+10 -1.00E+11 -1.00E+12 -1.00E+13 -1.00E+14 -1.00E+15 -1.00E+16\n")))
        << set.toStdString();
    EXPECT_TRUE(set.contains(u("\n\n             B7        B8        B9       B10\n"
                               "  B0  -1.00E+17 -1.00E+18 -1.00E+19 -1.00E+20\n")));
    EXPECT_TRUE(set.contains(u("\n  B10 -1.10E+17 -1.10E+18 -1.10E+19 -1.10E+20\n\nCorrelation Matrix:\n")));
    EXPECT_TRUE(nuvo::terminalReport(text, 120).contains(u("-1.00E+19 -1.00E+20\n  B1 ")));
}

} // namespace
