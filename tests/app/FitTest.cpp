// SPDX-License-Identifier: MIT
#include "app/Fitting.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

class Fit : public Fitting
{
};

INSTANTIATE_TEST_SUITE_P(, Fit, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         [](const auto &backend) { return backendName(backend.param); });

TEST_P(Fit, RecordsThatCannotBeTransformedAreCounted)
{
    makeTable({u("3,1,2"), u("5,2,NULL"), u("7,4,1"), u("8,5,3"), u("12,7,4"), u("13,8,2")});
    const QStringList arguments{u("--table"),   u("t"), u("--response"), u("y"),
                                u("--control"), u("a"), u("--control"),  u("b")};
    const Json json = fitJson(arguments);
    EXPECT_EQ(json["records"].dump(), R"({"total":6,"read":6,"used":5,"skipped":1})");
    EXPECT_EQ(json["observations"], 5);
    EXPECT_EQ(json["degreesOfFreedom"], 2);
    EXPECT_NEAR(json["rSquared"].get<double>(), 0.99053997, 1e-8);
    EXPECT_NEAR(json["coefficients"][1].get<double>(), 1.4488550, 1e-7);
    EXPECT_TRUE(fit(arguments).out.contains(u("5 of 6 records were used, 1 could not be")));
    EXPECT_TRUE(fit(arguments + QStringList{u("--format=report")})
                    .out.contains(u("Records: 6 in the dataset, 6 read, 5 used, 1 skipped.\n")));
}

TEST_P(Fit, FilterAndOrderAreTheTables)
{
    makeTable({u("3,1,2"), u("5,2,9"), u("7,4,1"), u("8,5,3"), u("12,7,4"), u("13,8,2")});
    const QStringList arguments{u("--table"),   u("t"), u("--response"), u("y"),
                                u("--control"), u("a"), u("--filter"),   u("b < 9")};
    const Json byKey = fitJson(arguments);
    EXPECT_EQ(byKey["records"].dump(), R"({"total":5,"read":5,"used":5,"skipped":0})");
    const Json byField = fitJson(arguments + QStringList{u("--order"), u("b,id")});
    EXPECT_EQ(byField["observations"], 5);
    // b is 2, 1, 3, 4, 2 in the order of the key.
    EXPECT_EQ(byField["residuals"][0], byKey["residuals"][1]);
    EXPECT_EQ(byField["residuals"][1], byKey["residuals"][0]);
    EXPECT_EQ(byField["residuals"][2], byKey["residuals"][4]);
    EXPECT_EQ(fit(arguments + QStringList{u("--order"), u("nope")}).status, 3);
}

TEST_P(Fit, AQueryIsNamedByItsFirstLine)
{
    makeTable({u("3,1,2"), u("5,2,9"), u("7,4,1"), u("8,5,3")});
    const QString sql = u("SELECT y,\n  a AS \"a/b\"\nFROM t ORDER BY id");
    const Json json = fitJson({u("--sql"), sql, u("--response"), u("Ln(y)"), u("--control"), u("\"a/b\"/10")});
    EXPECT_EQ(json["component"], "query");
    EXPECT_EQ(json["dataset"], "SELECT y,");
    EXPECT_EQ(json["response"], "Ln(y)");
    EXPECT_EQ(json["terms"][0], "a/b/10");
    EXPECT_EQ(json["records"]["total"], 4);
}

TEST_P(Fit, EveryFormOfATermIsFitted)
{
    makeTable({u("3,1,2"), u("5,2,9"), u("7,4,1"), u("8,5,3"), u("12,7,4"), u("13,8,2"), u("11,9,5"), u("16,3,7"),
               u("18,11,6"), u("20,12,13"), u("21,15,8")});
    const Json json = fitJson({u("--table"),   u("t"),         u("--response"), u("1/(y)"),     u("--control"),
                               u("a"),         u("--control"), u("Ln(a)"),      u("--control"), u("1/a"),
                               u("--control"), u("a^1/2"),     u("--control"),  u("a^2"),       u("--control"),
                               u("b/100"),     u("--control"), u("a*b"),        u("--control"), u("a/b")});
    EXPECT_EQ(json["terms"].dump(), R"x(["a","Ln(a)","1/a","a^1/2","a^2","b/100","a*b","a/b"])x");
    EXPECT_EQ(json["response"], "1/(y)");
    EXPECT_EQ(json["observations"], 11);
    EXPECT_DOUBLE_EQ(json["xMax"][1].get<double>(), std::log(15.0));
    EXPECT_DOUBLE_EQ(json["xMax"][3].get<double>(), std::sqrt(15.0));
    EXPECT_DOUBLE_EQ(json["xMax"][4].get<double>(), 225);
    EXPECT_DOUBLE_EQ(json["xMax"][6].get<double>(), 156);
}

TEST_P(Fit, AnEmptyControlIsNoColumn)
{
    makeTable({u("3,1,2"), u("5,2,9"), u("7,4,1"), u("8,5,3")});
    const Json json =
        fitJson({u("--table"), u("t"), u("--response"), u("y"), u("--control"), QString(), u("--control"), u("a")});
    EXPECT_EQ(json["controls"], 1);
    EXPECT_EQ(json["terms"].dump(), R"(["a"])");
}

TEST_P(Fit, WhatQtWouldTakeForItsOwnIsAText)
{
    makeTable({u("3,1,2"), u("5,2,9"), u("8,4,1")});
    for (const char *option : {"-platform", "-style", "-display", "-qwindowgeometry", "-stylesheet"}) {
        const Json json = fitJson({u("--description"), u(option), u("--table"), u("t"), u("--response"), u("y")});
        EXPECT_EQ(json["description"], option);
    }
}

TEST_P(Fit, FewerRecordsThanParametersAreNoFailure)
{
    makeTable({u("3,1,2"), u("5,2,9")});
    const Outcome run = fit({u("--table"), u("t"), u("--response"), u("y"), u("--control"), u("a"), u("--control"),
                             u("b"), u("--format=json")});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.err.startsWith(u("error: There are 0 degrees of freedom.\n"))) << run.err.toStdString();
    EXPECT_EQ(parsed(run)["degreesOfFreedom"], 0);
    EXPECT_EQ(parsed(run)["loaded"], true);
}

TEST_P(Fit, WhatIsNotFiniteIsNull)
{
    makeTable({u("3,1,2"), u("5,2,9")});
    const Json json = fitJson({u("--table"), u("t"), u("--response"), u("y"), u("--control"), u("a")});
    EXPECT_TRUE(json["mse"].is_null());
    EXPECT_TRUE(json["syx"].is_null());
    EXPECT_TRUE(json["covariance"][0][0].is_null());
}

TEST_P(Fit, DependentColumnsAreNamed)
{
    makeTable({u("3,1,2"), u("5,2,9"), u("7,4,1"), u("8,5,3"), u("12,7,4"), u("13,8,2")});
    const QStringList arguments{u("--table"), u("t"),         u("--response"), u("y"),         u("--control"),
                                u("a"),       u("--control"), u("b"),          u("--control"), u("a/10")};
    EXPECT_EQ(fitJson(arguments)["dependentTerms"].dump(), R"(["a/10"])");
    EXPECT_TRUE(fit(arguments + QStringList{u("--format=report")})
                    .out.contains(u("\nLinear combinations of the columns before them: a/10.\n")));
}

TEST_P(Fit, TermsThatAreInfiniteAreNamed)
{
    makeTable({u("3,1,2"), u("5,2,0"), u("7,4,1"), u("8,5,3")});
    const QString told = u("\nInfinite or no number in some of the records used, so that no figure can be had: ");
    const QStringList data{u("--table"), u("t"), u("--response"), u("y"), u("--format=report"), u("--control")};
    EXPECT_TRUE(fit(data + QStringList{u("a/b")}).out.contains(told + u("a/b.\n")));
    EXPECT_FALSE(fit(data + QStringList{u("a")}).out.contains(told));
}

TEST_P(Fit, MoreRecordsThanARegressionTakesAreToldWhenWarningsAreOn)
{
    database_->makeNumbers(u("big"), 3000, 3);
    const QStringList arguments{u("--table"),   u("big"), u("--response"),   u("x0"),
                                u("--control"), u("x1"),  u("--format=json")};
    const Outcome quiet = fit(arguments);
    EXPECT_EQ(quiet.err, QString());
    EXPECT_EQ(parsed(quiet)["records"].dump(), R"({"total":null,"read":2500,"used":2500,"skipped":0})");
    const Outcome told = fit(arguments + QStringList{u("--warnings")});
    EXPECT_EQ(told.status, 0);
    EXPECT_EQ(
        told.err,
        u("warning: Brevant analyzes a maximum of 2500 records. There are 3000 records in in your dataset. You can "
          "use table filters to limit the number of eligible records. Loading the first 2500 "
          "records...\n"));
    EXPECT_EQ(parsed(told)["records"]["total"], 3000);
    const Json message = parsed(told)["messages"][0];
    EXPECT_EQ(message["type"], "warning");
    EXPECT_TRUE(text(message["text"]).contains(u("\n\r")));
}

TEST_P(Fit, NamesCannotSteerTheTerminal)
{
    database_->exec(u("CREATE TABLE \"t\x1b[31m\" (y INTEGER, \"a\x1b[2Jb\" INTEGER)"));
    database_->exec(u("INSERT INTO \"t\x1b[31m\" VALUES (1, 2), (2, 3), (4, 4)"));
    const Outcome run = fit({u("--table"), u("t\x1b[31m"), u("--response"), u("y"), u("--control"), u("a\x1b[2Jb"),
                             u("--description"), u("\x1b]0;x"), u("--message"), u("\x1b[1m")});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_FALSE(run.out.contains(u'\x1b'));
    EXPECT_FALSE(fit({u("--table"), u("\x1b[31m"), u("--response"), u("y")}).err.contains(u'\x1b'));
}

} // namespace
