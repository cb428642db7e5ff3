// SPDX-License-Identifier: MIT
#include "app/Fitting.h"
#include "engine/Mlrtable.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <bit>
#include <cmath>

namespace {

std::uint64_t bits(double value)
{
    return std::bit_cast<std::uint64_t>(value);
}

TEST(FitText, ThePageOfLongley)
{
    const Outcome run = fitLongley({u("--description"), u("Employment"), u("--message"), u("For internal use")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, QString());
    EXPECT_TRUE(
        withoutTimes(run.out).startsWith(u(R"(Linear regression of TOTEMP on GNPDEFL, GNP, UNEMP, ARMED, POP, YEAR

Employment

Table Longley, 2000-01-01 00:00:00. 16 of 16 records were used.

Coefficients with 95 % intervals
--------------------------------

Term                 Estimate       Std. error           t             p
(constant)  -3482259           890420.4         -3.910803   0.003560404
GNPDEFL           15.06187         84.91493      0.1773760  0.8631408
GNP               -0.03581918       0.03349101  -1.069516   0.3126811
UNEMP             -2.020230         0.4883997   -4.136427   0.002535092
ARMED             -1.033227         0.2142742   -4.821985   0.0009443668
POP               -0.05110411       0.2260732   -0.2260511  0.8262118
YEAR            1829.151          455.4785       4.015890   0.003036803
)"))) << run.out.toStdString();
    EXPECT_TRUE(run.out.contains(u("\nF(6, 9) = 330.2853, p = 4.984031e-10   AIC = 235.2349   BIC = 241.4156\n")));
    EXPECT_TRUE(run.out.contains(u("\nDurbin-Watson = 2.559488   PRESS = 2886893   predicted R² = 0.9843959\n")));
    EXPECT_TRUE(run.out.endsWith(u("\n\nFor internal use\n")));
    EXPECT_FALSE(run.out.contains(u'\r'));
    for (const char *asked : {"Covariances", "Robust", "Predictions", "Observations"})
        EXPECT_FALSE(run.out.contains(u(asked))) << asked;
}

TEST(FitText, ThePageHasWhatIsAskedFor)
{
    const Outcome run = fitLongley({u("--matrices"), u("--influence"), u("--robust=hc3"), u("--level=0.9"),
                                    u("--at=GNPDEFL=100,GNP=400000,UNEMP=3000,ARMED=2500,POP=118000,YEAR=1955")});
    for (const char *heading : {"Coefficients with 90 % intervals", "Robust standard errors (HC3)",
                                "Predictions of TOTEMP with 90 % intervals", "Observations worth looking at",
                                "Covariances of the coefficients", "Correlations of the coefficients"})
        EXPECT_TRUE(run.out.contains(u'\n' + u(heading) + u'\n')) << heading;
    EXPECT_TRUE(run.out.contains(u("\n    66236.95    247.2057 "))) << run.out.toStdString();
}

TEST(FitText, PdfAndHtmlHaveTheFiguresBelowThePageAndNeedNoOtherFile)
{
    const QTemporaryDir directory;
    const auto saved = [&](const char *name) {
        const Outcome run = fitLongley({u("--save-report"), directory.filePath(u(name))});
        EXPECT_EQ(run.status, 0) << run.err.toStdString();
        QFile file(directory.filePath(u(name)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    };
    const QByteArray html = saved("page.html");
    EXPECT_EQ(html.count("<svg "), 3 * 6 + 7);
    EXPECT_EQ(html.count("</svg>"), 3 * 6 + 7);
    EXPECT_LT(html.indexOf("Durbin-Watson"), html.indexOf("<svg "));
    for (const char *reference : {"src=", "href=", "url(", "<?xml", "<!DOCTYPE svg"})
        EXPECT_FALSE(html.contains(reference)) << reference;
    const QByteArray pdf = saved("page.pdf");
    EXPECT_EQ(pdf.count("/Type /Page\n"), 2 + 7) << "four figures on a sheet";
    EXPECT_FALSE(pdf.contains("/Subtype /Image"));
    for (const char *name : {"page.txt", "page.md"})
        EXPECT_FALSE(saved(name).contains("Residuals by")) << name;
}

TEST(FitReport, OfLongley)
{
    const Outcome run = fitLongley({u("--format=report"), u("--description"), u("Employment 1947 to 1962"),
                                    u("--message"), u("For internal use"), u("--matrices")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, QString());
    EXPECT_EQ(withoutTimes(run.out),
              u(R"(Multiple Regression Analysis Report                          2000-01-01 00:00:00
Data: Longley
Employment 1947 to 1962
Number of observations: 16

Dependent Variable:        Mean:  Std. Dev. (Data):
      Y = TOTEMP      65317.0000          3511.9684
Independent Variables:
     X1 = GNPDEFL       101.6813            10.7916
     X2 = GNP        387698.4400         99394.9380
     X3 = UNEMP        3193.3125           934.4642
     X4 = ARMED        2606.6875           695.9196
     X5 = POP        117424.0000          6956.1016
     X6 = YEAR         1954.5000             4.7610

                      Coefficients:  Std. Err. (Coeff):  t* Values
     B0:  (constant)  -3482258.6000         890420.3800    -3.9108
     B1:  GNPDEFL           15.0619             84.9149     0.1774
     B2:  GNP               -0.0358              0.0335    -1.0695
     B3:  UNEMP             -2.0202              0.4884    -4.1364
     B4:  ARMED             -1.0332              0.2143    -4.8220
     B5:  POP               -0.0511              0.2261    -0.2261
     B6:  YEAR            1829.1515            455.4785     4.0159

Sum of Squares                              Degrees of Freedom:
    Regression SSR : 1.841724E8                 Regression 6
    Residual   SSE : 836424.060                 Residual 9
    Total      SST : 1.8500882E8                Total 15

s² : 92936.006        R² : 0.995            F Statistic(6,9): 330.285

Covariance Matrix:
            B0       B1       B2       B3       B4       B5       B6
  B0  7.93E+11 -1.55E+7  2.43E+4  3.64E+5  1.05E+5 -8.27E+4 -4.05E+8
  B1  -1.55E+7  7.21E+3 -1.85E+0 -2.30E+1 -6.35E+0  1.27E+1  7.20E+3
  B2   2.43E+4 -1.85E+0  1.12E-3  1.55E-2  3.36E-3 -6.31E-3 -1.22E+1
  B3   3.64E+5 -2.30E+1  1.55E-2  2.39E-1  6.47E-2 -8.37E-2 -1.83E+2
  B4   1.05E+5 -6.35E+0  3.36E-3  6.47E-2  4.59E-2 -9.15E-3 -5.36E+1
  B5  -8.27E+4  1.27E+1 -6.31E-3 -8.37E-2 -9.15E-3  5.11E-2  4.00E+1
  B6  -4.05E+8  7.20E+3 -1.22E+1 -1.83E+2 -5.36E+1  4.00E+1  2.07E+5

Correlation Matrix:
            B0       B1       B2       B3       B4       B5       B6
  B0   1.00E+0 -2.05E-1  8.16E-1  8.36E-1  5.50E-1 -4.11E-1 -1.00E+0
  B1  -2.05E-1  1.00E+0 -6.49E-1 -5.55E-1 -3.49E-1  6.59E-1  1.86E-1
  B2   8.16E-1 -6.49E-1  1.00E+0  9.46E-1  4.69E-1 -8.33E-1 -8.02E-1
  B3   8.36E-1 -5.55E-1  9.46E-1  1.00E+0  6.19E-1 -7.58E-1 -8.24E-1
  B4   5.50E-1 -3.49E-1  4.69E-1  6.19E-1  1.00E+0 -1.89E-1 -5.49E-1
  B5  -4.11E-1  6.59E-1 -8.33E-1 -7.58E-1 -1.89E-1  1.00E+0  3.88E-1
  B6  -1.00E+0  1.86E-1 -8.02E-1 -8.24E-1 -5.49E-1  3.88E-1  1.00E+0

Records: 16 in the dataset, 16 read, 16 used, 0 skipped.

For internal use
)"));
}

TEST(FitReport, IsAskedForByItsName)
{
    const Outcome run = fitLongley({u("--format"), u("report")});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.out.startsWith(u("Multiple Regression Analysis Report "))) << run.out.toStdString();
    EXPECT_TRUE(run.out.contains(u("F Statistic(6,9): 330.285\n")));
}

TEST(FitReport, WithoutMatricesDescriptionAndMessageTheseAreLeftOut)
{
    const Outcome run = fitLongley({u("--format=report")});
    EXPECT_FALSE(run.out.contains(u("Matrix")));
    EXPECT_TRUE(run.out.contains(u("Data: Longley\nNumber of observations: 16\n")));
    EXPECT_TRUE(run.out.endsWith(u("Records: 16 in the dataset, 16 read, 16 used, 0 skipped.\n")));
    EXPECT_FALSE(run.out.contains(u'\r'));
}

TEST(FitJson, HasItsMembersInOrder)
{
    const Json fit = parsed(fitLongley({u("--format"), u("json")}));
    EXPECT_EQ(keys(fit), (std::vector<std::string>{"component",    "dataset",
                                                   "description",  "loaded",
                                                   "computed",     "observations",
                                                   "controls",     "degreesOfFreedom",
                                                   "records",      "dependentTerms",
                                                   "response",     "terms",
                                                   "coefficients", "standardErrors",
                                                   "tValues",      "sse",
                                                   "ssr",          "sst",
                                                   "mse",          "syx",
                                                   "rSquared",     "f",
                                                   "yBar",         "yStdErr",
                                                   "yMin",         "yMax",
                                                   "xBar",         "xStdErr",
                                                   "xMin",         "xMax",
                                                   "covariance",   "correlation",
                                                   "fitted",       "residuals",
                                                   "inference",    "diagnostics",
                                                   "leftOut",      "report",
                                                   "messages"}));
    EXPECT_EQ(keys(fit["records"]), (std::vector<std::string>{"total", "read", "used", "skipped"}));
    EXPECT_EQ(keys(fit["report"]),
              (std::vector<std::string>{"DepVar", "IndepVars", "DataCount", "DOF", "Coeffs", "SSquared", "SSE", "SSR",
                                        "Means", "StdDevs", "StdErrs", "TValues", "FStat", "CovarianceLines",
                                        "CorrelationLines", "SST", "RSquared"}));
    EXPECT_EQ(fit["component"], "table");
    EXPECT_EQ(fit["dataset"], "Longley");
    EXPECT_EQ(fit["description"], "");
    EXPECT_EQ(fit["loaded"], true);
    EXPECT_EQ(fit["computed"], true);
    EXPECT_EQ(fit["observations"], 16);
    EXPECT_EQ(fit["controls"], 6);
    EXPECT_EQ(fit["degreesOfFreedom"], 9);
    EXPECT_EQ(fit["records"].dump(), R"({"total":16,"read":16,"used":16,"skipped":0})");
    EXPECT_EQ(fit["dependentTerms"].dump(), "[]");
    EXPECT_EQ(fit["response"], "TOTEMP");
    EXPECT_EQ(fit["terms"].dump(), R"(["GNPDEFL","GNP","UNEMP","ARMED","POP","YEAR"])");
    EXPECT_EQ(fit["messages"].dump(), "[]");
    EXPECT_EQ(fit["report"]["DOF"], "\n\r     Regression 6\n\r     Residual 9\n\r     Total 15");
    EXPECT_EQ(fit["report"]["FStat"], "(6,9): 330.285");
    EXPECT_EQ(fit["report"]["RSquared"], "0.995");
    EXPECT_EQ(fit["report"]["CovarianceLines"].size(), 9U);
}

// Certified by the Statistical Reference Datasets of NIST.
TEST(FitJson, LongleyAgreesWithItsCertifiedFigures)
{
    const Json fit = parsed(fitLongley({u("--format=json")}));
    const double coefficients[] = {-3482258.63459582, 15.0618722713733,  -0.358191792925910E-01,
                                   -2.02022980381683, -1.03322686717359, -0.511041056535807E-01,
                                   1829.15146461355};
    const double deviations[] = {890420.383607373,  84.9149257747669,  0.334910077722432E-01, 0.488399681651699,
                                 0.214274163161675, 0.226073200069370, 455.478499142212};
    for (size_t j = 0; j < 7; ++j) {
        const auto b = fit["coefficients"][j].get<double>();
        const auto error = fit["standardErrors"][j].get<double>();
        EXPECT_NEAR(b / coefficients[j], 1, 1e-12);
        EXPECT_NEAR(error / deviations[j], 1, 1e-12);
        EXPECT_EQ(bits(fit["tValues"][j].get<double>()), bits(b / error));
        EXPECT_NEAR(std::sqrt(fit["covariance"][j][j].get<double>()) / error, 1, 1e-15);
        EXPECT_NEAR(fit["correlation"][j][j].get<double>(), 1, 1e-12);
    }
    EXPECT_NEAR(fit["syx"].get<double>() / 304.854073561965, 1, 1e-12);
    EXPECT_NEAR(fit["rSquared"].get<double>() / 0.995479004577296, 1, 1e-12);
    EXPECT_NEAR(fit["f"].get<double>() / 330.285339234588, 1, 1e-12);
    EXPECT_NEAR(fit["sse"].get<double>() / 836424.055505915, 1, 1e-12);
    EXPECT_NEAR(fit["ssr"].get<double>() / 184172401.944494, 1, 1e-12);
    EXPECT_EQ(fit["yMin"], 60171.0);
    EXPECT_EQ(fit["xMax"][5], 1962.0);
    EXPECT_EQ(fit["xBar"].size(), 6U);
    EXPECT_EQ(fit["fitted"].size(), 16U);
    EXPECT_EQ(fit["residuals"].size(), 16U);
}

TEST(FitJson, EveryFigureIsTheComponentsOwnToTheLastBit)
{
    const Json fit = parsed(fitLongley({u("--format=json")}));
    TMLRTable table;
    table.SetDatabaseName(u(SAMPLES_DB));
    table.SetTableName(u("Longley"));
    TDependentVar response;
    response.SetField(u("TOTEMP"));
    table.SetResponse(response);
    int k = 0;
    for (const char *field : {"GNPDEFL", "GNP", "UNEMP", "ARMED", "POP", "YEAR"}) {
        TIndepVar control;
        control.SetField1(u(field));
        control.SetTransformation(u("None"));
        table.SetControl(++k, control);
    }
    table.Open();
    ASSERT_TRUE(table.ReLoad());
    table.Execute();
    const auto same = [](const Json &value, double expected) {
        EXPECT_EQ(bits(value.get<double>()), bits(expected));
    };
    for (int j = 0; j <= 6; ++j) {
        same(fit["coefficients"][size_t(j)], table.Getb(j));
        for (int i = 0; i <= 6; ++i) {
            same(fit["covariance"][size_t(i)][size_t(j)], table.GetCovar(i, j));
            same(fit["correlation"][size_t(i)][size_t(j)], table.GetCorr(i, j));
        }
    }
    for (int j = 1; j <= 6; ++j) {
        same(fit["xBar"][size_t(j - 1)], table.GetxBar(j));
        same(fit["xStdErr"][size_t(j - 1)], table.GetxStdErr(j));
        same(fit["xMin"][size_t(j - 1)], table.GetxMin(j));
        same(fit["xMax"][size_t(j - 1)], table.GetxMax(j));
    }
    for (int i = 1; i <= 16; ++i) {
        same(fit["fitted"][size_t(i - 1)], table.GetyHat(i));
        same(fit["residuals"][size_t(i - 1)], table.Gete(i));
    }
    same(fit["sse"], table.GetSSE());
    same(fit["ssr"], table.GetSSR());
    same(fit["sst"], table.GetSST());
    same(fit["syx"], table.GetSyx());
    same(fit["mse"], table.GetMSE());
    same(fit["rSquared"], table.GetRSquared());
    same(fit["f"], table.GetF());
    same(fit["yBar"], table.GetyBar());
    same(fit["yStdErr"], table.GetyStdErr());
}

TEST(FitReport, EveryCaptionStandsWithTheTextThatTheJsonHas)
{
    const Json report = parsed(fitLongley({u("--format=json")}))["report"];
    const QString printed = fitLongley({u("--format=report")}).out.simplified();
    for (const auto &[caption, key] :
         {std::pair("Number of observations: ", "DataCount"), std::pair("s² : ", "SSquared"),
          std::pair("R² : ", "RSquared"), std::pair("Regression SSR : ", "SSR"), std::pair("Residual SSE : ", "SSE"),
          std::pair("Total SST : ", "SST"), std::pair("F Statistic", "FStat")})
        EXPECT_TRUE(printed.contains(u(caption) + text(report[key]))) << caption;
    for (const char *key : {"DepVar", "IndepVars", "DOF", "Coeffs", "Means", "StdDevs", "StdErrs", "TValues"}) {
        for (const QString &line : text(report[key]).split(u("\n\r"), Qt::SkipEmptyParts)) {
            const QString figure = line.trimmed().section(u(": "), -1);
            EXPECT_TRUE(printed.contains(figure)) << key << figure.toStdString();
        }
    }
    for (const char *caption :
         {"Dependent Variable:", "Independent Variables:", "Degrees of Freedom:", "Coefficients:", "t* Values",
          "Mean:", "Std. Dev. (Data):", "Std. Err. (Coeff):", "Sum of Squares"})
        EXPECT_TRUE(printed.contains(u(caption))) << caption;
}

TEST(FitOnATerminal, TheReportGoesWhereItShouldWhateverTheLocale)
{
    for (const char *locale : {"C", "POSIX", "de_DE.UTF-8", "nonsense"}) {
        QStringList quoted;
        for (const QString &argument : longley())
            quoted.append(u'\'' + argument + u'\'');
        const Outcome run = runShell(u("LC_ALL=%1 LANG=%1 \"$nuvostat\" %2").arg(u(locale), quoted.join(u' ')));
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.err, QString());
        EXPECT_EQ(withoutTimes(run.out), withoutTimes(fitLongley().out));
    }
}

TEST(FitOnATerminal, AProgressBarIsDrawnThereAndTakenAway)
{
    const auto database = TestDatabase::make(TestDatabase::Sqlite);
    database->makeNumbers(u("n"), 500, 2);
    const QString fit =
        u("\"$nuvostat\" fit --database %1 --table n --response x0 --control x1 --progress").arg(database->name());
    EXPECT_EQ(runShell(fit + u(" 2>&1 >/dev/null")).out, QString());
    // script(1) runs a command on a terminal of its own.
    const Outcome drawn = runShell(u("script -qec '%1 >/dev/null' /dev/null").arg(fit));
    EXPECT_TRUE(
        drawn.out.contains(u("\r[####################....................]  50 %  Records Loaded: 250\033[K")))
        << drawn.out.toStdString();
    EXPECT_TRUE(drawn.out.endsWith(u("\r\033[K")));
    const Outcome silent =
        runShell(u("script -qec '%1 >/dev/null' /dev/null").arg(QString(fit).remove(u(" --progress"))));
    EXPECT_EQ(silent.out, QString());
}

TEST(FitOnATerminal, StandardOutputThatIsFullIsStatus3)
{
    QStringList quoted;
    for (const QString &argument : longley())
        quoted.append(u'\'' + argument + u'\'');
    const Outcome run = runShell(u("\"$nuvostat\" %1 --format json >/dev/full").arg(quoted.join(u' ')));
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.err, u("nuvostat: Standard output cannot be written: No space left on device.\n"));
    EXPECT_EQ(runShell(u("(\"$nuvostat\" %1; echo $? >&2) | :").arg(quoted.join(u' '))).err, u("0\n"));
}

} // namespace
