// SPDX-License-Identifier: MIT
#include "app/Commandline.h"
#include "app/Program.h"
#include "app/Usage.h"
#include "support/Print.h"

#include <gtest/gtest.h>

namespace {

using nuvo::FitOptions;
using nuvo::ImportOptions;
using nuvo::PrintOptions;
using nuvo::RunOptions;
using nuvo::SelectOptions;

nuvo::Command parse(const std::vector<std::string> &arguments)
{
    return nuvo::parseCommandLine(arguments);
}

/// The sentence with which a command line is refused; empty when it is accepted.
QString refusal(const std::vector<std::string> &arguments)
{
    try {
        parse(arguments);
        return {};
    } catch (const nuvo::UsageError &error) {
        return error.Message();
    }
}

FitOptions fit(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), "fit");
    return std::get<FitOptions>(parse(arguments));
}

TEST(CommandLine, AFitHasItsOptions)
{
    const FitOptions options =
        fit({"--database", "demo.db",      "--table",       "Longley",  "--filter",  "a > 1",
             "--order",    "a,b",          "--response",    "y",        "--control", "x1",
             "--control",  "Ln(x2)",       "--description", "Jobs",     "--message", "Done",
             "--warnings", "--matrices",   "--progress",    "--format", "json",      "--save-report",
             "r.pdf",      "--save-plots", "plots",         "--show"});
    EXPECT_EQ(options.database, QStringLiteral("demo.db"));
    EXPECT_EQ(options.table, QStringLiteral("Longley"));
    EXPECT_FALSE(options.sql);
    EXPECT_EQ(options.filter, QStringLiteral("a > 1"));
    EXPECT_EQ(options.order, QStringLiteral("a,b"));
    EXPECT_EQ(options.response.field1, QStringLiteral("y"));
    ASSERT_EQ(options.controls.size(), 2);
    EXPECT_EQ(options.controls[1].transformation, QStringLiteral("Log"));
    EXPECT_EQ(options.description, QStringLiteral("Jobs"));
    EXPECT_EQ(options.message, QStringLiteral("Done"));
    EXPECT_TRUE(options.warnings && options.matrices && options.progress);
    EXPECT_EQ(options.format, nuvo::OutputFormat::Json);
    EXPECT_EQ(options.saveReport, QStringLiteral("r.pdf"));
    EXPECT_EQ(options.savePlots, QStringLiteral("plots"));
    EXPECT_TRUE(options.show);
}

TEST(CommandLine, WhatIsNotGivenIsOff)
{
    const FitOptions options = fit({"--database=postgresql://u@h:1/n", "--sql=SELECT 1 AS \"a=b\"", "--response=y"});
    EXPECT_EQ(options.database, QStringLiteral("postgresql://u@h:1/n"));
    EXPECT_EQ(options.sql, QStringLiteral("SELECT 1 AS \"a=b\""));
    EXPECT_FALSE(options.table);
    EXPECT_TRUE(options.controls.isEmpty());
    EXPECT_FALSE(options.warnings || options.matrices || options.progress);
    EXPECT_EQ(options.format, nuvo::OutputFormat::Text);
}

TEST(CommandLine, ValuesAreTakenAsTheyStand)
{
    const char *texts[] = {"-x",       "--table", "--control", "a,b",   "[a,b]", "{}",          "[]",
                           "x y",      " x ",     "\"a/b\"",   "=x",    "--",    "fit",         "import",
                           "\xC3\xA4", "a\nb",    "%1",        "$HOME", "\\n",   "--response=y"};
    for (const char *text : texts) {
        const FitOptions options = fit({"--database", text, "--table", text, "--response", "y", "--control", text,
                                        "--description", text, "--message", text});
        const QString expected = QString::fromUtf8(text);
        EXPECT_EQ(options.database, expected);
        EXPECT_EQ(options.table, expected);
        EXPECT_EQ(options.description, expected);
        EXPECT_EQ(options.message, expected);
        ASSERT_EQ(options.controls.size(), 1) << text;
        EXPECT_EQ(options.controls[0], nuvo::parseControl(expected));
        const std::string value(text);
        const FitOptions joined = fit({"--database=" + value, "--table=" + value, "--response=y",
                                       "--control=" + value, "--description=" + value, "--message=" + value});
        EXPECT_EQ(joined.database, expected);
        EXPECT_EQ(joined.controls, options.controls);
        EXPECT_EQ(joined.message, expected);
    }
}

TEST(CommandLine, AnEmptyControlLeavesItsPositionUndefined)
{
    for (const auto &arguments : {std::vector<std::string>{"--control", "", "--control", "X"},
                                  std::vector<std::string>{"--control=", "--control", "X"},
                                  std::vector<std::string>{"--control=", "--control=X"}}) {
        std::vector<std::string> all{"--database", "d", "--table", "t", "--response", "y"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const FitOptions options = fit(all);
        ASSERT_EQ(options.controls.size(), 2);
        EXPECT_EQ(options.controls[0].transformation, QStringLiteral("Undefined"));
        EXPECT_EQ(options.controls[1].field1, QStringLiteral("X"));
    }
    // As a value it is a text like any other.
    EXPECT_EQ(fit({"--database", "d", "--table", "t", "--response", "y", "--description", "--control="}).description,
              QStringLiteral("--control="));
    EXPECT_EQ(fit({"--database", "d", "--table", "t", "--response", "y", "--description="}).description, QString());
}

TEST(CommandLine, AnImportHasItsOptions)
{
    const auto options = std::get<ImportOptions>(parse({"import", "a.csv", "--database", "d", "--table", "t"}));
    EXPECT_EQ(options.csv.file, QStringLiteral("a.csv"));
    EXPECT_EQ(options.database, QStringLiteral("d"));
    EXPECT_EQ(options.table, QStringLiteral("t"));
    EXPECT_FALSE(options.replace);
    const auto named =
        std::get<ImportOptions>(parse({"import", "--database", "d", "--table", "t", "--replace", "--", "-x.csv"}));
    EXPECT_EQ(named.csv.file, QStringLiteral("-x.csv"));
    EXPECT_TRUE(named.replace);
    EXPECT_EQ(std::get<ImportOptions>(parse({"import", "fit", "--database", "d", "--table", "t"})).csv.file,
              QStringLiteral("fit"));
}

SelectOptions select(const char *method, const std::vector<std::string> &more)
{
    std::vector<std::string> arguments{"select", method, "--database", "d", "--table", "t", "--response", "y"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return std::get<SelectOptions>(parse(arguments));
}

QString selectRefusal(const char *method, const std::vector<std::string> &more)
{
    std::vector<std::string> arguments{"select", method, "--database", "d", "--table", "t", "--response", "y"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return refusal(arguments).remove(QStringLiteral(" See \"nuvostat select --help\"."));
}

TEST(CommandLine, ASelectionHasItsOptions)
{
    using Method = SelectOptions::Method;
    const SelectOptions optimal =
        select("optimal", {"--control", "a", "--control", "Ln(b)", "--criterion", "max-f", "--models", "5",
                           "--description", "Jobs", "--progress", "--format=json"});
    EXPECT_EQ(optimal.method, Method::Optimal);
    EXPECT_EQ(optimal.database, QStringLiteral("d"));
    EXPECT_EQ(optimal.table, QStringLiteral("t"));
    ASSERT_EQ(optimal.controls.size(), 2);
    EXPECT_EQ(optimal.controls[1].transformation, QStringLiteral("Log"));
    EXPECT_EQ(optimal.criterion, TOptimizationType::MaxFValue);
    EXPECT_EQ(optimal.models, 5);
    EXPECT_EQ(optimal.description, QStringLiteral("Jobs"));
    EXPECT_TRUE(optimal.progress);
    EXPECT_EQ(optimal.format, nuvo::OutputFormat::Json);
    EXPECT_EQ(select("optimal", {"--criterion=nondominated"}).criterion, TOptimizationType::Nondominated);
    EXPECT_EQ(select("optimal", {"--criterion=min-s2"}).criterion, TOptimizationType::MinSsquared);
    EXPECT_EQ(select("optimal", {"--models", "-3"}).models, -3);
    EXPECT_FALSE(select("optimal", {}).criterion || select("optimal", {}).models);

    const SelectOptions stepwise =
        select("stepwise", {"--f-in", "-60", "--f-out=-.5e1", "--f-percent", "5 Percent", "--f-table", "F"});
    EXPECT_EQ(stepwise.method, Method::Stepwise);
    EXPECT_EQ(stepwise.fIn, -60.0);
    EXPECT_EQ(stepwise.fOut, -5.0);
    EXPECT_EQ(stepwise.fPercent, QStringLiteral("5 Percent"));
    EXPECT_EQ(stepwise.fTable, QStringLiteral("F"));
    EXPECT_FALSE(select("stepwise", {}).fIn || select("stepwise", {}).fTable);

    EXPECT_EQ(select("backward", {"--f", "-4"}).f, -4.0);
    EXPECT_EQ(select("backward", {}).method, Method::Backward);
    EXPECT_EQ(select("forward", {"--f=2.5", "--f-table=F"}).f, 2.5);
    EXPECT_EQ(select("forward", {}).method, Method::Forward);
}

TEST(CommandLine, OptionsOfAnotherMethodAreRefused)
{
    EXPECT_EQ(selectRefusal("stepwise", {"--models", "3"}),
              QStringLiteral("--models belongs to optimal, not to stepwise."));
    EXPECT_EQ(selectRefusal("forward", {"--criterion", "max-f"}),
              QStringLiteral("--criterion belongs to optimal, not to forward."));
    EXPECT_EQ(selectRefusal("stepwise", {"--f", "3"}),
              QStringLiteral("--f belongs to backward and forward, not to stepwise."));
    for (const char *option : {"--f-in", "--f-out", "--f-percent"}) {
        for (const char *method : {"optimal", "backward", "forward"})
            EXPECT_EQ(selectRefusal(method, {option, "3"}),
                      QStringLiteral("%1 belongs to stepwise, not to %2.")
                          .arg(QString::fromUtf8(option), QString::fromUtf8(method)));
    }
    EXPECT_EQ(selectRefusal("optimal", {"--f-table", "F"}),
              QStringLiteral("--f-table belongs to stepwise, backward and forward, not to optimal."));
    for (const char *option : {"--message", "--warnings", "--matrices"})
        EXPECT_EQ(selectRefusal("optimal", {option}),
                  QStringLiteral("There is no option \"%1\".").arg(QString::fromUtf8(option)));
}

TEST(CommandLine, ASelectionIsRefusedInOneSentence)
{
    EXPECT_EQ(selectRefusal("best", {}),
              QStringLiteral("METHOD is optimal, stepwise, backward or forward, not \"best\"."));
    EXPECT_EQ(refusal({"select", "--database", "d", "--table", "t", "--response", "y"}),
              QStringLiteral("METHOD is required. See \"nuvostat select --help\"."));
    EXPECT_EQ(
        selectRefusal("optimal", {"--criterion", "aicc"}),
        QStringLiteral("--criterion is nondominated, min-s2, max-f, cp, aic, bic, adj-r2 or press, not \"aicc\"."));
    EXPECT_EQ(selectRefusal("stepwise", {"--f-in", "four"}), QStringLiteral("--f-in is a number, not \"four\"."));
    EXPECT_EQ(selectRefusal("stepwise", {"--f-out", "4,5"}), QStringLiteral("--f-out is a number, not \"4,5\"."));
    EXPECT_EQ(selectRefusal("stepwise", {"--f-in", "1e999"}), QStringLiteral("--f-in is a number, not \"1e999\"."));
    EXPECT_EQ(selectRefusal("backward", {"--f"}), QStringLiteral("--f needs a value."));
    EXPECT_EQ(selectRefusal("optimal", {"--models", "2.5"}),
              QStringLiteral("--models is a whole number from -2147483648 to 2147483647, not \"2.5\"."));
    EXPECT_EQ(selectRefusal("optimal", {"--models", "1", "--models", "2"}),
              QStringLiteral("--models is there 2 times; it can be given once."));
    EXPECT_TRUE(
        selectRefusal("optimal", {"forward"}).startsWith(QStringLiteral("\"forward\" is taken for a CSV file")));
}

TEST(CommandLine, AFormHasItsOptions)
{
    EXPECT_EQ(std::get<RunOptions>(parse({"run", "a.ui"})).form, QStringLiteral("a.ui"));
    EXPECT_EQ(std::get<RunOptions>(parse({"run", "--format=json", "a.ui"})).format, nuvo::OutputFormat::Json);
    EXPECT_EQ(refusal({"run"}), QStringLiteral("FORM.ui is required. See \"nuvostat run --help\"."));
    EXPECT_EQ(refusal({"run", "a.ui", "b.ui"}),
              QStringLiteral("\"b.ui\" is one argument too many. See \"nuvostat run --help\"."));
    EXPECT_EQ(refusal({"run", "a.ui", "--format=xml"}),
              QStringLiteral("--format is text, report or json, not \"xml\". See \"nuvostat run --help\"."));
}

TEST(CommandLine, AnFTableHasItsOptions)
{
    const auto parsed = [](std::vector<std::string> more) {
        more.insert(more.begin(), {"ftable", "--database", "d", "--table", "t"});
        return std::get<nuvo::FTableOptions>(parse(more));
    };
    const nuvo::FTableOptions options = parsed({});
    EXPECT_EQ(options.database, QStringLiteral("d"));
    EXPECT_EQ(options.table, QStringLiteral("t"));
    EXPECT_EQ(options.denominators, 2500);
    EXPECT_FALSE(options.replace);
    EXPECT_EQ(parsed({"--denominators", "1000000"}).denominators, 1000000);
    EXPECT_TRUE(parsed({"--denominators=1", "--replace"}).replace);
    for (const char *number : {"0", "-1", "1000001", "99999999999", "2.5", "ten", "", "0x10"}) {
        EXPECT_EQ(refusal({"ftable", "--database", "d", "--table", "t", "--denominators", number}),
                  QStringLiteral("--denominators is a whole number from 1 to 1000000, not \"%1\". See \"nuvostat "
                                 "ftable --help\".")
                      .arg(QString::fromUtf8(number)));
    }
    EXPECT_EQ(refusal({"ftable", "--database", "d", "--table", ""}),
              QStringLiteral("--table needs a name. See \"nuvostat ftable --help\"."));
    EXPECT_EQ(refusal({"ftable", "--table", "t"}),
              QStringLiteral("--database is required. See \"nuvostat ftable --help\"."));
}

TEST(CommandLine, AWrongOneIsRefusedInOneSentenceWithAHint)
{
    const std::vector<std::string> good{"fit", "--database", "d", "--table", "t", "--response", "y"};
    EXPECT_EQ(refusal(good), QString());
    const auto with = [&](std::vector<std::string> more) {
        more.insert(more.begin(), good.begin(), good.end());
        return refusal(more);
    };
    const QString hint = QStringLiteral(" See \"nuvostat fit --help\".");
    EXPECT_EQ(refusal({}), QStringLiteral("A command is missing: fit, select, run, import, ftable or samples."));
    EXPECT_EQ(refusal({"forget"}), QStringLiteral("There is no command \"forget\", but fit, select, run, import, "
                                                  "ftable and samples. See \"nuvostat --help\"."));
    EXPECT_EQ(refusal({"--frobnicate"}),
              QStringLiteral("There is no option \"--frobnicate\". See \"nuvostat --help\"."));
    EXPECT_EQ(refusal({"fit"}), QStringLiteral("--database is required, or a CSV file.") + hint);
    EXPECT_EQ(refusal({"fit", "--database", "d", "--table", "t"}), QStringLiteral("--response is required.") + hint);
    EXPECT_EQ(refusal({"fit", "--database", "d", "--response", "y"}),
              QStringLiteral("--table or --sql is required.") + hint);
    EXPECT_EQ(with({"--sql", "SELECT 1"}), QStringLiteral("--table and --sql exclude each other.") + hint);
    EXPECT_EQ(with({"--table", "u"}), QStringLiteral("--table is there 2 times; it can be given once.") + hint);
    EXPECT_EQ(with({"--response", "u"}), QStringLiteral("--response is there 2 times; it can be given once.") + hint);
    EXPECT_EQ(with({"--control"}), QStringLiteral("--control needs a value.") + hint);
    EXPECT_EQ(with({"--warnings=no"}), QStringLiteral("--warnings takes no value.") + hint);
    EXPECT_EQ(with({"--format", "xml"}), QStringLiteral("--format is text, report or json, not \"xml\".") + hint);
    EXPECT_EQ(with({"u"}), QStringLiteral("\"u\" is taken for a CSV file, which excludes --database, --table and "
                                          "--sql.") +
                               hint);
    EXPECT_EQ(refusal({"fit", "u.csv", "--sql", "SELECT 1", "--response", "y"}),
              QStringLiteral("\"u.csv\" is taken for a CSV file, which excludes --database, --table and --sql. "
                             "\"nuvostat import\" makes a table of it that a statement reads.") +
                  hint);
    EXPECT_EQ(with({"u", "v"}), QStringLiteral("\"v\" is one argument too many.") + hint);
    EXPECT_EQ(with({"--responce", "z"}),
              QStringLiteral("There is no option \"--responce\" (perhaps \"--response\").") + hint);
    EXPECT_TRUE(
        refusal({"slect"}).startsWith(QStringLiteral("There is no command \"slect\" (perhaps \"select\"), but")));
    for (const char *option : {"--tab", "--showing", "-x", "--version"})
        EXPECT_EQ(with({option}), QStringLiteral("There is no option \"%1\".").arg(QString::fromUtf8(option)) + hint);
    EXPECT_EQ(
        with({"--save-report", "r.doc"}),
        QStringLiteral("--save-report takes a name that ends in .pdf, .html, .txt, .md or .png, not \"r.doc\".") +
            hint);
    EXPECT_EQ(with({"--save-report", "pdf"}),
              QStringLiteral("--save-report takes a name that ends in .pdf, .html, .txt, .md or .png, not \"pdf\".") +
                  hint);
    EXPECT_EQ(with({"--save-report="}),
              QStringLiteral("--save-report takes a name that ends in .pdf, .html, .txt, .md or .png, not \"\".") +
                  hint);
    EXPECT_EQ(with({"--save-plots="}),
              QStringLiteral("--save-plots takes the name of a directory, not an empty text.") + hint);
    EXPECT_TRUE(with({"--control", "F^abc"}).startsWith(QStringLiteral("\"F^abc\" is no term for a control")));
    EXPECT_TRUE(with({"--control", "1/10"}).endsWith(hint));
    EXPECT_TRUE(refusal({"fit", "--database", "d", "--table", "t", "--response", "1/x"})
                    .startsWith(QStringLiteral("\"1/x\" is no term for the response")));
    EXPECT_EQ(refusal({"fit", "--database", "d", "--sql", "s", "--response", "y", "--order", "a"}),
              QStringLiteral("--filter and --order belong to --table; a statement has its own WHERE and ORDER BY.") +
                  hint);
    EXPECT_EQ(refusal({"import", "--database", "d", "--table", "t"}),
              QStringLiteral("FILE.csv is required. See \"nuvostat import --help\"."));
    EXPECT_EQ(refusal({"import", "f", "--database", "d", "--table", ""}),
              QStringLiteral("--table needs a name. See \"nuvostat import --help\"."));
}

TEST(CommandLine, TenControlsAreEnoughAndElevenTooMany)
{
    std::vector<std::string> arguments{"fit", "--database", "d", "--table", "t", "--response", "y"};
    for (int i = 0; i < 10; ++i) {
        arguments.emplace_back("--control");
        arguments.emplace_back("x");
    }
    EXPECT_EQ(refusal(arguments), QString());
    arguments.emplace_back("--control=");
    EXPECT_EQ(refusal(arguments), QStringLiteral("--control is there 11 times; a regression has up to 10 control "
                                                 "variables. See \"nuvostat fit --help\"."));
}

TEST(CommandLine, HelpNamesEveryOptionInEightyColumns)
{
    const auto help = [](const std::vector<std::string> &arguments) {
        return std::get<PrintOptions>(parse(arguments)).text;
    };
    const QString fitHelp = help({"fit", "--help"});
    for (const char *option : {"--database", "--table", "--filter", "--order", "--sql", "--response", "--control",
                               "--description", "--message", "--warnings", "--matrices", "--progress", "--format",
                               "--save-report", "--save-plots", "--show"})
        EXPECT_TRUE(fitHelp.contains(QString::fromUtf8(option))) << option;
    const QString importHelp = help({"import", "--help"});
    for (const char *option : {"FILE.csv", "--database", "--table", "--replace"})
        EXPECT_TRUE(importHelp.contains(QString::fromUtf8(option))) << option;
    const QString general = help({"--help"});
    EXPECT_TRUE(general.contains(QStringLiteral("fit")) && general.contains(QStringLiteral("import")));
    const QString ftableHelp = help({"ftable", "--help"});
    for (const char *option : {"--database", "--table", "--denominators", "--replace"})
        EXPECT_TRUE(ftableHelp.contains(QString::fromUtf8(option))) << option;
    const QString selectHelp = help({"select", "--help"});
    for (const char *option : {"METHOD", "--database", "--table", "--filter", "--order", "--sql", "--response",
                               "--control", "--description", "--progress", "--format", "--criterion", "--models",
                               "--f-in", "--f-out", "--f-percent", "--f ", "--f-table"})
        EXPECT_TRUE(selectHelp.contains(QString::fromUtf8(option))) << option;
    const QString runHelp = help({"run", "--help"});
    EXPECT_TRUE(runHelp.contains(QStringLiteral("FORM.ui")) && runHelp.contains(QStringLiteral("--format")));
    EXPECT_TRUE(runHelp.contains(QStringLiteral("working directory")));
    for (const QString &text : {fitHelp, importHelp, ftableHelp, selectHelp, runHelp, general}) {
        EXPECT_TRUE(text.contains(QStringLiteral("\nExamples:\n")));
        EXPECT_TRUE(text.endsWith(u'\n'));
        for (const QString &line : text.split(u'\n'))
            EXPECT_LE(line.size(), 80) << line.toStdString();
    }
}

TEST(Program, HelpAndVersionGoToStandardOutput)
{
    const Outcome version = runProgram({QStringLiteral("--version")});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, QStringLiteral("nuvostat %1\n").arg(QStringLiteral(NUVO_VERSION)));
    EXPECT_EQ(version.err, QString());
    for (const QStringList &arguments : {QStringList{QStringLiteral("--help")}, QStringList{QStringLiteral("-h")},
                                         QStringList{QStringLiteral("fit"), QStringLiteral("-h")},
                                         QStringList{QStringLiteral("fit"), QStringLiteral("--help")},
                                         QStringList{QStringLiteral("import"), QStringLiteral("--help")}}) {
        const Outcome help = runProgram(arguments);
        EXPECT_EQ(help.status, 0);
        EXPECT_TRUE(help.out.contains(QStringLiteral("Usage:\n  nuvostat ")));
        EXPECT_EQ(help.err, QString());
    }
}

TEST(Program, AWrongCommandLineIsStatus2AndOneLineOnStandardError)
{
    for (const QStringList &arguments :
         {QStringList{QStringLiteral("fit")}, QStringList{QStringLiteral("walk"), QStringLiteral("x")},
          QStringList{QStringLiteral("import"), QStringLiteral("a\nb"), QStringLiteral("c\n\rd")}}) {
        const Outcome wrong = runProgram(arguments);
        EXPECT_EQ(wrong.status, 2);
        EXPECT_EQ(wrong.out, QString());
        EXPECT_TRUE(wrong.err.startsWith(QStringLiteral("nuvostat: ")));
        EXPECT_TRUE(wrong.err.contains(QStringLiteral("--help\"."))) << wrong.err.toStdString();
        EXPECT_EQ(wrong.err.count(u'\n'), 1);
        EXPECT_EQ(wrong.err.count(u'\r'), 0);
    }
}

TEST(Program, AClosedPipeEndsItQuietly)
{
    const Outcome closed = runShell(QStringLiteral("(\"$nuvostat\" --help; echo $? >&2) | :"));
    EXPECT_EQ(closed.err, QStringLiteral("0\n"));
}

TEST(Program, AFullDiskOrAClosedStreamBehindStandardOutputIsStatus3)
{
    const Outcome full = runShell(QStringLiteral("\"$nuvostat\" --help >/dev/full"));
    EXPECT_EQ(full.status, 3);
    EXPECT_EQ(full.err, QStringLiteral("nuvostat: Standard output cannot be written: No space left on device.\n"));
    const Outcome closed = runShell(QStringLiteral("\"$nuvostat\" --help >&-"));
    EXPECT_EQ(closed.status, 3);
    EXPECT_EQ(closed.err, QStringLiteral("nuvostat: Standard output cannot be written: Bad file descriptor.\n"));
}

} // namespace
