// SPDX-License-Identifier: MIT
#include "app/Program.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

// select under the rule Textbook: what it prints and what it refuses.

namespace {

constexpr const char *hald[] = {"7,26,6,60,78.5",  "1,29,15,52,74.3",  "11,56,8,20,104.3", "11,31,8,47,87.6",
                                "7,52,6,33,95.9",  "11,55,9,22,109.2", "3,71,17,6,102.7",  "1,31,22,44,72.5",
                                "2,54,18,22,93.1", "21,47,4,26,115.9", "1,40,23,34,83.8",  "11,66,9,12,113.3",
                                "10,68,8,12,109.4"};

using Keys = std::vector<std::string>;

class SelectTextbook : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    void SetUp() override
    {
        database_->exec(u("CREATE TABLE \"Cement\" (a INTEGER, b INTEGER, c INTEGER, d INTEGER, "
                          "y DOUBLE PRECISION, id INTEGER PRIMARY KEY)"));
        int id = 0;
        for (const char *row : hald)
            database_->exec(u("INSERT INTO \"Cement\" VALUES (%1, %2)").arg(u(row)).arg(++id));
    }
    Outcome run(const char *method, const char *options, const char *controls = "a b c d")
    {
        QStringList arguments{u("select"),  u(method),   u("--database"), database_->name(),
                              u("--table"), u("Cement"), u("--response"), u("y")};
        for (const QString &control : u(controls).split(u' '))
            arguments += {u("--control"), control};
        return runProgram(arguments + u(options).split(u' ', Qt::SkipEmptyParts));
    }
    Json runJson(const char *method, const char *options, const char *controls = "a b c d")
    {
        return parsed(run(method, (QByteArray(options) + " --format json").constData(), controls));
    }
    /// Status 2 and this sentence.
    void expectRefused(const char *method, const char *options, const char *sentence)
    {
        SCOPED_TRACE(options);
        const Outcome outcome = run(method, options);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.out, QString());
        EXPECT_TRUE(outcome.err.contains(u(sentence))) << outcome.err.toStdString();
    }

    std::unique_ptr<TestDatabase> database_ = TestDatabase::make(GetParam());
};

INSTANTIATE_TEST_SUITE_P(, SelectTextbook, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         [](const auto &backend) { return backendName(backend.param); });

/// "+d +a .": actions and terms of a path.
QString walk(const Json &path)
{
    QStringList steps;
    for (const Json &step : path)
        steps += step["action"] == "end" ? u(".") : (step["action"] == "add" ? u("+") : u("-")) + text(step["term"]);
    return steps.join(u' ');
}

} // namespace

TEST_P(SelectTextbook, ThePathHasItsMembersInOrder)
{
    const Json json = runJson("stepwise", "--rule textbook");
    EXPECT_EQ(keys(json), (Keys{"method", "report", "steps", "ended", "path", "selected", "messages"}));
    EXPECT_EQ(json["ended"], "converged");
    EXPECT_EQ(walk(json["path"]), u("+d +a +b -d ."));
    const Json &first = json["path"][0];
    EXPECT_EQ(keys(first), (Keys{"action", "term", "f", "pValue", "sse", "candidates"}));
    EXPECT_NEAR(first["f"].get<double>(), 22.79852, 1e-5);
    EXPECT_NEAR(first["pValue"].get<double>(), 0.00057623, 1e-8);
    EXPECT_NEAR(first["sse"].get<double>(), 883.86692, 1e-5);
    ASSERT_EQ(first["candidates"].size(), 4U);
    EXPECT_EQ(keys(first["candidates"][0]), (Keys{"term", "f", "pValue"}));
    EXPECT_EQ(first["candidates"][3]["f"], first["f"]) << "the one chosen is among them";
    const Json &end = json["path"][4];
    EXPECT_EQ(keys(end), (Keys{"action", "candidates"}));
    ASSERT_EQ(end["candidates"].size(), 4U);
    EXPECT_EQ(end["candidates"][0]["term"], "c") << "those that could enter, then those that could leave";
    EXPECT_EQ(end["candidates"][2]["term"], "a");
    EXPECT_EQ(json["selected"]["terms"].dump(), R"(["a","b"])");
    EXPECT_EQ(json["messages"].size(), 1U);
    EXPECT_TRUE(text(json["messages"][0]["text"]).contains(u("Left: a, b.")));
    EXPECT_EQ(run("stepwise", "--rule textbook --format json").err, QString()) << "the box is the report's own";
}

TEST_P(SelectTextbook, AFigureThatDoesNotExistIsNull)
{
    database_->exec(u("UPDATE \"Cement\" SET c = a + b, y = 2 * a - b"));
    const Json json = runJson("forward", "--rule textbook");
    EXPECT_EQ(json["path"].back()["action"], "end");
    for (const Json &candidate : json["path"].back()["candidates"]) {
        EXPECT_TRUE(candidate["f"].is_null());
        EXPECT_TRUE(candidate["pValue"].is_null());
    }
    const Json optimal = runJson("optimal", "--sizes 1");
    EXPECT_EQ(runJson("optimal", "--sizes 1000000")["bySize"].size(), 15U) << "all there are";
    EXPECT_EQ(optimal["selected"]["sse"], 0);
    EXPECT_TRUE(optimal["bySize"][1]["aic"].is_null()) << "of an exact fit";
    EXPECT_EQ(optimal["bySize"][1].count("dependent"), 0U);
    EXPECT_EQ(optimal["bySize"][3]["dependent"], true);
    EXPECT_TRUE(optimal["bySize"][3]["cp"].is_null());
}

TEST_P(SelectTextbook, TheModelsBySizeHaveTheirMembersInOrder)
{
    const Json json = runJson("optimal", "--criterion bic --sizes 3");
    EXPECT_EQ(keys(json),
              (Keys{"method", "report", "steps", "ended", "modelCount", "models", "bySize", "selected", "messages"}));
    ASSERT_EQ(json["bySize"].size(), 10U);
    EXPECT_EQ(json["modelCount"], 10);
    EXPECT_EQ(json["models"].size(), 10U);
    EXPECT_EQ(keys(json["bySize"][0]), (Keys{"size", "terms", "sse", "rSquared", "adjustedRSquared", "sSquared", "f",
                                             "cp", "aic", "bic", "press"}));
    EXPECT_EQ(json["bySize"][3]["terms"].dump(), R"(["a","b"])");
    // R: leaps and lm().
    EXPECT_NEAR(json["bySize"][3]["cp"].get<double>(), 2.678242, 1e-6);
    EXPECT_NEAR(json["bySize"][3]["aic"].get<double>(), 64.312393, 1e-6);
    EXPECT_NEAR(json["bySize"][3]["bic"].get<double>(), 66.572190, 1e-6);
    EXPECT_NEAR(json["bySize"][3]["press"].get<double>(), 93.882546, 1e-6);
    EXPECT_EQ(json["models"][3]["rSquared"], json["bySize"][3]["rSquared"]);
    EXPECT_EQ(json["selected"]["terms"].dump(), R"(["a","b"])");
}

TEST_P(SelectTextbook, EachCriterionLeavesItsModel)
{
    const auto chosen = [this](const char *options) {
        return runJson("optimal", options)["selected"]["terms"].dump();
    };
    EXPECT_EQ(chosen("--rule textbook"), R"(["a","b"])") << "Cp";
    EXPECT_EQ(chosen("--sizes 1"), R"(["a","b"])") << "Cp";
    EXPECT_EQ(chosen("--criterion cp"), R"(["a","b"])");
    EXPECT_EQ(chosen("--criterion aic"), R"(["a","b","d"])");
    EXPECT_EQ(chosen("--criterion bic"), R"(["a","b"])");
    EXPECT_EQ(chosen("--criterion adj-r2"), R"(["a","b","d"])");
    EXPECT_EQ(chosen("--criterion press"), R"(["a","b","d"])");
    EXPECT_EQ(chosen("--criterion press --rule textbook --sizes 2"), R"(["a","b","d"])");
}

TEST_P(SelectTextbook, AnyModelOfTheListCanBeApplied)
{
    const Json json = runJson("optimal", "--criterion bic --sizes 2 --apply 4");
    EXPECT_EQ(json["selected"]["terms"], json["bySize"][3]["terms"]);
    EXPECT_NEAR(json["selected"]["sse"].get<double>(), json["bySize"][3]["sse"].get<double>(), 1e-9);
    EXPECT_TRUE(text(json["report"]).contains(u("(number 4 of the list, put in the place of the chosen")));
    expectRefused("optimal", "--criterion bic --apply 5", "--apply 5: There is no model 5 in the choice: it has 4.");
    expectRefused("optimal", "--criterion bic --apply 0", "--apply");
    // Of the method as written as well.
    const Json written = runJson("optimal", "--criterion min-s2 --models 3 --apply 2");
    EXPECT_EQ(written["selected"]["mse"], written["models"][1]["sSquared"]);
    expectRefused("optimal", "--models 3 --apply 9", "--apply 9: There is no model 9 in the list: it has");
}

TEST_P(SelectTextbook, ThresholdsCanBeProbabilities)
{
    EXPECT_EQ(walk(runJson("forward", "--rule textbook --p 0.05")["path"]), u("+d +a ."));
    EXPECT_EQ(walk(runJson("forward", "--rule textbook --p 0.052")["path"]), u("+d +a +b ."));
    EXPECT_EQ(walk(runJson("backward", "--rule textbook --p 0.1")["path"]), u("-c -d ."));
    EXPECT_EQ(walk(runJson("stepwise", "--rule textbook --p-in 0.15 --p-out 0.3")["path"]), u("+d +a +b ."));
    EXPECT_EQ(walk(runJson("stepwise", "--rule textbook --p-in 0.15 --p-out 0.01")["path"]), u("+d +a +b -d ."));
    EXPECT_EQ(walk(runJson("stepwise", "--rule textbook --p-in 0.15")["path"]), u("+d +a +b -d ."));
    EXPECT_EQ(walk(runJson("stepwise", "--rule textbook --f-in 3 --p-out 0.3")["path"]), u("+d +a +b ."));
}

TEST_P(SelectTextbook, AnFTableGivesTheThresholds)
{
    ASSERT_EQ(runProgram({u("ftable"), u("--database"), database_->name(), u("--table"), u("F"), u("--denominators"),
                          u("20")})
                  .status,
              0);
    EXPECT_EQ(walk(runJson("forward", "--rule textbook --f-table F")["path"]), u("+d +a ."));
    EXPECT_EQ(walk(runJson("backward", "--rule textbook --f-table F")["path"]), u("-c -d ."));
    EXPECT_EQ(walk(runJson("stepwise", "--rule textbook --f-table F")["path"]), u("+d +a ."));
    for (const char *rule : {"stepwise --p-in", "stepwise --p-out", "forward --p", "backward --p"}) {
        const QStringList words = u(rule).split(u' ');
        expectRefused(words[0].toUtf8().constData(),
                      (u("--rule textbook --f-table F %1 0.05").arg(words[1])).toUtf8().constData(),
                      "and --f-table exclude each other.");
    }
    database_->exec(u("DELETE FROM \"F\" WHERE \"Denominator\" = 9"));
    const Outcome missing = run("forward", "--rule textbook --f-table F");
    EXPECT_EQ(missing.status, 3);
    EXPECT_TRUE(missing.err.contains(u("has no value \"95 Percent\" for 1 and 9 degrees of freedom")))
        << missing.err.toStdString();
}

TEST_P(SelectTextbook, WhatIsNoProbabilityIsStatus2)
{
    for (const char *option : {"--p 0", "--p 1", "--p 1.5", "--p -0.1", "--p nan"})
        expectRefused("forward", (QByteArray("--rule textbook ") + option).constData(),
                      "--p is a probability, more than 0 and less than 1, not ");
    expectRefused("backward", "--rule textbook --p abc", "--p is a number, not \"abc\".");
    expectRefused("stepwise", "--rule textbook --p-in 1", "--p-in is a probability");
    expectRefused("stepwise", "--rule textbook --p-in 0.05 --p-out 0", "--p-out is a probability");
}

TEST_P(SelectTextbook, OptionsThatContradictEachOtherAreStatus2)
{
    expectRefused("forward", "--p 0.05", "--p belongs to --rule textbook.");
    expectRefused("forward", "--rule written --p 0.05", "--p belongs to --rule textbook.");
    expectRefused("stepwise", "--p-out 0.05", "--p-out belongs to --rule textbook.");
    expectRefused("forward", "--rule textbook --p 0.05 --f 4", "--p and --f exclude each other.");
    expectRefused("stepwise", "--rule textbook --p-in 0.05 --f-in 4", "--p-in and --f-in exclude each other.");
    expectRefused("stepwise", "--rule textbook --p-in 0.05 --f-percent 5",
                  "--p-in and --f-percent exclude each other.");
    expectRefused("stepwise", "--rule textbook --p-out 0.05 --f-out 4", "--p-out and --f-out exclude each other.");
    expectRefused("stepwise", "--rule textbook --p-in 0.05 --f-out 4", "--p-in without --p-out is the threshold");
    expectRefused("optimal", "--rule written --criterion bic", "--criterion bic compares all models on one sample");
    expectRefused("optimal", "--rule written --sizes 2", "--sizes compares all models on one sample");
    expectRefused("optimal", "--criterion nondominated --sizes 2", "names no best model");
    expectRefused("optimal", "--sizes 0", "--sizes");
    expectRefused("optimal", "--p 0.05", "--p belongs to backward and forward, not to optimal.");
    expectRefused("forward", "--sizes 2", "--sizes belongs to optimal, not to forward.");
    expectRefused("forward", "--rule book", "--rule is written or textbook, not \"book\".");
    expectRefused("forward", "--rule textbook --sample own", "--sample");
}

TEST_P(SelectTextbook, AllCandidatesShareOneSampleAndTheTextSaysSo)
{
    database_->exec(u("UPDATE \"Cement\" SET c = NULL WHERE id = 4"));
    const Json json = runJson("stepwise", "--rule textbook");
    EXPECT_EQ(json["selected"]["terms"].dump(), R"(["a","b"])");
    EXPECT_EQ(json["selected"]["observations"], 12) << "c is not in the model, and its null counts all the same";
    EXPECT_EQ(json["selected"]["records"]["skipped"], 1);
    const Outcome printed = run("stepwise", "--rule textbook");
    EXPECT_TRUE(printed.out.startsWith(u("Adding d: F = ")));
    EXPECT_TRUE(
        printed.out.contains(u("\n* Nulls and impossible values took 1 of 13 records away from all candidates (c 1\n"
                               "  null). ")))
        << printed.out.toStdString();
    EXPECT_TRUE(printed.out.contains(u("\nLinear regression of y on a, b\n")));
}

TEST_P(SelectTextbook, NoRecordForAllCandidatesIsStatus1)
{
    database_->exec(u("UPDATE \"Cement\" SET c = NULL"));
    for (const char *method : {"optimal", "stepwise", "backward", "forward"}) {
        const Outcome outcome = run(method, "--rule textbook --format json");
        EXPECT_EQ(outcome.status, 1);
        const Json json = parsed(outcome);
        EXPECT_EQ(json[u(method) == u"optimal" ? "bySize" : "path"], Json::array());
        EXPECT_EQ(json["selected"]["loaded"], false);
        EXPECT_TRUE(text(json["report"]).contains(u("None: no record can be used by every variable.")));
    }
}

TEST_P(SelectTextbook, TheHelpNamesTheOptions)
{
    const QString help = runProgram({u("select"), u("--help")}).out;
    for (const char *option : {"--rule", "--p-in", "--p-out", "--p ", "--sizes", "--apply", "adj-r2"})
        EXPECT_TRUE(help.contains(u(option))) << option;
}
