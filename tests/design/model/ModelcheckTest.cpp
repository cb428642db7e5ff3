// SPDX-License-Identifier: MIT
#include "design/model/Modelcheck.h"

#include "design/model/Modelhands.h"

#include <QLocale>

namespace {

/// "X1! No field is chosen.": the exclamation mark stands for what is unfinished.
QStringList problems(const RegressionModel &shown, const nuvo::ModelFields &fields = fewFields())
{
    QStringList list;
    for (const nuvo::ModelProblem &problem : nuvo::modelProblems(shown, fields))
        list += RegressionModel::label(problem.place) + (problem.unfinished ? u("! ") : u(" ")) + problem.text;
    return list;
}

} // namespace

TEST(ModelProblems, AreNoneOfAFinishedModelAndOfAnEmptyOne)
{
    EXPECT_EQ(problems({}), QStringList());
    EXPECT_EQ(problems(model({"Log TOTEMP", "Log GNP", "GNP", "Power GNP 2", "Power GNP 3", "Scale GNP 10",
                              "Product GNP POP", "Quotient GNP POP", "Quotient POP GNP", "Sqrt POP", "Inverse pop"})),
              QStringList());
}

TEST(ModelProblems, TellWhatIsMissing)
{
    RegressionModel unfinished = model({"TOTEMP", "Product GNP"});
    unfinished.setTransformation(2, u("Log"));
    EXPECT_EQ(problems(unfinished), (QStringList{u("X1! No second field is chosen."), u("X2! No field is chosen.")}));
}

TEST(ModelProblems, TellNumbersThatAreNone)
{
    EXPECT_EQ(problems(model({"Scale TOTEMP ten", "Scale GNP 0", "Power GNP 2.5", "Power POP 0", "Power POP x"})),
              (QStringList{u("Y! \"ten\" is not a number."), u("X1! It cannot be divided by 0."),
                           u("X2! The exponent has to be a whole number of at least 1."),
                           u("X3! The exponent has to be a whole number of at least 1."),
                           u("X4! \"x\" is not a number.")}));
}

TEST(ModelProblems, TellFieldsThatAreNotThereOrHoldNoNumbers)
{
    const RegressionModel doubtful = model({"TOTEMPP", "NAME", "Product GNP BORN", "totemp"});
    EXPECT_EQ(problems(doubtful),
              (QStringList{u("Y There is no field \"TOTEMPP\"."), u("X1 The field \"NAME\" holds no number (text)."),
                           u("X2 The field \"BORN\" holds no number (date).")}));
    EXPECT_EQ(problems(doubtful, {}), QStringList()) << "nothing is missed while the fields are not known";
}

TEST(ModelProblems, TellTheSameTermTwiceAndTheResponseAmongTheControls)
{
    EXPECT_EQ(problems(model({"TOTEMP", "Log GNP", "Product GNP POP", "Log gnp", "Product POP GNP", "TOTEMP",
                              "Scale POP 10", "Scale POP 10.0", "Quotient GNP POP", "Quotient POP GNP"})),
              (QStringList{u("X3 This is the same term as X1."), u("X4 This is the same term as X2."),
                           u("X5 This is the response itself."), u("X7 This is the same term as X6.")}));
}

TEST(ModelProblems, TellTransformationsThatAreNotKnownHere)
{
    RegressionModel odd;
    odd.setStrings(1, {u("Active"), u("Cube"), u("GNP"), u("Datafield2"), u("1.00"), u("10")});
    odd.setStrings(2, {u("Active"), u("Scaled"), u("GNP"), u("Datafield2"), u("1.00"), u("10")});
    EXPECT_EQ(problems(odd), (QStringList{u("X1 \"Cube\" is no transformation that is known here."),
                                          u("X2 \"Scaled\" is no transformation that is known here.")}));
}

TEST(ModelFields, AreReadWithTheirKinds)
{
    const auto db = TestDatabase::make(TestDatabase::Sqlite);
    db->exec(u("CREATE TABLE kinds (id INTEGER PRIMARY KEY, name TEXT, born DATE, at TIMESTAMP, noon TIME, "
               "paid BOOLEAN, price MONEY, amount DECIMAL(10,2), picture BLOB, remarks CLOB)"));
    TMLRTable table;
    table.SetDatabaseName(db->name());
    table.SetTableName(u("kinds"));
    const nuvo::ModelFields fields = nuvo::modelFields(table);
    ASSERT_TRUE(fields.known);
    QStringList seen;
    for (const nuvo::ModelField &field : fields.fields)
        seen += field.name + u(": ") + field.kind + (field.numeric ? u(" +") : u(" -"));
    EXPECT_EQ(seen,
              (QStringList{u("id: whole number +"), u("name: text -"), u("born: date -"), u("at: date and time -"),
                           u("noon: time -"), u("paid: yes or no -"), u("price: money +"), u("amount: number +"),
                           u("picture: binary -"), u("remarks: text -")}));
    EXPECT_FALSE(table.Active()) << "no records are read";
}

TEST(ModelFields, SayWhyTheyAreNotKnown)
{
    TMLRTable table;
    table.SetDatabaseName(u("nowhere.db"));
    table.SetTableName(u("T"));
    const nuvo::ModelFields fields = nuvo::modelFields(table);
    EXPECT_FALSE(fields.known);
    EXPECT_TRUE(fields.why.startsWith(u("Cannot open the database \"nowhere.db\": there is no such file")))
        << fields.why.toStdString();
}
