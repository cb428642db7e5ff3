// SPDX-License-Identifier: MIT
#include "app/Fitting.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cmath>

namespace {

Json longleyJson(const QStringList &more = {})
{
    return parsed(fitLongley(QStringList{u("--format=json")} + more));
}

QStringList airqualityArguments(const QStringList &more)
{
    return fitArguments(u(SAMPLES_DB), QStringList{u("--table"), u("Airquality"), u("--response"), u("Ln(Ozone)"),
                                                   u("--control"), u("Temp"), u("--control"), u("1/Wind")} +
                                           more);
}

QStringList linesOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll()).split(u'\n');
}

// By R 4.2: lm, confint and influence.measures.
TEST(FitBeyond, JsonHasInferenceAndDiagnosticsOfEveryFit)
{
    const Json fit = longleyJson();
    EXPECT_EQ(fit["inference"]["level"], 0.95);
    EXPECT_NEAR(fit["inference"]["pValues"][6].get<double>() / 0.00303680334163, 1, 1e-9);
    EXPECT_NEAR(fit["inference"]["confidence"][6][0].get<double>() / 798.787515278, 1, 1e-9);
    EXPECT_NEAR(fit["inference"]["fPValue"].get<double>() / 4.98403052872e-10, 1, 1e-9);
    EXPECT_NEAR(fit["diagnostics"]["durbinWatson"].get<double>() / 2.55948768928, 1, 1e-9);
    for (const char *name : {"influence", "robust", "predictions"})
        EXPECT_FALSE(fit.contains(name)) << name;
}

TEST(FitBeyond, TheLevelIsThatOfTheIntervals)
{
    const Json usual = longleyJson()["inference"];
    const Json wide = longleyJson({u("--level"), u("0.99")})["inference"];
    EXPECT_EQ(wide["level"], 0.99);
    EXPECT_EQ(wide["pValues"], usual["pValues"]);
    EXPECT_LT(wide["confidence"][6][0], usual["confidence"][6][0]);
    EXPECT_GT(wide["confidence"][6][1], usual["confidence"][6][1]);
}

TEST(FitBeyond, InfluenceAndRobustErrorsComeWithTheirOptions)
{
    const Json fit = longleyJson({u("--influence"), u("--robust"), u("hc3")});
    EXPECT_NEAR(fit["influence"]["cook"][4].get<double>() / 0.613916838192, 1, 1e-9);
    EXPECT_EQ(fit["influence"]["record"][15], 16);
    EXPECT_EQ(fit["influence"]["dfbetas"].size(), 16U);
    EXPECT_EQ(fit["influence"]["dfbetas"][0].size(), 7U);
    EXPECT_EQ(fit["robust"]["kind"], "hc3");
    EXPECT_EQ(fit["robust"]["covariance"].size(), 7U);
    EXPECT_DOUBLE_EQ(std::sqrt(fit["robust"]["covariance"][6][6].get<double>()),
                     fit["robust"]["standardErrors"][6].get<double>());
}

TEST(FitBeyond, RecordsKeepTheirOrdinalsWhereSomeAreSkipped)
{
    const Json fit = parsed(runProgram(airqualityArguments({u("--influence"), u("--format=json")})));
    const Json &record = fit["influence"]["record"];
    ASSERT_EQ(record.size(), 116U);
    EXPECT_EQ(record[4], 6) << "record 5 has no Ozone";
    EXPECT_EQ(record[115], 153);
}

TEST(FitBeyond, WhatEachTermCouldNotUseIsToldApart)
{
    const char *const leftOut = R"x([{"term":"Ln(Ozone)","null":37,"invalid":0},)x"
                                R"x({"term":"Temp","null":0,"invalid":0},{"term":"1/Wind","null":0,"invalid":0}])x";
    EXPECT_EQ(parsed(runProgram(airqualityArguments({u("--format=json")})))["leftOut"].dump(), leftOut);
    EXPECT_TRUE(runProgram(airqualityArguments({}))
                    .out.simplified()
                    .contains(u("116 of 153 records were used, 37 could not be: Ln(Ozone) is null in 37.")));
}

TEST(FitBeyond, APredictionAtARecordIsItsFittedValue)
{
    const Json fit = parsed(runProgram(airqualityArguments(
        {u("--format=json"), u("--influence"), u("--at"), u("Wind=7.4,Temp=67"), u("--at"), u("temp=70,wind=-2")})));
    ASSERT_EQ(fit["predictions"].size(), 2U);
    const Json &first = fit["predictions"][0];
    EXPECT_EQ(first["at"].dump(), R"({"Wind":7.4,"Temp":67.0})");
    EXPECT_NEAR(first["value"].get<double>() / fit["fitted"][0].get<double>(), 1, 1e-14);
    EXPECT_NEAR(first["standardError"].get<double>() /
                    (fit["syx"].get<double>() * std::sqrt(fit["influence"]["leverage"][0].get<double>())),
                1, 1e-13);
    EXPECT_LT(first["prediction"][0], first["confidence"][0]);
    EXPECT_LT(first["confidence"][1], first["prediction"][1]);
    EXPECT_EQ(fit["predictions"][1]["at"].dump(), R"({"Temp":70.0,"Wind":-2.0})");
}

TEST(FitBeyond, AValueThatATermCannotTakeIsAWrongCommandLine)
{
    const auto fails = [](const QString &control, const QString &at, const QString &sentence) {
        const Outcome run = fitLongley({u("--control"), control, u("--at"), at});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.out, QString());
        EXPECT_EQ(run.err, u("nuvostat: ") + sentence + u(" See \"nuvostat fit --help\".\n"));
    };
    const QString rest = u("GNPDEFL=1,GNP=1,UNEMP=1,ARMED=1,POP=0,YEAR=1,");
    fails(u("Ln(x)"), rest + u("x=-1"), u("--at gives \"Ln(x)\" values that this term cannot take."));
    fails(u("1/x"), rest + u("x=0"), u("--at gives \"1/x\" values that this term cannot take."));
    fails(u("x/POP"), rest + u("x=2"), u("--at gives \"x/POP\" values that this term cannot take."));
    fails(u("x*POP"), u("x=2"),
          u("--at needs a value for \"GNPDEFL\", \"GNP\", \"UNEMP\", \"ARMED\", \"POP\", "
            "\"YEAR\" as well."));
}

TEST(FitBeyond, WhatDoesNotExistIsNull)
{
    const auto database = TestDatabase::make(TestDatabase::Sqlite);
    database->exec(u("CREATE TABLE t (y DOUBLE PRECISION, x DOUBLE PRECISION)"));
    database->exec(u("INSERT INTO t VALUES (1, 2), (3, 5)"));
    const Json fit = parsed(runProgram(
        fitArguments(database->name(), {u("--table"), u("t"), u("--response"), u("y"), u("--control"), u("x"),
                                        u("--influence"), u("--robust=hc3"), u("--at=x=3"), u("--format=json")})));
    EXPECT_EQ(fit["degreesOfFreedom"], 0);
    EXPECT_EQ(fit["inference"]["pValues"].dump(), "[null,null]");
    EXPECT_TRUE(fit["diagnostics"]["white"].is_null());
    EXPECT_TRUE(fit["diagnostics"]["press"].is_null());
    EXPECT_EQ(fit["robust"]["standardErrors"].dump(), "[null,null]");
    EXPECT_TRUE(fit["predictions"][0]["standardError"].is_null());
    EXPECT_NEAR(fit["predictions"][0]["value"].get<double>(), 5.0 / 3, 1e-14);
}

TEST(FitBeyond, TheObservationsAreWrittenWithEveryDigit)
{
    const QTemporaryDir directory;
    const Outcome run = runProgram(
        airqualityArguments({u("--save-observations"), u("o.csv"), u("--influence"), u("--format"), u("json")}),
        directory.path());
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    const Json fit = parsed(run);
    const QStringList lines = linesOf(directory.filePath(u("o.csv")));
    ASSERT_EQ(lines.size(), 118);
    EXPECT_EQ(lines[117], QString()) << "the last line is ended";
    EXPECT_EQ(lines[0], u("record,Ln(Ozone),Temp,1/Wind,fitted,residual,leverage,standardizedResidual,"
                          "studentizedResidual,cook,dffits"));
    for (int i = 0; i < 116; ++i) {
        const QStringList cells = lines[i + 1].split(u',');
        ASSERT_EQ(cells.size(), 11);
        EXPECT_EQ(cells[0].toInt(), fit["influence"]["record"][i].get<int>());
        EXPECT_EQ(cells[4].toDouble(), fit["fitted"][i].get<double>());
        EXPECT_EQ(cells[5].toDouble(), fit["residuals"][i].get<double>());
        int column = 6;
        for (const char *name : {"leverage", "standardizedResiduals", "studentizedResiduals", "cook", "dffits"})
            EXPECT_EQ(cells[column++].toDouble(), fit["influence"][name][i].get<double>()) << name;
    }
    EXPECT_FALSE(parsed(runProgram(airqualityArguments({u("--save-observations"), u("o.csv"), u("--format=json")}),
                                   directory.path()))
                     .contains("influence"));
    const Outcome nowhere =
        runProgram(airqualityArguments({u("--save-observations"), u("no/o.csv")}), directory.path());
    EXPECT_EQ(nowhere.status, 3);
    EXPECT_EQ(nowhere.err, u("nuvostat: Cannot write \"no/o.csv\": No such file or directory.\n"));
}

TEST(FitBeyond, ThePlotsHaveAxesAndTheSizeThatIsAskedFor)
{
    const QTemporaryDir directory;
    EXPECT_EQ(runProgram(airqualityArguments({u("--save-plots"), u("p")}), directory.path()).status, 0);
    const QStringList names{u("added-x1"),
                            u("added-x2"),
                            u("normal-quantiles"),
                            u("observed-fitted"),
                            u("residual-distribution"),
                            u("residual-fitted"),
                            u("residual-leverage"),
                            u("residual-order"),
                            u("residual-x1"),
                            u("residual-x2"),
                            u("response-x1"),
                            u("response-x2"),
                            u("scale-location")};
    const QDir plots(directory.filePath(u("p")));
    EXPECT_EQ(plots.entryList(QDir::Files, QDir::Name),
              QStringList(names).replaceInStrings(QRegularExpression(u("$")), u(".png")));
    for (const QString &name : plots.entryList(QDir::Files))
        EXPECT_EQ(QImage(plots.filePath(name)).size(), QSize(800, 600)) << name.toStdString();
    EXPECT_EQ(
        runProgram(airqualityArguments({u("--save-plots"), u("q"), u("--plot-format=svg"), u("--plot-size=640x480")}),
                   directory.path())
            .status,
        0);
    EXPECT_EQ(QDir(directory.filePath(u("q"))).entryList(QDir::Files, QDir::Name),
              QStringList(names).replaceInStrings(QRegularExpression(u("$")), u(".svg")));
    EXPECT_TRUE(linesOf(directory.filePath(u("q/response-x1.svg"))).join(u'\n').contains(u("Ln(Ozone)")));
}

} // namespace
