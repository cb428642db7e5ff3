#include "present/Textreport.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace {

/// A report on two columns with these names.
nuvo::ReportDocument report(const QString &first, const QString &second)
{
    nuvo::ReportDocument text;
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
    text.leftOut = u("Records: 5.");
    return text;
}

TEST(PlainReport, FiguresStandBelowTheirCaptionsBehindTheirTerms)
{
    EXPECT_EQ(nuvo::reportPlainText(report(u("a"), u("b")), nuvo::Matrices::Left, 80),
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

TEST(PlainReport, ALongNameHasALineOfItsOwnAndTheOthersStayInTheirColumns)
{
    const QString name = u("a very long name of a field, in dollars (1992) per head and year");
    const QString text = nuvo::reportPlainText(report(name, u("b")), nuvo::Matrices::Left, 80);
    EXPECT_TRUE(text.contains(u("     X1 = ") + name +
                              u("\n                     4.0000             0.6000\n"
                                "     X2 = b          5.0000             0.7000\n")))
        << text.toStdString();
    EXPECT_TRUE(text.contains(u("     B1:  ") + name +
                              u("\n                            -2.5000              0.2000   -12.5000\n"
                                "     B2:  b             1.2345679E8")))
        << text.toStdString();
    // On a wide terminal it fits.
    const QString wide = nuvo::reportPlainText(report(name, u("b")), nuvo::Matrices::Left, 140);
    EXPECT_TRUE(wide.contains(u("     X1 = ") + name + u("  4.0000             0.6000\n"))) << wide.toStdString();
}

TEST(PlainReport, NoLineIsLongerThanTheTerminalUnlessANameIs)
{
    for (int length = 1; length < 60; ++length) {
        nuvo::ReportDocument text = report(QString(length, u'n'), u("b"));
        for (const QString &line : nuvo::reportPlainText(text, nuvo::Matrices::Shown, 80).split(u'\n'))
            EXPECT_LE(nuvo::displayWidth(line), 80) << line.toStdString();
    }
}

TEST(PlainReport, WideLettersTakeTwoColumns)
{
    EXPECT_EQ(nuvo::displayWidth(u("aä日本")), 6);
    const QString text = nuvo::reportPlainText(report(u("日本"), u("bcde")), nuvo::Matrices::Left, 80);
    EXPECT_TRUE(text.contains(u("     X1 = 日本       4.0000")));
    EXPECT_TRUE(text.contains(u("     X2 = bcde       5.0000")));
}

TEST(PlainReport, AWideMatrixIsSetInGroupsOfColumns)
{
    nuvo::ReportDocument text = report(u("a"), u("b"));
    text.blocks.CovarianceLines = {u("Covariance Matrix:"), u(" ")};
    text.blocks.CorrelationLines = {u("Correlation Matrix:"), u(" ")};
    text.blocks.Coeffs = text.blocks.StdErrs = u("\n\r");
    for (int row = 0; row < 11; ++row) {
        text.blocks.Coeffs += u("     B%1: 1.0000\n\r").arg(row);
        text.blocks.StdErrs += u("   1.0000\n\r");
        QString covariances;
        QString correlations;
        for (int column = 0; column < 11; ++column) {
            covariances += u("-1.%1E+%2   ").arg(row, 2, 10, QChar(u'0')).arg(10 + column);
            correlations += row == column ? u(" 1.00E+0    ") : u("-1.00E-1    ");
        }
        text.blocks.CovarianceLines.append(covariances);
        text.blocks.CorrelationLines.append(correlations);
    }
    const QString set = nuvo::reportPlainText(text, nuvo::Matrices::Shown, 80);
    EXPECT_TRUE(set.contains(u("\nCovariance Matrix:\n"
                               "             B0        B1        B2        B3        B4        B5        B6\n"
                               "  B0  -1.00E+10 -1.00E+11 -1.00E+12 -1.00E+13 -1.00E+14 -1.00E+15 -1.00E+16\n")))
        << set.toStdString();
    EXPECT_TRUE(set.contains(u("\n\n             B7        B8        B9       B10\n"
                               "  B0  -1.00E+17 -1.00E+18 -1.00E+19 -1.00E+20\n")));
    EXPECT_TRUE(set.contains(u("\n  B10 -1.10E+17 -1.10E+18 -1.10E+19 -1.10E+20\n\nCorrelation Matrix:\n")));
    EXPECT_TRUE(nuvo::reportPlainText(text, nuvo::Matrices::Shown, 120).contains(u("-1.00E+19 -1.00E+20\n  B1 ")));
}

TEST(PlainReport, AVariableThatIsNotListedLeavesTheOthersTheirOwnFigures)
{
    nuvo::ReportDocument text = report(u("a"), u("c"));
    text.blocks.StdErrs = u("\n\r   0.1000\n\r   0.2000\n\r   0.2500\n\r   0.3000\n\r");
    text.blocks.CovarianceLines = {u("Covariance Matrix:"), u(" "),           u(" 1  2  3  4"),
                                   u(" 5  6  7  8"),        u(" 9 10 11 12"), u("13 14 15 16")};
    text.listed = {1, 3};
    const QString set = nuvo::reportPlainText(text);
    EXPECT_TRUE(set.contains(u("     B1:  a                 -2.5000              0.2000   -12.5000\n"
                               "     B2:  c             1.2345679E8              0.3000        NAN\n")))
        << set.toStdString();
    EXPECT_TRUE(set.contains(u("\n       B0 B1  - B2\n"
                               "  B0    1  2  3  4\n"
                               "  B1    5  6  7  8\n"
                               "  -     9 10 11 12\n"
                               "  B2   13 14 15 16\n")))
        << set.toStdString();
}

TEST(PlainReport, LinesOfTheUsersTextsStayAndControlCharactersDoNot)
{
    nuvo::ReportDocument text = report(u("a"), u("b"));
    text.source = u("t\033[2J");
    text.description = u("first\n\rsecond\a");
    text.message = u("one\ntwo");
    const QString set = nuvo::reportPlainText(text);
    EXPECT_TRUE(set.contains(u("Data: t [2J\nfirst\nsecond \nNumber of observations"))) << set.toStdString();
    EXPECT_TRUE(set.endsWith(u("\n\none\ntwo\n")));
}

} // namespace
