// SPDX-License-Identifier: MIT
#include "app/Program.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QPluginLoader>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace {

QString property(const char *name, const char *kind, const QString &value)
{
    return u("<property name=\"%1\" stdset=\"0\"><%2>%3</%2></property>\n").arg(u(name), u(kind), value);
}

QString stringProperty(const char *name, const QString &value)
{
    return property(name, "string", value.toHtmlEscaped());
}

QString list(const char *name, const QStringList &values)
{
    QString strings;
    for (const QString &value : values)
        strings += u("<string>%1</string>").arg(value.toHtmlEscaped());
    return property(name, "stringlist", strings);
}

QString widget(const char *type, const char *name, const QString &inside)
{
    return u("<widget class=\"%1\" name=\"%2\">\n%3</widget>\n").arg(u(type), u(name), inside);
}

QString form(const QString &widgets)
{
    return u("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ui version=\"4.0\">\n<class>Form</class>\n") +
           widget("QWidget", "Form", widgets) + u("<resources/>\n<connections/>\n</ui>\n");
}

/// A component on the sample database's table of Longley, with the response and these controls.
QString longley(const char *name, const QStringList &controls, const QString &more = {})
{
    QString properties = stringProperty("DatabaseName", u("samples.db")) + stringProperty("TableName", u("Longley")) +
                         list("ResponseVarY", {u("Undefined"), u("None"), u("TOTEMP")});
    for (qsizetype i = 0; i < controls.size(); ++i)
        properties += list(qPrintable(u("ControlVar%1").arg(i + 1, 2, 10, QLatin1Char('0'))),
                           {u("Active"), u("None"), controls[i], QString(), u("1"), u("10")});
    return widget("TMLRTable", name, properties + more);
}

/// Runs forms in a folder that holds the sample database.
class RunForm : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(QFile::link(u(SAMPLES_DB), folder_.filePath(u("samples.db")))); }

    void Write(const QByteArray &bytes)
    {
        QFile file(folder_.filePath(u("form.ui")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    Outcome Run(const QString &bytes, const QStringList &more = {})
    {
        Write(bytes.toUtf8());
        return runProgram(QStringList{u("run"), u("form.ui")} + more, folder_.path());
    }
    Json RunJson(const QString &bytes) { return parsed(Run(bytes, {u("--format=json")})); }

    /// What fit or select print of the same.
    Json Other(const QStringList &command, const QStringList &controls)
    {
        QStringList arguments = command;
        arguments += {u("--database"), u("samples.db"), u("--table"), u("Longley"), u("--response"), u("TOTEMP")};
        for (const QString &control : controls)
            arguments += {u("--control"), control};
        return parsed(runProgram(arguments + QStringList{u("--format=json")}, folder_.path()));
    }

    /// A run that is refused with one sentence, which is returned.
    QString Refusal(const QString &bytes)
    {
        const Outcome run = Run(bytes, {u("--format=json")});
        EXPECT_EQ(run.status, 3);
        EXPECT_EQ(run.err.count(u'\n'), 1);
        EXPECT_EQ(keys(parsed(run)), std::vector<std::string>{"error"});
        const QString sentence = QString::fromStdString(parsed(run)["error"].get<std::string>());
        EXPECT_EQ(run.err, u("nuvostat: ") + sentence + u'\n');
        return sentence;
    }

    QTemporaryDir folder_;
};

const QStringList three{u("GNP"), u("UNEMP"), u("ARMED")};

TEST_F(RunForm, FitsTheRegressionsAndThenSelectsInTheFormsOrder)
{
    // The selection stands in front of its component; names are found in the end.
    const Json json = RunJson(form(widget("TOptimizeMLR", "Best", stringProperty("Dataset", u("Second"))) +
                                   longley("First", {u("GNP")}) + longley("Second", three) +
                                   widget("TBackElimMLR", "Fewer", stringProperty("Dataset", u("First")))));
    EXPECT_EQ(keys(json), (std::vector<std::string>{"form", "regressions", "selections"}));
    EXPECT_EQ(json["form"], "form.ui");
    ASSERT_EQ(json["regressions"].size(), 2U);
    EXPECT_EQ(json["regressions"][0]["name"], "First");
    EXPECT_EQ(json["regressions"][1]["name"], "Second");
    ASSERT_EQ(json["selections"].size(), 2U);
    EXPECT_EQ(json["selections"][0]["name"], "Best");
    EXPECT_EQ(json["selections"][0]["method"], "optimal");
    EXPECT_EQ(json["selections"][1]["name"], "Fewer");
    EXPECT_EQ(json["selections"][1]["method"], "backward");
}

TEST_F(RunForm, GivesTheFiguresOfFitAndSelect)
{
    const Json json = RunJson(form(longley("Jobs", three, stringProperty("Description", u("Employment"))) +
                                   widget("TStepWiseMLR", "Choice", stringProperty("Dataset", u("Jobs")))));
    Json fitted = Other({u("fit"), u("--description"), u("Employment")}, three);
    Json regression = json["regressions"][0];
    std::vector<std::string> expected = keys(fitted);
    expected.insert(expected.begin(), "name");
    EXPECT_EQ(keys(regression), expected);
    regression.erase("name");
    EXPECT_EQ(regression, fitted);

    Json selected = Other({u("select"), u("stepwise"), u("--description"), u("Employment")}, three);
    Json selection = json["selections"][0];
    expected = keys(selected);
    expected.insert(expected.begin(), "name");
    EXPECT_EQ(keys(selection), expected);
    EXPECT_EQ(selection["selected"], selected["selected"]);
    EXPECT_EQ(selection["steps"], selected["steps"]);
    // ShowReport is off: the report is there, its message box is not.
    EXPECT_EQ(QString::fromStdString(selection["report"].get<std::string>()).section(u("Processing"), 0, 0),
              QString::fromStdString(selected["report"].get<std::string>()).section(u("Processing"), 0, 0));
    EXPECT_EQ(selection["messages"].dump(), "[]");
    EXPECT_EQ(selected["messages"].size(), 1U);
}

TEST_F(RunForm, AsTextEachPageStandsBelowItsComponentsName)
{
    const Outcome run = Run(form(longley("Jobs", three) + widget("TFwdSelectMLR", "Choice",
                                                                 stringProperty("Dataset", u("Jobs")) +
                                                                     property("ShowReport", "bool", u("true")))));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, QString());
    EXPECT_TRUE(run.out.startsWith(u("Jobs\n====\n\nLinear regression of TOTEMP on "))) << run.out.toStdString();
    EXPECT_TRUE(run.out.contains(u("\n\nChoice\n======\n\nAdding GNP Partial F = "))) << run.out.toStdString();
    EXPECT_TRUE(run.out.contains(u("\n\nCORVANE OUTPUT REPORT\n")));
    EXPECT_TRUE(run.out.contains(u("\n\nLinear regression of TOTEMP on ")));
    EXPECT_FALSE(run.out.contains(u'\r'));
}

TEST_F(RunForm, AQueryInContainersTabsAndLayoutsIsFitted)
{
    const QString query = widget(
        "TMLRQuery", "Deep",
        stringProperty("DatabaseName", u("samples.db")) + list("SQL", {u("SELECT TOTEMP, GNP"), u("FROM Longley")}) +
            property("Active", "bool", u("true")) + list("ResponseVarY", {u("Undefined"), u("None"), u("TOTEMP")}) +
            list("ControlVar04", {u("Active"), u("None"), u("GNP")}));
    QString nested =
        widget("QGroupBox", "group", u("<layout class=\"QVBoxLayout\"><item>") + query + u("</item></layout>"));
    nested = widget("QScrollArea", "area", widget("QWidget", "inner", nested));
    nested = widget("QTabWidget", "tabs", widget("QWidget", "tab", nested));
    const Json json = RunJson(
        form(u("<layout class=\"QGridLayout\"><item row=\"0\" column=\"0\">") + nested + u("</item></layout>")));
    ASSERT_EQ(json["regressions"].size(), 1U);
    EXPECT_EQ(json["regressions"][0]["component"], "query");
    EXPECT_EQ(json["regressions"][0]["terms"].dump(), R"(["GNP"])");
    EXPECT_EQ(json["regressions"][0]["coefficients"], Other({u("fit")}, {u("GNP")})["coefficients"]);
}

TEST_F(RunForm, AnFTableOnTheFormIsUsedWhenItIsActive)
{
    const auto chosen = [this](bool active) {
        return RunJson(form(
            longley("Jobs", three) +
            widget("TTable", "Quantiles",
                   stringProperty("DatabaseName", u("samples.db")) + stringProperty("TableName", u("Fdistribution")) +
                       property("Active", "bool", active ? u("true") : u("false"))) +
            widget("TFwdSelectMLR", "Choice",
                   stringProperty("Dataset", u("Jobs")) + stringProperty("FDistTable", u("Quantiles")) +
                       property("FDefault", "number", u("400000")))))["selections"][0]["selected"]["controls"]
            .get<int>();
    };
    EXPECT_GE(chosen(true), 1);
    EXPECT_EQ(chosen(false), 0);
}

TEST_F(RunForm, AFitWithoutAResultIsStatus1AndTheOthersAreStillThere)
{
    const Outcome run =
        Run(form(longley("Bad", {u("YEAR")},
                         stringProperty("Filter", u("YEAR = 1950")) + property("Filtered", "bool", u("true"))) +
                 longley("Good", three)),
            {u("--format=json")});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.startsWith(u("error: "))) << run.err.toStdString();
    const Json json = parsed(run);
    EXPECT_EQ(json["regressions"][0]["computed"], false);
    EXPECT_GE(json["regressions"][0]["messages"].size(), 1U);
    EXPECT_EQ(json["regressions"][1]["computed"], true);
    EXPECT_EQ(json["regressions"][1]["messages"].dump(), "[]");
}

TEST_F(RunForm, ASelectionThatIsBoundToNothingIsStatus3AndNamed)
{
    EXPECT_EQ(
        Refusal(form(longley("Jobs", three) + widget("TOptimizeMLR", "Best", stringProperty("Dataset", u("Job"))))),
        u("Best on the form \"form.ui\" is bound to nothing: its Dataset is \"Job\"."));
    EXPECT_EQ(Refusal(form(widget("TStepWiseMLR", "Choice", QString()))),
              u("Choice on the form \"form.ui\" is bound to nothing: its Dataset is \"\"."));
}

TEST_F(RunForm, WhatTheDatabaseCannotDoNamesTheComponent)
{
    EXPECT_EQ(Refusal(form(widget("TMLRTable", "Jobs", QString()))),
              u("Jobs on the form \"form.ui\": No database is named (DatabaseName is empty)."));
    EXPECT_EQ(Refusal(form(longley("Jobs", three).replace(u("samples.db"), u("none.db")))),
              u("Jobs on the form \"form.ui\": Cannot open the database \"none.db\": there is no such file in \"%1\" "
                "and no registered connection of that name.")
                  .arg(QFileInfo(folder_.path()).canonicalFilePath()));
    EXPECT_TRUE(Refusal(form(longley("Jobs", {u("Nope")}))).contains(u("No field \"Nope\" in table \"Longley\"")));
    EXPECT_FALSE(QFile::exists(folder_.filePath(u("none.db"))));
}

TEST_F(RunForm, APathInTheFormIsLookedForBesideItAndThenInTheWorkingDirectory)
{
    const QString elsewhere = folder_.filePath(u("elsewhere für mich"));
    ASSERT_TRUE(QDir().mkpath(elsewhere));
    Write(form(longley("Jobs", three)).toUtf8());
    EXPECT_EQ(runProgram({u("run"), u("../form.ui")}, elsewhere).status, 0);

    Write(form(longley("Jobs", three)).replace(u("samples.db"), u("moved.db")).toUtf8());
    const Outcome refused = runProgram({u("run"), u("../form.ui")}, elsewhere);
    EXPECT_EQ(refused.status, 3);
    const QString root = QFileInfo(folder_.path()).canonicalFilePath();
    EXPECT_TRUE(
        refused.err.contains(u("there is no such file beside the form, in \"%1\", or in the working folder \"%2\"")
                                 .arg(root, QFileInfo(elsewhere).canonicalFilePath())))
        << refused.err.toStdString();
    ASSERT_TRUE(QFile::link(u(SAMPLES_DB), elsewhere + u("/moved.db")));
    EXPECT_EQ(runProgram({u("run"), u("../form.ui")}, elsewhere).status, 0);
}

TEST_F(RunForm, ListsOfThreeOrNineAreRepaired)
{
    const QStringList nine{u("Active"), u("Power"), u("UNEMP"), u("x"), u("2"), u("10"), u("a"), u("b"), u("c")};
    const Json json = RunJson(form(widget(
        "TMLRTable", "Jobs",
        stringProperty("DatabaseName", u("samples.db")) + stringProperty("TableName", u("Longley")) +
            list("ResponseVarY", {u("Undefined"), u("None"), u("TOTEMP"), u("x"), u("y"), u("1"), u("a"), u("b")}) +
            list("ControlVar01", {u("Active"), u("Scale"), u("GNP")}) + list("ControlVar02", nine) +
            list("ControlVar03", {u("Active")}) + list("ControlVar04", {}))));
    EXPECT_EQ(json["regressions"][0]["terms"].dump(), R"(["GNP/10","UNEMP^2"])");
}

TEST_F(RunForm, BadFormsAreRefusedInOneSentence)
{
    const QString good = form(longley("Jobs", three));
    EXPECT_TRUE(Refusal(good.left(good.size() / 2)).startsWith(u("The form \"form.ui\" cannot be loaded: line ")));
    EXPECT_EQ(Refusal(u("")), u("The form \"form.ui\" cannot be loaded: it is empty."));
    EXPECT_EQ(Refusal(u("a,b\n1,2\n")), u("The form \"form.ui\" cannot be loaded: line 1: start tag expected."));
    EXPECT_EQ(Refusal(form(widget("QPushButton", "b", QString()))),
              u("The form \"form.ui\" has no regression and no selection component."));
    EXPECT_EQ(Refusal(form(widget("UnknownMLR", "b", QString()))),
              u("The form \"form.ui\" has no regression and no selection component."));
    EXPECT_EQ(Refusal(form(widget("QPushButton", "b", QString()).repeated(100000))),
              u("The form \"form.ui\" has no regression and no selection component."));
    EXPECT_EQ(Refusal(form(longley("Jobs", three).repeated(101))),
              u("The form \"form.ui\" cannot be loaded: line 805: it has more than 100 components."));
    EXPECT_EQ(
        Refusal(form(longley("Jobs", three, property("ControlVar05", "number", u("5"))))),
        u("The form \"form.ui\" cannot be loaded: line 12: ControlVar05 of \"Jobs\" has to be a list of texts, not "
          "<number>5."));
    EXPECT_EQ(
        Refusal(form(widget("TOptimizeMLR", "Best", property("OptCriteria", "enum", u("TOptimizeMLR::Worst"))))),
        u("The form \"form.ui\" cannot be loaded: line 6: OptCriteria of \"Best\" has to be one of Nondominated, "
          "MinSsquared, MaxFValue, Cp, AIC, BIC, AdjustedRSquared, PRESS, not <enum>TOptimizeMLR::Worst."));
    EXPECT_EQ(
        Refusal(form(longley("Jobs", three).replace(u("samples.db"), u("odbc:Driver=/tmp/x.so")))),
        u("The form \"form.ui\" cannot be loaded: line 6: DatabaseName of \"Jobs\" is a connection string; a form "
          "can only name a data source, odbc:NAME."));
    for (const char *name : {"none.ui", ".", "/dev/zero", "/dev/null"}) {
        const Outcome run = runProgram({u("run"), u(name)}, folder_.path());
        EXPECT_EQ(run.status, 3);
        EXPECT_TRUE(run.err.startsWith(u("nuvostat: The form \"%1\" cannot be loaded: ").arg(u(name))))
            << run.err.toStdString();
        EXPECT_EQ(run.err.count(u'\n'), 1);
        EXPECT_EQ(run.out, QString());
    }
}

TEST_F(RunForm, ChoosesAsTextbooksDoWhereTheFormSaysSo)
{
    const QString rule = property("Rule", "enum", u("TCorvane::Textbook"));
    const Json json = RunJson(
        form(longley("a", three) +
             widget("TStepWiseMLR", "steps",
                    stringProperty("Dataset", u("a")) + rule + property("PIn", "double", u("0.05")) +
                        property("POut", "double", u("0.1"))) +
             longley("b", three) +
             widget("TOptimizeMLR", "best",
                    stringProperty("Dataset", u("b")) + property("OptCriteria", "enum", u("TOptimizeMLR::PRESS")) +
                        property("ModelsPerSize", "number", u("2")))));
    ASSERT_EQ(json["selections"].size(), 2U);
    EXPECT_EQ(
        json["selections"][0]["path"],
        Other({u("select"), u("stepwise"), u("--rule=textbook"), u("--p-in=0.05"), u("--p-out=0.1")}, three)["path"]);
    EXPECT_EQ(json["selections"][1]["bySize"],
              Other({u("select"), u("optimal"), u("--criterion=press"), u("--sizes=2")}, three)["bySize"]);
    const Outcome wrong = Run(form(
        longley("a", three) + widget("TFwdSelectMLR", "steps",
                                     stringProperty("Dataset", u("a")) + rule + property("P", "double", u("1.5")))));
    EXPECT_EQ(wrong.status, 3);
    EXPECT_EQ(wrong.err, u("nuvostat: steps on the form \"form.ui\": P is 1.5; a probability is more than 0 and less "
                           "than 1.\n"));
}

TEST_F(RunForm, OddValuesOfEveryPropertyAreNoCrash)
{
    QString odd;
    for (const char *name :
         {"DatabaseName", "TableName", "Filter", "IndexFieldNames", "Description", "ReportMessage"})
        odd += stringProperty(name, u("'\";--\\ %1 %n \n\t") + QString(5000, u'x'));
    const Outcome run =
        Run(form(widget("TMLRTable", "t", odd) + widget("TMLRTable", "t", odd) +
                 widget("TOptimizeMLR", "t",
                        stringProperty("Dataset", u("t")) + property("ModelsToSave", "number", u("-2147483648")))));
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.err.count(u'\n'), 1);
    EXPECT_EQ(
        Run(form(longley("a", three) +
                 widget("TOptimizeMLR", "b",
                        stringProperty("Dataset", u("a")) + property("ModelsToSave", "number", u("2147483647")) +
                            property("OptCriteria", "enum", u("MaxFValue"))) +
                 widget("TStepWiseMLR", "c",
                        stringProperty("Dataset", u("a")) + property("FInDefault", "double", u("-1e300")) +
                            stringProperty("FDistTable", u("a")) + stringProperty("FPercent", u("Nope")))))
            .status,
        0);
}

// A pipe that somebody opened would keep the program waiting for ever.
TEST_F(RunForm, NothingIsOpenedBecauseTheFormNamesIt)
{
    const QString pipe = folder_.filePath(u("pipe"));
    ASSERT_EQ(::mkfifo(qPrintable(pipe), 0600), 0);
    // The plugin leaves a mark where it is loaded from.
    ASSERT_TRUE(QDir(folder_.path()).mkpath(u("plugins/designer")));
    ASSERT_TRUE(QFile::copy(u(SENTINEL_PLUGIN), folder_.filePath(u("plugins/designer/sentinel.so"))));
    const QString mark = folder_.filePath(u("plugin-was-loaded"));
    ASSERT_TRUE(QDir::setCurrent(folder_.path()));
    ASSERT_NE(QPluginLoader(folder_.filePath(u("plugins/designer/sentinel.so"))).instance(), nullptr);
    ASSERT_TRUE(QFile::remove(mark));
    const QString named = u("<string>%1</string>").arg(pipe);
    const QString styled = u("<property name=\"styleSheet\"><string>QWidget { image: url(%1) }</string></property>"
                             "<property name=\"windowIcon\"><iconset><normaloff>%1</normaloff></iconset></property>"
                             "<property name=\"cursor\"><pixmap>%1</pixmap></property>")
                               .arg(pipe);
    Write(
        form(styled +
             u("<widget class=\"QLabel\" name=\"l\"><property name=\"pixmap\"><pixmap>%1</pixmap></property></widget>"
               "<widget class=\"QTextBrowser\" name=\"t\"><property name=\"source\"><url>%2</url></property></widget>"
               "<widget class=\"QQuickWidget\" name=\"q\"><property name=\"source\"><url>%2</url></property></widget>"
               "<widget class=\"Evil\" name=\"e\"><script>%2</script></widget>")
                 .arg(pipe, named) +
             longley("Jobs", three, styled))
            .replace(u("<resources/>"),
                     u("<resources><include location=\"%1\"/></resources><customwidgets><customwidget>"
                       "<class>Evil</class><extends>QWidget</extends><pixmap>%1</pixmap>"
                       "</customwidget></customwidgets>")
                         .arg(pipe))
            .toUtf8());
    const Outcome run = runShell(
        u("QT_PLUGIN_PATH=\"$PWD/plugins\" HOME=\"$PWD\" timeout 20 \"$nuvostat\" run form.ui"), folder_.path());
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.err, QString());
    EXPECT_FALSE(QFile::exists(mark));

    // Nor does a database that is no file keep it waiting.
    EXPECT_EQ(
        Refusal(form(longley("Jobs", three).replace(u("samples.db"), pipe))),
        u("Jobs on the form \"form.ui\": Cannot open the database \"%1\": it is a device or a pipe, not an SQLite "
          "file.")
            .arg(pipe));
}

TEST_F(RunForm, AClosedPipeEndsItQuietly)
{
    Write(form(longley("Jobs", three)).toUtf8());
    EXPECT_EQ(runShell(u("(\"$nuvostat\" run form.ui; echo $? >&2) | :"), folder_.path()).err, u("0\n"));
}

} // namespace
