// SPDX-License-Identifier: MIT
#include "app/Program.h"
#include "engine/Mlrtable.h"
#include "select/Bkmain.h"
#include "select/Cvmain.h"
#include "select/Fwdmain.h"
#include "select/Stepmain.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <QFile>

#include <bit>
#include <csignal>

namespace {

constexpr const char *methods[] = {"optimal", "stepwise", "backward", "forward"};
// Hald's data: heat of thirteen cements by the composition of their clinkers.
constexpr const char *cement[] = {"7,26,6,60,78.5",  "1,29,15,52,74.3",  "11,56,8,20,104.3", "11,31,8,47,87.6",
                                  "7,52,6,33,95.9",  "11,55,9,22,109.2", "3,71,17,6,102.7",  "1,31,22,44,72.5",
                                  "2,54,18,22,93.1", "21,47,4,26,115.9", "1,40,23,34,83.8",  "11,66,9,12,113.3",
                                  "10,68,8,12,109.4"};
constexpr const char *components[] = {"Aluminate", "Silicate", "Ferrite", "Belite"};

/// Runs on each kind of database, with the table Cement and the table F of F quantiles.
class Select : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    void SetUp() override
    {
        database_->exec(
            u("CREATE TABLE \"Cement\" (\"Aluminate\" INTEGER, \"Silicate\" INTEGER, \"Ferrite\" INTEGER, "
              "\"Belite\" INTEGER, \"Heat\" DOUBLE PRECISION, \"Mix\" INTEGER PRIMARY KEY)"));
        int mix = 0;
        for (const char *row : cement)
            database_->exec(u("INSERT INTO \"Cement\" VALUES (%1, %2)").arg(u(row)).arg(++mix));
    }

    void MakeFTable()
    {
        EXPECT_EQ(runProgram({u("ftable"), u("--database"), database_->name(), u("--table"), u("F"),
                              u("--denominators"), u("20")})
                      .status,
                  0);
    }

    QStringList Arguments(const char *method, const QStringList &more = {}) const
    {
        QStringList arguments{u("select"),  u(method),   u("--database"), database_->name(),
                              u("--table"), u("Cement"), u("--response"), u("Heat")};
        for (const char *control : components)
            arguments += {u("--control"), u(control)};
        return arguments + more;
    }

    Outcome Run(const char *method, const QStringList &more = {}) const
    {
        return runProgram(Arguments(method, more));
    }
    Json RunJson(const char *method, const QStringList &more = {}) const
    {
        return parsed(Run(method, more + QStringList{u("--format=json")}));
    }
    /// The terms of the model that is chosen.
    QString Chosen(const char *method, const QStringList &more = {}) const
    {
        QStringList terms;
        const Json json = RunJson(method, more);
        for (const Json &term : json["selected"]["terms"])
            terms.append(text(term));
        return terms.join(u' ');
    }

    std::unique_ptr<TestDatabase> database_ = TestDatabase::make(GetParam());
};

INSTANTIATE_TEST_SUITE_P(, Select, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         [](const auto &backend) { return backendName(backend.param); });

TEST_P(Select, StepwiseAsText)
{
    EXPECT_TRUE(withoutTimes(Run("stepwise").out)
                    .contains(u("Processing Time: 00:00:00\n\nLinear regression of Heat on Aluminate, Belite\n")));
    const Outcome run = Run("stepwise", {u("--description"), u("Heat of hardening"), u("--format=report")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, QString());
    EXPECT_EQ(withoutTimes(run.out), u(R"(Added Variable Belite
Added Variable Aluminate
Checking included variables...

CORVANE OUTPUT REPORT
Heat of hardening

Stepwise Regression Adds Variable(s):

   Aluminate
   Belite


Processing Time: 00:00:00

Multiple Regression Analysis Report                          2000-01-01 00:00:00
Data: Cement
Heat of hardening
Number of observations: 13

Dependent Variable:    Mean:  Std. Dev. (Data):
      Y = Heat       95.4231            15.0437
Independent Variables:
     X1 = Aluminate   7.4615             5.8824
     X2 = Belite     30.0000            16.7382

                      Coefficients:  Std. Err. (Coeff):  t* Values
     B0:  (constant)       103.0974              2.1240    48.5396
     B1:  Aluminate          1.4400              0.1384    10.4031
     B2:  Belite            -0.6140              0.0486   -12.6212

Sum of Squares                              Degrees of Freedom:
    Regression SSR : 2641.001                   Regression 2
    Residual   SSE : 74.762                     Residual 10
    Total      SST : 2715.763                   Total 12

s² : 7.476            R² : 0.972            F Statistic(2,10): 176.627

Records: 13 in the dataset, 13 read, 13 used, 0 skipped.
)"));
}

TEST_P(Select, TheJsonHasItsMembersInOrder)
{
    const Json fit =
        parsed(runProgram({u("fit"), u("--database"), database_->name(), u("--table"), u("Cement"), u("--response"),
                           u("Heat"), u("--control"), u("Belite"), u("--format=json")}));
    std::vector<std::string> ofFit = keys(fit);
    ASSERT_EQ(ofFit.back(), "messages");
    ofFit.pop_back();
    for (const char *method : methods) {
        SCOPED_TRACE(method);
        const Outcome run = Run(method, {u("--format=json")});
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.err, QString());
        const Json json = parsed(run);
        std::vector<std::string> expected{"method", "report", "steps", "ended"};
        if (u(method) == u"optimal")
            expected.insert(expected.end(), {"modelCount", "models"});
        expected.insert(expected.end(), {"selected", "messages"});
        EXPECT_EQ(keys(json), expected);
        EXPECT_EQ(json["method"], method);
        EXPECT_EQ(json["ended"], "converged");
        EXPECT_TRUE(text(json["report"]).startsWith(u("CORVANE OUTPUT REPORT\n\r\n\r\n\r")));
        EXPECT_EQ(keys(json["selected"]), ofFit);
        EXPECT_EQ(json["selected"]["loaded"], true);
        EXPECT_EQ(json["selected"]["computed"], true);
        // The report's own box is among the messages, and not on standard error.
        ASSERT_EQ(json["messages"].size(), 1U);
        EXPECT_EQ(json["messages"][0]["type"], "information");
        EXPECT_EQ(json["messages"][0]["text"], json["report"]);
    }
}

TEST_P(Select, ModelsAreListedBestFirst)
{
    const Json json = RunJson("optimal", {u("--criterion=min-s2"), u("--models=3")});
    EXPECT_EQ(json["modelCount"], 3);
    ASSERT_EQ(json["models"].size(), 3U);
    double before = 0;
    for (const Json &model : json["models"]) {
        EXPECT_EQ(keys(model), (std::vector<std::string>{"transformations", "f", "rSquared", "sSquared"}));
        EXPECT_EQ(model["transformations"].size(), 10U);
        EXPECT_GE(model["sSquared"].get<double>(), before);
        before = model["sSquared"].get<double>();
    }
    EXPECT_EQ(
        json["models"][0]["transformations"].dump(),
        R"(["None","None","Undefined","None","Undefined","Undefined","Undefined","Undefined","Undefined","Undefined"])");
    EXPECT_NEAR(json["models"][0]["sSquared"].get<double>(), 5.3303, 5e-5);
    EXPECT_EQ(json["selected"]["mse"], json["models"][0]["sSquared"]);
    EXPECT_EQ(json["selected"]["terms"].dump(), R"(["Aluminate","Silicate","Belite"])");
    EXPECT_TRUE(text(json["report"]).contains(u("The 3 top models were saved.")));
    EXPECT_EQ(json["steps"][0], "(R)^2 = 0.6745,  (s)^2 = 80.3515.");
    // 0 is ignored; above 20 counts as 20, and there are 15 subsets.
    EXPECT_EQ(RunJson("optimal", {u("--models"), u("0")})["modelCount"], 1);
    EXPECT_EQ(RunJson("optimal", {u("--models"), u("100000")})["modelCount"], 15);
    EXPECT_NEAR(
        RunJson("optimal", {u("--criterion"), u("max-f"), u("--models"), u("2")})["selected"]["f"].get<double>(),
        229.5037, 5e-5);
}

TEST_P(Select, EveryFigureIsTheComponentsOwn)
{
    MakeFTable();
    TTable fTable;
    fTable.SetDatabaseName(database_->name());
    fTable.SetTableName(u("F"));
    fTable.Open();
    for (const bool withTable : {false, true}) {
        for (const char *name : methods) {
            SCOPED_TRACE(name);
            TMLRTable table;
            table.SetDatabaseName(database_->name());
            table.SetTableName(u("Cement"));
            table.ResponseVarY().SetField(u("Heat"));
            int k = 0;
            for (const char *control : components) {
                table.ControlVar(++k).SetField1(u(control));
                table.ControlVar(k).SetTransformation(u("None"));
            }
            table.Open();
            ASSERT_TRUE(table.ReLoad());
            table.Execute();
            std::unique_ptr<TCorvane> method;
            if (u(name) == u"optimal") {
                method = std::make_unique<TOptimizeMLR>();
            } else {
                std::unique_ptr<TPartialFSearch> search;
                if (u(name) == u"stepwise") {
                    auto stepwise = std::make_unique<TStepWiseMLR>();
                    stepwise->SetFPercent(u("10 Percent"));
                    search = std::move(stepwise);
                } else if (u(name) == u"backward") {
                    search = std::make_unique<TBackElimMLR>();
                } else {
                    search = std::make_unique<TFwdSelectMLR>();
                }
                if (withTable)
                    search->SetFDistTable(&fTable);
                method = std::move(search);
            }
            method->SetTable(&table);
            const TMessageHandler before =
                SetMessageHandler([](const QString &, TMsgDlgType, unsigned, int) { return int(mrOk); });
            method->Run();
            SetMessageHandler(before);

            QStringList more;
            if (withTable && u(name) != u"optimal")
                more += {u("--f-table"), u("F")};
            if (u(name) == u"stepwise")
                more += {u("--f-percent"), u("10 Percent")};
            const Json json = RunJson(name, more);
            EXPECT_EQ(withoutTimes(text(json["report"])), withoutTimes(method->Report()));
            QStringList steps;
            for (const Json &step : json["steps"])
                steps.append(text(step));
            EXPECT_EQ(steps, method->Steps());
            ASSERT_EQ(json["selected"]["controls"], table.GetNumVars());
            for (int j = 0; j <= table.GetNumVars(); ++j)
                EXPECT_EQ(std::bit_cast<std::uint64_t>(json["selected"]["coefficients"][size_t(j)].get<double>()),
                          std::bit_cast<std::uint64_t>(table.Getb(j)));
        }
    }
}

TEST_P(Select, AQueryGivesWhatItsTableGives)
{
    for (const char *method : methods) {
        SCOPED_TRACE(method);
        QStringList arguments = Arguments(method, {u("--format=json")});
        arguments[4] = u("--sql");
        arguments[5] = u("SELECT * FROM \"Cement\" ORDER BY \"Mix\"");
        const Json query = parsed(runProgram(arguments));
        const Json table = RunJson(method);
        EXPECT_EQ(query["selected"]["component"], "query");
        EXPECT_EQ(query["steps"], table["steps"]);
        for (const char *figure : {"coefficients", "standardErrors", "sse", "rSquared", "f", "terms"})
            EXPECT_EQ(query["selected"][figure], table["selected"][figure]) << figure;
    }
}

TEST_P(Select, ThresholdsGoToTheProperties)
{
    EXPECT_EQ(Chosen("stepwise"), u("Aluminate Belite"));
    EXPECT_EQ(Chosen("stepwise", {u("--f-in"), u("50")}), QString());  // Belite enters with 22.8
    EXPECT_EQ(Chosen("stepwise", {u("--f-in"), u("-60")}), QString()); // the absolute value
    EXPECT_EQ(Chosen("stepwise", {u("--f-in=-2e1")}), u("Aluminate Belite"));
    EXPECT_EQ(Chosen("forward", {u("--f"), u("23")}), QString());
    EXPECT_EQ(Chosen("forward", {u("--f"), u("1")}), u("Aluminate Silicate Belite"));
    EXPECT_EQ(Chosen("backward", {u("--f"), u("9")}), u("Aluminate Silicate Ferrite Belite"));
    EXPECT_EQ(Chosen("backward", {u("--f"), u("-7")}), u("Aluminate Silicate Belite"));
}

TEST_P(Select, TheFTableGivesTheThresholds)
{
    MakeFTable();
    const QStringList table{u("--f-table"), u("F")};
    // No fit at all passes 4e5, and the table says otherwise.
    EXPECT_EQ(Chosen("forward", {u("--f"), u("4e5")}), QString());
    EXPECT_EQ(Chosen("forward", table + QStringList{u("--f"), u("4e5")}), u("Aluminate Belite"));
    const QStringList stepwise{u("--f-in"), u("4e5"), u("--f-out"), u("4e5")};
    EXPECT_EQ(Chosen("stepwise", table + stepwise + QStringList{u("--f-percent"), u("5 Percent")}),
              u("Aluminate Belite"));
    // An unknown column makes the look-up fail, and then FOutDefault stands in.
    EXPECT_EQ(Chosen("stepwise", table + QStringList{u("--f-percent"), u("7 Percent"), u("--f-out"), u("4e5")}),
              QString());
    EXPECT_EQ(Chosen("stepwise", table + QStringList{u("--f-percent"), u("7 Percent"), u("--f-in"), u("4e5"),
                                                     u("--f-out"), u("10")}),
              u("Aluminate Belite"));
}

TEST_P(Select, AnFTableThatIsMissingIsStatus3)
{
    for (const char *method : {"stepwise", "backward", "forward"}) {
        const Outcome run = Run(method, {u("--f-table"), u("Nope"), u("--format=json")});
        EXPECT_EQ(run.status, 3);
        EXPECT_TRUE(run.err.startsWith(u("nuvostat: ")) && run.err.contains(u("\"Nope\""))) << run.err.toStdString();
        EXPECT_EQ(run.err.count(u'\n'), 1);
        EXPECT_EQ(keys(parsed(run)), std::vector<std::string>{"error"});
    }
}

TEST_P(Select, ASearchThatComesBackIsEndedAndSaysSo)
{
    // Whatever enters is taken out again.
    const Outcome run = Run("stepwise", {u("--f-in=1"), u("--f-out=1000"), u("--format=json")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, u("warning: The search came back to a model that it had already been at and was ended.\n"));
    const Json json = parsed(run);
    EXPECT_EQ(json["ended"], "repeats");
    ASSERT_EQ(json["messages"].size(), 2U);
    EXPECT_EQ(json["messages"][0]["type"], "warning");
    EXPECT_EQ(json["messages"][1]["text"], json["report"]);
}

TEST_P(Select, NothingChosenIsAModelWithoutVariables)
{
    const Outcome run = Run("forward", {u("--f"), u("1000"), u("--format=json")});
    EXPECT_EQ(run.status, 0);
    const Json json = parsed(run);
    EXPECT_EQ(json["selected"]["loaded"], true);
    EXPECT_EQ(json["selected"]["controls"], 0);
    EXPECT_EQ(json["selected"]["coefficients"].size(), 1U);
}

TEST_P(Select, NothingLoadedAtTheEndIsStatus1)
{
    database_->exec(u("UPDATE \"Cement\" SET \"Heat\" = NULL"));
    for (const char *method : methods) {
        SCOPED_TRACE(method);
        const Outcome run = Run(method, {u("--format=json")});
        EXPECT_EQ(run.status, 1);
        const Json json = parsed(run);
        EXPECT_EQ(json["selected"]["loaded"], false);
        EXPECT_EQ(json["selected"].count("coefficients"), 0U);
        EXPECT_GE(json["messages"].size(), 1U);
        EXPECT_TRUE(run.err.startsWith(u("error: "))) << run.err.toStdString();
        const Outcome asText = Run(method, {u("--format=report")});
        EXPECT_EQ(asText.status, 1);
        EXPECT_TRUE(asText.out.contains(u("\nData: Cement\nNo result. Records: 13 in the dataset, 13 read, 0 used")))
            << asText.out.toStdString();
    }
}

TEST_P(Select, AFirstLoadThatFailsDoesNotKeepTheMethodFromRunning)
{
    // With all variables there is no usable record; without the empty one there are thirteen.
    database_->exec(u("UPDATE \"Cement\" SET \"Ferrite\" = NULL"));
    const Outcome run = Run("forward", {u("--format=json")});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(parsed(run)["selected"]["terms"].dump(), R"(["Aluminate","Belite"])");
    EXPECT_TRUE(run.err.startsWith(u("error: "))) << run.err.toStdString();
}

TEST_P(Select, WhatTheDatabaseCannotDoIsStatus3AndOneSentence)
{
    for (const char *method : methods) {
        const Outcome run = Run(method, {u("--control"), u("Nope")});
        EXPECT_EQ(run.status, 3);
        EXPECT_EQ(run.out, QString());
        EXPECT_TRUE(run.err.startsWith(u("nuvostat: ")) && run.err.contains(u("\"Nope\""))) << run.err.toStdString();
        EXPECT_EQ(run.err.count(u'\n'), 1);
    }
}

TEST_P(Select, WithoutVariablesThereIsNothingToChoose)
{
    for (const char *method : methods) {
        SCOPED_TRACE(method);
        const Outcome run = runProgram({u("select"), u(method), u("--database"), database_->name(), u("--table"),
                                        u("Cement"), u("--response"), u("Heat"), u("--format=json")});
        EXPECT_EQ(run.status, 0) << run.err.toStdString();
        EXPECT_EQ(parsed(run)["selected"]["controls"], 0);
    }
}

TEST_P(Select, AControlCanBeLeftOutInTheMiddle)
{
    const Json json = parsed(runProgram({u("select"), u("optimal"), u("--database"), database_->name(), u("--table"),
                                         u("Cement"), u("--response"), u("Heat"), u("--control="), u("--control"),
                                         u("Aluminate"), u("--control"), u("Belite"), u("--format=json")}));
    EXPECT_EQ(json["models"][0]["transformations"][0], "Undefined");
}

TEST_P(Select, AClosedPipeEndsItQuietly)
{
    QStringList quoted;
    for (const QString &argument : Arguments("optimal", {u("--models=20"), u("--format=json")}))
        quoted.append(u'\'' + argument + u'\'');
    EXPECT_EQ(runShell(u("(\"$nuvostat\" %1; echo $? >&2) | :").arg(quoted.join(u' '))).err, u("0\n"));
    const Outcome full = runShell(u("\"$nuvostat\" %1 >/dev/full").arg(quoted.join(u' ')));
    EXPECT_EQ(full.status, 3);
    EXPECT_EQ(full.err, u("nuvostat: Standard output cannot be written: No space left on device.\n"));
}

TEST_P(Select, ATraceOfTheRunCanBeHad)
{
    QStringList quoted;
    for (const QString &argument : Arguments("forward"))
        quoted.append(u'\'' + argument + u'\'');
    const Outcome run =
        runShell(u("QT_LOGGING_RULES=nuvo.select.debug=true \"$nuvostat\" %1").arg(quoted.join(u' ')));
    EXPECT_TRUE(run.err.startsWith(u("start method=forward variables=4\ncandidate pass=1 number=1 loaded=1 ")))
        << run.err.toStdString();
    EXPECT_TRUE(run.err.endsWith(u(" controls=2\n"))) << run.err.toStdString();
}

TEST_P(Select, CtrlCEndsWith130)
{
    const QString slow = u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30000000) "
                           "SELECT count(*) AS y FROM n");
    const auto process = startProgram(
        {u("select"), u("optimal"), u("--database"), database_->name(), u("--sql"), slow, u("--response"), u("y")});
    waitForSignalHandler(*process);
    ::kill(pid_t(process->processId()), SIGINT);
    const Outcome run = finish(*process);
    EXPECT_EQ(run.status, 130);
    EXPECT_EQ(run.out + run.err, QString());
}

TEST_P(Select, AProgressBarIsDrawnOnATerminalAndTakenAway)
{
    for (const char *method : methods) {
        SCOPED_TRACE(method);
        const QString select = u("\"$nuvostat\" select %1 --database %2 --table Cement --response Heat --control "
                                 "Aluminate --control Silicate --control Ferrite --control Belite")
                                   .arg(u(method), database_->name());
        EXPECT_EQ(runShell(select + u(" --progress 2>&1 >/dev/null")).out, QString());
        // script(1) runs a command on a terminal of its own.
        const QString onTerminal = u("script -qec '%1 >/dev/null' /dev/null");
        const Outcome drawn = runShell(onTerminal.arg(select + u(" --progress")));
        EXPECT_TRUE(drawn.out.contains(u("\r[########################################] 100 %")))
            << drawn.out.toStdString();
        EXPECT_TRUE(drawn.out.endsWith(u("\r\033[K")));
        EXPECT_EQ(runShell(onTerminal.arg(select)).out, QString());
    }
}

} // namespace
