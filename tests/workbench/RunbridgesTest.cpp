// SPDX-License-Identifier: MIT
#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "support/Text.h"
#include "workbench/Ascode.h"
#include "workbench/Ascommand.h"
#include "workbench/Asform.h"
#include "workbench/Csvimport.h"
#include "workbench/Modelstate.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLibraryInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <optional>

namespace {

/// What a program printed, and how it ended.
struct Ran
{
    int status = -1;
    QString output;
    QString errors;
};

Ran run(const QString &program, const QStringList &arguments, const QString &folder)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u("PATH"), QStringLiteral(BIN_FOLDER ":") + environment.value(u("PATH")));
    environment.insert(u("QT_QPA_PLATFORM"), u("offscreen"));
    environment.insert(u("LC_ALL"), u("C.UTF-8"));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    Ran ran;
    if (process.waitForFinished(120000) && process.exitStatus() == QProcess::NormalExit)
        ran.status = process.exitCode();
    ran.output = QString::fromUtf8(process.readAllStandardOutput());
    ran.errors = QString::fromUtf8(process.readAllStandardError());
    return ran;
}

std::vector<double> numbers(const QJsonValue &array)
{
    std::vector<double> result;
    for (const auto &value : array.toArray())
        result.push_back(value.toDouble());
    return result;
}

class Bridges : public testing::Test
{
protected:
    QTemporaryDir folder;
    nuvo::ModelState state;

    /// A table whose names need every kind of quoting, with so many records.
    void make(int records)
    {
        state.database = folder.filePath(u("my 'own' data.db"));
        state.table = u("it's \"odd\"; $HOME `x` größer");
        {
            QSqlDatabase database = QSqlDatabase::addDatabase(u("QSQLITE"), u("bridges"));
            database.setDatabaseName(state.database);
            ASSERT_TRUE(database.open());
            QSqlQuery query(database);
            const auto exec = [&query](const QString &sql) {
                EXPECT_TRUE(query.exec(sql)) << query.lastError().text().toStdString();
            };
            const QString name = u("\"it's \"\"odd\"\"; $HOME `x` größer\"");
            exec(
                u("CREATE TABLE %1 (\"Préis, \"\"netto\"\" (€)\" REAL, \"a b\" REAL, \"x^2\" REAL, \"GNP/cap\" REAL, "
                  "\"1999\" REAL, art TEXT)")
                    .arg(name));
            database.transaction();
            for (int i = 1; i <= records; ++i) {
                exec(u("INSERT INTO %1 VALUES (%2, %3, %4, %5, %6, '%7')")
                         .arg(name)
                         .arg(20 + 3 * std::sin(i) + 0.01 * i, 0, 'g', 17)
                         .arg(1 + i % 13)
                         .arg(2 + std::cos(i * 3), 0, 'g', 17)
                         .arg(5 + i % 7)
                         .arg(1 + i * 0.25, 0, 'g', 17)
                         .arg(i % 3 == 0 ? u("it''s") : u("größe")));
            }
            database.commit();
        }
        QSqlDatabase::removeDatabase(u("bridges"));
        define(0, "None", "Préis, \"netto\" (€)", "");
        define(1, "Log", "a b", "");
        define(2, "Power", "x^2", "2");
        define(4, "Quotient", "GNP/cap", "1999");
        define(9, "Scale", "1999", "1000");
    }
    void define(int place, const char *keyword, const char *field, const char *second)
    {
        state.model.setField(place, u(field));
        state.model.setTransformation(place, u(keyword));
        state.model.setSecondField(place, u(second));
        state.model.setNumber(place, u(second));
    }
    void makeQuery()
    {
        state.sql = u("SELECT *\nFROM \"it's \"\"odd\"\"; $HOME `x` größer\"\nWHERE art <> 'it''s' -- größe");
        state.table.clear();
        state.filter.clear();
    }
    /// The coefficients as the window shows them.
    std::vector<double> expected()
    {
        std::vector<double> coefficients;
        const auto fit = [&](auto &&component) {
            nuvo::apply(state, component);
            component.Open();
            ASSERT_TRUE(component.ReLoad());
            component.Execute();
            for (int j = 0; j <= component.GetNumVars(); ++j)
                coefficients.push_back(component.Getb(j));
        };
        if (state.isQuery())
            fit(TMLRQuery());
        else
            fit(TMLRTable());
        return coefficients;
    }
    /// What the copied line of a shell prints as JSON.
    std::vector<double> ofCommand() { return ofLine(nuvo::fitCommand(state)); }
    std::vector<double> ofLine(const QString &command)
    {
        const QString line = command + u(" --format json");
        const Ran ran = run(u("bash"), {u("-c"), line}, folder.path());
        EXPECT_EQ(ran.status, 0) << line.toStdString() << '\n' << ran.errors.toStdString();
        return numbers(QJsonDocument::fromJson(ran.output.toUtf8()).object().value(u("coefficients")));
    }
    /// Compiles a program against the library.
    QString compiled(const QString &code)
    {
        QFile file(folder.filePath(u("program.cpp")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(code.toUtf8());
        file.close();
        const QString program = folder.filePath(u("program"));
        QStringList arguments{u("-std=c++20"), u("-fPIC"),    u("-Wall"),      u("-Wextra"), u("-Werror"),
                              u("-I"),         folder.path(), file.fileName(), u("-o"),      program};
        const QString qt = QLibraryInfo::path(QLibraryInfo::HeadersPath);
        for (const QString &include : QStringLiteral(INCLUDE_FOLDERS).split(u'|', Qt::SkipEmptyParts))
            arguments += {include.startsWith(qt) ? u("-isystem") : u("-I"), include}; // its warnings are not ours
        arguments += QStringLiteral(LINKED_FILES).split(u'|');
        arguments += QStringLiteral("-Wl,-rpath," LIBRARY_FOLDER);
        const Ran ran = run(QStringLiteral(COMPILER), arguments, folder.path());
        EXPECT_EQ(ran.status, 0) << ran.errors.toStdString() << code.toStdString();
        return program;
    }
    /// The numbers at the ends of the lines behind the first.
    std::vector<double> ofProgram(const QString &program)
    {
        const Ran ran = run(program, {}, folder.path());
        EXPECT_EQ(ran.status, 0) << ran.errors.toStdString();
        std::vector<double> coefficients;
        for (const QString &line : ran.output.split(u'\n', Qt::SkipEmptyParts).mid(1))
            coefficients.push_back(line.section(u' ', -1).toDouble());
        return coefficients;
    }
    QString form(const char *name, const std::optional<nuvo::ChoiceSettings> &choice = {})
    {
        QFile file(folder.filePath(u(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(nuvo::formFile(state, folder.path(), choice));
        return file.fileName();
    }
    /// Of what nuvostat makes of a form.
    std::vector<double> ofForm(const QString &file)
    {
        const Ran ran =
            run(QStringLiteral(BIN_FOLDER "/nuvostat"), {u("run"), file, u("--format"), u("json")}, folder.path());
        EXPECT_EQ(ran.status, 0) << ran.errors.toStdString();
        return numbers(QJsonDocument::fromJson(ran.output.toUtf8())
                           .object()
                           .value(u("regressions"))
                           .toArray()
                           .first()
                           .toObject()
                           .value(u("coefficients")));
    }
    static void expectAlmost(const std::vector<double> &got, const std::vector<double> &expected)
    {
        ASSERT_EQ(got.size(), expected.size());
        for (size_t j = 0; j < got.size(); ++j)
            EXPECT_NEAR(got[j], expected[j], 1e-13 * std::abs(expected[j])) << j;
    }
};

} // namespace

TEST_F(Bridges, ACopiedCommandMakesTheSameFit)
{
    make(60);
    ASSERT_EQ(expected().size(), 5U);
    EXPECT_EQ(ofCommand(), expected());
}

TEST_F(Bridges, ACopiedCommandHasTheFilterAndEveryRecord)
{
    make(2700);
    state.filter = u("art <> 'it''s' AND \"a b\" > 1.5");
    const std::vector<double> first = expected();
    EXPECT_EQ(ofCommand(), first);
    state.filter = u("\"a b\" > 1.5 OR art = 'größe'");
    state.records = nuvo::RecordUse::All;
    EXPECT_EQ(ofCommand(), expected());
    state.records = nuvo::RecordUse::Server;
    EXPECT_EQ(ofCommand(), expected());
}

TEST_F(Bridges, ACopiedCommandHasAStatement)
{
    make(60);
    makeQuery();
    EXPECT_EQ(ofCommand(), expected());
}

TEST_F(Bridges, ACopiedCommandNamesTheCsvFileWithWhatWasSaidOfIt)
{
    nuvo::CsvCorrections bars;
    bars.separator = '|';
    nuvo::CsvCorrections all;
    all.encoding = nuvo::CsvEncoding::Latin1;
    all.separator = '\t';
    all.decimal = ',';
    all.nulls = {"-x", "-999", "it's"};
    const struct
    {
        const char *content;
        nuvo::CsvCorrections said;
        const char *filter;
    } files[] = {{"y|x 1|note\n3|1|a\n4|2|b,c\n9|3|\n7|-4|d\n8|5|e\n", bars, "-\"x 1\" > -5"},
                 {"y\tx 1\tnote\n1,5\t2\ta\n-x\t2\tb\n3\t-999\tc\n2,25\t4\t\n9\tit's\te\n1\t7\tf\n4\t1,5\t\xdf\n"
                  "5,5\t3\th\n",
                  all, "note <> 'f' OR note IS NULL"}};
    int number = 0;
    for (const auto &[content, said, filter] : files) {
        const QString name = folder.filePath(u("it's new %1.csv").arg(++number));
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        state = {};
        state.database = folder.filePath(u("data.db"));
        state.table = u("new_%1").arg(number);
        const nuvo::CsvOrigin origin = nuvo::originOf(state.table, name, said);
        ASSERT_TRUE(nuvo::importInBackground(nullptr, {name, said, {}}, state.database, state.table));
        define(0, "None", "y", "");
        define(1, "None", "x 1", "");
        state.filter = u(filter);
        EXPECT_EQ(nuvo::csvHindrance(state, origin), QString());
        const QString line = nuvo::fitCommand(state, nuvo::originFromJson(nuvo::toJson(origin)));
        EXPECT_EQ(line, nuvo::fitCommand(state, origin)) << "another day";
        EXPECT_FALSE(line.contains(u("--database"))) << line.toStdString();
        EXPECT_EQ(ofLine(line), expected());
    }
}

TEST_F(Bridges, ACopiedProgramCompilesAndMakesTheSameFit)
{
    make(60);
    state.filter = u("art <> 'it''s' AND \"a b\" > 1.5");
    expectAlmost(ofProgram(compiled(nuvo::fitProgram(state))), expected());
}

TEST_F(Bridges, AProgramOfAStatementCompilesBesideTheFormOfUic)
{
    make(60);
    makeQuery();
    const Ran uic = run(QStringLiteral(UIC), {form("model.ui"), u("-o"), u("ui_model.h")}, folder.path());
    ASSERT_EQ(uic.status, 0) << uic.errors.toStdString();
    QString code = nuvo::fitProgram(state);
    // The form is made and asked, in the program's own main().
    code.replace(u("        TMLRQuery regression;\n"), u("        QWidget window;\n"
                                                         "        Ui::Form form;\n"
                                                         "        form.setupUi(&window);\n"
                                                         "        TMLRQuery &regression = *form.regression;\n"));
    for (const char *set : {"regression.Set", "regression.ResponseVarY().Set", "regression.ControlVar("})
        code.replace(QRegularExpression(u("        %1[^\n]*\n").arg(QRegularExpression::escape(u(set)))), QString());
    ASSERT_FALSE(code.contains(u("SetField")));
    expectAlmost(ofProgram(compiled(u("#include \"ui_model.h\"\n") + code)), expected());
}

TEST_F(Bridges, ASavedFormChoosesAsThePageDid)
{
    make(60);
    using nuvo::ChoiceSettings;
    for (const ChoiceSettings &choice : {ChoiceSettings{ChoiceSettings::Optimal, TOptimizeMLR::BIC, 5},
                                         {ChoiceSettings::Stepwise, TOptimizeMLR::Cp, 3, 0.07, 0.12},
                                         {ChoiceSettings::Forward, TOptimizeMLR::Cp, 3, 0.2},
                                         {ChoiceSettings::Backward, TOptimizeMLR::Cp, 3, 0.05, 0.3}}) {
        const QString file = form("choice.ui", choice);
        EXPECT_EQ(nuvo::openForm(file).choice, choice) << choice.method;
        EXPECT_EQ(nuvo::openForm(file).state, state);
        const Ran ran =
            run(QStringLiteral(BIN_FOLDER "/nuvostat"), {u("run"), file, u("--format"), u("json")}, folder.path());
        EXPECT_EQ(ran.status, 0) << ran.errors.toStdString();
        const QJsonObject selection =
            QJsonDocument::fromJson(ran.output.toUtf8()).object().value(u("selections")).toArray().first().toObject();
        EXPECT_EQ(selection.value(u("method")).toString(),
                  QStringList({u("optimal"), u("stepwise"), u("forward"), u("backward")})[choice.method]);
        EXPECT_TRUE(ran.output.contains(u("textbook"))) << ran.output.toStdString();
    }
    EXPECT_FALSE(nuvo::openForm(form("plain.ui")).choice);
}

TEST_F(Bridges, ASavedFormIsRunAndOpenedAgain)
{
    make(60);
    state.filter = u("art <> 'it''s'");
    state.records = nuvo::RecordUse::All;
    const QString table = form("table.ui");
    EXPECT_EQ(ofForm(table), expected());
    EXPECT_EQ(nuvo::openForm(table).state, state);
    makeQuery();
    const QString query = form("query.ui");
    EXPECT_EQ(ofForm(query), expected());
    EXPECT_EQ(nuvo::openForm(query).state, state);
}
