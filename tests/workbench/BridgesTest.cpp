// SPDX-License-Identifier: MIT
#include "app/Formreader.h"
#include "app/Terms.h"
#include "platform/Errors.h"
#include "support/Text.h"
#include "workbench/Ascode.h"
#include "workbench/Ascommand.h"
#include "workbench/Asform.h"

#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

void define(nuvo::ModelState &state, int place, const char *keyword, const char *field, const char *second = "")
{
    state.model.setField(place, u(field));
    state.model.setTransformation(place, u(keyword));
    state.model.setSecondField(place, u(second));
    state.model.setNumber(place, u(second));
}

nuvo::ModelState longley()
{
    nuvo::ModelState state;
    state.database = u("/data/samples.db");
    state.table = u("Longley");
    define(state, 0, "None", "TOTEMP");
    define(state, 1, "Log", "GNP");
    define(state, 3, "Power", "YEAR", "2");
    return state;
}

} // namespace

TEST(Commands, HaveTheFitInOneLine)
{
    EXPECT_EQ(nuvo::fitCommand(longley()), u("nuvostat fit --database /data/samples.db --table Longley "
                                             "--response TOTEMP --control 'Ln(GNP)' --control 'YEAR^2'"));
}

TEST(Commands, QuoteWhatAShellOrTheProgramWouldReadOtherwise)
{
    nuvo::ModelState state = longley();
    state.database = u("/data/my own.db");
    state.filter = u("YEAR > 1950 AND name = 'it''s'");
    state.records = nuvo::RecordUse::All;
    define(state, 0, "None", "1999");
    define(state, 1, "Log", "GNP/cap");
    define(state, 3, "Product", "say \"x\"", "b*c");
    const QString line = nuvo::fitCommand(state);
    EXPECT_TRUE(line.contains(u(" --database '/data/my own.db' "))) << line.toStdString();
    EXPECT_TRUE(line.contains(u(" --filter 'YEAR > 1950 AND name = '\\''it'\\'''\\''s'\\''' ")))
        << line.toStdString();
    EXPECT_TRUE(line.contains(u(" --response '\"1999\"' "))) << line.toStdString();
    EXPECT_TRUE(line.endsWith(u(" --records all"))) << line.toStdString();
}

TEST(Commands, WriteTermsThatAreReadAsTheyWereMeant)
{
    for (const char *name :
         {"GNP", "a b", "GNP/cap", "x^2", "1999", "Ln(x)", "(x)", "\"quoted\"", "naïve", "1e5", "-3", " x"}) {
        for (const nuvo::Transformation &transformation : nuvo::controlTransformations()) {
            if (!transformation.term)
                continue;
            nuvo::ModelState state = longley();
            const bool fields = transformation.second == nuvo::Second::Field2;
            define(state, 2, transformation.keyword.toUtf8().constData(), name, fields ? name : "3");
            const QString text = nuvo::commandTerm(state.model, 2);
            const nuvo::Term term = nuvo::parseControl(text);
            EXPECT_EQ(term.transformation, transformation.keyword) << text.toStdString();
            EXPECT_EQ(term.field1, u(name)) << text.toStdString();
            EXPECT_EQ(term.field2, fields ? u(name) : QString()) << text.toStdString();
            const bool number = !fields && transformation.second != nuvo::Second::Nothing;
            EXPECT_EQ(term.exponent + term.scaleFactor, number ? u("3") : QString()) << text.toStdString();
        }
    }
}

TEST(Programs, HaveTheirTextsAsLiterals)
{
    EXPECT_EQ(nuvo::cppLiteral(u("a\"b\\c\nd\te\x01") + u'7'), u("\"a\\\"b\\\\c\\nd\\te\\0017\""));
    nuvo::ModelState state = longley();
    state.filter = u("name <> \"x\"");
    const QString code = nuvo::fitProgram(state);
    EXPECT_TRUE(code.contains(u("        TMLRTable regression;\n"))) << code.toStdString();
    EXPECT_TRUE(code.contains(u("regression.SetFilter(\"name <> \\\"x\\\"\");\n"))) << code.toStdString();
    EXPECT_TRUE(code.contains(u("regression.ControlVar(2).SetExponent(\"2\");\n"))) << code.toStdString();
}

TEST(FormsOfStates, AreReadAsTheStateThatTheyWereMadeOf)
{
    const QTemporaryDir folder;
    const QString form = folder.filePath(u("model.ui"));
    for (const bool query : {false, true}) {
        nuvo::ModelState state = longley();
        state.database = folder.filePath(u("data.db"));
        ASSERT_TRUE(QFile(state.database).open(QIODevice::WriteOnly));
        if (query) {
            state.table.clear();
            state.sql = u("SELECT *\nFROM Longley WHERE GNP < 3 AND 'a' = 'ä & <b>'");
        } else {
            state.filter = u("GNP < 3 & 1");
        }
        state.records = nuvo::RecordUse::All;
        QFile file(form);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(nuvo::formFile(state, folder.path()));
        file.close();
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_TRUE(file.readAll().contains("<string notr=\"true\">data.db</string>"));
        file.close();
        EXPECT_EQ(nuvo::openForm(form).state, state);
    }
}

TEST(FormsOfStates, WithoutARegressionAreRefused)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u("empty.ui")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<ui version=\"4.0\"><class>F</class><widget class=\"QWidget\" name=\"F\"/></ui>");
    file.close();
    EXPECT_TRUE(errorOf<EPlatformError>([&] { nuvo::openForm(file.fileName()); }).contains(u("has no regression")));
}

TEST(States, ComeBackFromJson)
{
    nuvo::ModelState state = longley();
    state.filter = u("x > 1");
    state.records = nuvo::RecordUse::Server;
    const QByteArray text = QJsonDocument(nuvo::toJson(state)).toJson();
    EXPECT_EQ(nuvo::stateFromJson(QJsonDocument::fromJson(text).object()), state);
    EXPECT_EQ(nuvo::stateFromJson(QJsonObject{{u("table"), 3}, {u("ControlVar01"), u("x")}}), nuvo::ModelState());
    EXPECT_EQ(state.title(), u("TOTEMP on Ln(GNP), YEAR^2"));
    EXPECT_FALSE(nuvo::ModelState().isFittable());
    EXPECT_TRUE(state.isFittable());
}
