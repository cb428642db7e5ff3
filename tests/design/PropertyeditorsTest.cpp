// SPDX-License-Identifier: MIT
#include "design/Propertyeditors.h"

#include "design/Definitiontest.h"
#include "platform/Errors.h"
#include "select/Cvmain.h"
#include "select/Stepmain.h"
#include "support/Regressions.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QPushButton>

namespace {

/// What an editor wrote, in a designer's place.
struct Written
{
    QString component;
    QString property;
    QStringList value;
};

class PropertyEditors : public testing::Test
{
protected:
    PropertyEditors()
    {
        db->exec(u("CREATE TABLE fields (id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT, born DATE, at TIMESTAMP, "
                   "paid BOOLEAN, price MONEY, amount DECIMAL(10,2), weight DOUBLE PRECISION, small SMALLINT, "
                   "large BIGINT, picture BLOB)"));
        db->exec(u("CREATE TABLE words (name TEXT, born DATE)"));
        table.SetName(u("MLRTable1"));
        table.SetDatabaseName(db->name());
        table.SetTableName(u("fields"));
        query.SetName(u("MLRQuery1"));
    }

    TPropertyEditor::Writer record()
    {
        return [this](TComponent &component, const QString &property, const QVariant &value) {
            written.push_back({component.Name(), property, value.toStringList()});
        };
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    TMLRTable table;
    TMLRQuery query;
    std::vector<Written> written;
};

const std::function<void(QDialog &)> kCancel = [](QDialog &dialog) { cancel(dialog); };

QStringList offered(const QWidget &dialog, const char *name)
{
    QStringList list;
    const auto *box = part<QComboBox>(dialog, name);
    for (int i = 0; i < box->count(); ++i)
        list += box->itemText(i);
    return list;
}

} // namespace

TEST_F(PropertyEditors, OfDefinitionsHaveADialogAndTakeSeveralComponents)
{
    const TPropertyAttributes expected = paDialog | paMultiSelect;
    EXPECT_EQ(TMLRTControlVarProperty({&table}, u("ControlVar01")).GetAttributes(), expected);
    EXPECT_EQ(TMLRQControlVarProperty({&query}, u("ControlVar01")).GetAttributes(), expected);
    EXPECT_EQ(TMLRTResponseVarProperty({&table}, u("ResponseVarY")).GetAttributes(), expected);
    EXPECT_EQ(TMLRQResponseVarProperty({&query}, u("ResponseVarY")).GetAttributes(), expected);
    EXPECT_TRUE(TMLRTControlVarProperty({&table}, u("ControlVar01")).GetValues().isEmpty());
}

TEST_F(PropertyEditors, OfferTheNumericFieldsOfATableInItsOrder)
{
    const QStringList numeric{u("id"), u("price"), u("amount"), u("weight"), u("small"), u("large")};
    const Person person(
        [&](QDialog &dialog) {
            EXPECT_EQ(dialog.windowTitle(), u("MLRTable1 Control Variable Definition"));
            EXPECT_EQ(offered(dialog, "cboxTableX"), numeric);
            EXPECT_EQ(offered(dialog, "cboxTableY"), numeric);
            cancel(dialog);
        },
        [&](QDialog &dialog) {
            EXPECT_EQ(dialog.windowTitle(), u("MLRTable1 Response Variable Definition"));
            EXPECT_EQ(offered(dialog, "cboxTableX"), numeric);
            cancel(dialog);
        });
    TMLRTControlVarProperty({&table}, u("ControlVar02")).Edit();
    TMLRTResponseVarProperty({&table}, u("ResponseVarY")).Edit();
    EXPECT_FALSE(table.Active()) << "no records are read";
}

TEST_F(PropertyEditors, CountAFieldAsNumericByItsClass)
{
    const auto numeric = [this]<class Field>(std::type_identity<Field>) {
        return NumericField(Field(table, 0, u("f"), QString()));
    };
    EXPECT_TRUE(numeric(std::type_identity<TFloatField>()));
    EXPECT_TRUE(numeric(std::type_identity<TCurrencyField>()));
    EXPECT_TRUE(numeric(std::type_identity<TIntegerField>()));
    EXPECT_TRUE(numeric(std::type_identity<TSmallintField>()));
    EXPECT_TRUE(numeric(std::type_identity<TWordField>()));
    EXPECT_TRUE(numeric(std::type_identity<TAutoIncField>()));
    EXPECT_TRUE(numeric(std::type_identity<TLargeintField>()));
    EXPECT_FALSE(numeric(std::type_identity<TBCDField>()));
    EXPECT_FALSE(numeric(std::type_identity<TNumericField>()));
    EXPECT_FALSE(numeric(std::type_identity<TStringField>()));
    EXPECT_FALSE(numeric(std::type_identity<TBooleanField>()));
    EXPECT_FALSE(numeric(std::type_identity<TDateField>()));
    EXPECT_FALSE(numeric(std::type_identity<TTimeField>()));
    EXPECT_FALSE(numeric(std::type_identity<TDateTimeField>()));
    EXPECT_FALSE(numeric(std::type_identity<TBlobField>()));
    EXPECT_FALSE(numeric(std::type_identity<TMemoField>()));
}

TEST_F(PropertyEditors, WriteTheirOwnControlVariable)
{
    for (int k = 1; k <= 10; ++k) {
        const Person person([](QDialog &dialog) {
            chooseItem(dialog, 2);
            pick(dialog, "cboxTableX", u("weight"));
            confirm(dialog);
        });
        TMLRTControlVarProperty({&table}, QStringLiteral("ControlVar%1").arg(k, 2, 10, QLatin1Char('0'))).Edit();
        for (int other = 1; other <= 10; ++other)
            EXPECT_EQ(table.ControlVar(other).Transformation(), other <= k ? u("Log") : u("Undefined"));
        EXPECT_EQ(table.ControlVar(k).Field1(), u("weight"));
    }
}

TEST_F(PropertyEditors, WriteTheResponse)
{
    {
        const Person person([](QDialog &dialog) {
            pick(dialog, "cboxTableX", u("amount"));
            confirm(dialog);
        });
        TMLRTResponseVarProperty({&table}, u("ResponseVarY")).Edit();
    }
    EXPECT_EQ(table.ResponseVarY().FieldName(), u("amount"));
    const Person person([](QDialog &dialog) {
        chooseItem(dialog, 3);
        type(dialog, "edStringX", "TOTEMP");
        confirm(dialog);
    });
    TMLRQResponseVarProperty({&query}, u("ResponseVarY")).Edit();
    EXPECT_EQ(query.ResponseVarY().OutputTerm(), u("1/(TOTEMP)"));
}

TEST_F(PropertyEditors, LetAQuerysFieldsBeTyped)
{
    const Person person([](QDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle(), u("MLRQuery1 Control Variable Definition"));
        EXPECT_EQ(offered(dialog, "cboxTableX"), QStringList(u("...")));
        chooseItem(dialog, 7);
        type(dialog, "edStringX", "GNP");
        type(dialog, "edStringY", "POP");
        confirm(dialog);
    });
    TMLRQControlVarProperty({&query}, u("ControlVar10")).Edit();
    EXPECT_EQ(query.ControlVar(10).OutputTerm(), u("GNP*POP"));
    EXPECT_TRUE(person.messages.isEmpty()) << "there is no database to ask";
}

TEST_F(PropertyEditors, SayWhenATableHasNoNumericFields)
{
    table.SetTableName(u("words"));
    TIndepVar defined = control("Log", "name");
    table.SetControl(1, defined);
    const QStringList response = table.ResponseVarY().ToQStringList();
    const Messages messages;
    TMLRTControlVarProperty controlEditor({&table}, u("ControlVar01"));
    controlEditor.SetWriter(record());
    controlEditor.Edit();
    TMLRTResponseVarProperty responseEditor({&table}, u("ResponseVarY"));
    responseEditor.SetWriter(record());
    responseEditor.Edit();
    const Message expected{u("No numeric fields found in words."), TMsgDlgType::mtError, mbOK, 0};
    EXPECT_EQ(messages.shown, (std::vector<Message>{expected, expected}));
    ASSERT_EQ(written.size(), 2U) << "the unchanged definition is written back all the same";
    EXPECT_EQ(written[0].value, defined.ToQStringList());
    EXPECT_EQ(written[1].value, response);
}

TEST_F(PropertyEditors, WriteTheUnchangedDefinitionAfterCancel)
{
    table.SetControl(3, control("Log", "weight"));
    const std::pair<std::unique_ptr<TPropertyEditor>, QStringList> editors[] = {
        {std::make_unique<TMLRTControlVarProperty>(QList<TComponent *>{&table}, u("ControlVar03")),
         table.ControlVar(3).ToQStringList()},
        {std::make_unique<TMLRTResponseVarProperty>(QList<TComponent *>{&table}, u("ResponseVarY")),
         TDependentVar().ToQStringList()},
        {std::make_unique<TMLRQControlVarProperty>(QList<TComponent *>{&query}, u("ControlVar03")),
         TIndepVar().ToQStringList()},
        {std::make_unique<TMLRQResponseVarProperty>(QList<TComponent *>{&query}, u("ResponseVarY")),
         TDependentVar().ToQStringList()}};
    for (const auto &[editor, value] : editors) {
        const Person person(kCancel);
        editor->SetWriter(record());
        editor->Edit();
        EXPECT_EQ(written.back().property, editor->GetName());
        EXPECT_EQ(written.back().value, value);
    }
    EXPECT_EQ(written.size(), 4U);
}

TEST_F(PropertyEditors, RunTheSetterAlsoAfterCancel)
{
    db->exec(u("INSERT INTO fields (weight, amount) VALUES (1, 2), (2, 3), (3, 5)"));
    table.SetResponse(response("None", "weight"));
    table.SetControl(1, control("None", "amount"));
    table.Open();
    ASSERT_TRUE(table.ReLoad());
    const Person person(kCancel);
    TMLRTControlVarProperty({&table}, u("ControlVar01")).Edit();
    EXPECT_FALSE(table.Loaded());
    EXPECT_EQ(table.ControlVar(1).Field1(), u("amount"));
}

TEST_F(PropertyEditors, EditOnlyTheFirstOfSeveralComponents)
{
    TMLRTable second;
    second.SetName(u("MLRTable2"));
    const Person person([](QDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle(), u("MLRTable1 Control Variable Definition"));
        chooseItem(dialog, 1);
        pick(dialog, "cboxTableX", u("weight"));
        confirm(dialog);
    });
    TMLRTControlVarProperty editor({&table, &second}, u("ControlVar01"));
    editor.Edit();
    EXPECT_EQ(table.ControlVar(1).Transformation(), u("None"));
    EXPECT_EQ(second.ControlVar(1).Transformation(), u("Undefined"));
}

TEST_F(PropertyEditors, RefuseAComponentOfAnotherClass)
{
    const Person nobody;
    const std::unique_ptr<TPropertyEditor> editors[] = {
        std::make_unique<TMLRTControlVarProperty>(QList<TComponent *>{&query}, u("ControlVar01")),
        std::make_unique<TMLRTResponseVarProperty>(QList<TComponent *>{&query}, u("ResponseVarY")),
        std::make_unique<TMLRQControlVarProperty>(QList<TComponent *>{&table}, u("ControlVar01")),
        std::make_unique<TMLRQResponseVarProperty>(QList<TComponent *>{&table}, u("ResponseVarY"))};
    for (const auto &editor : editors) {
        editor->SetWriter(record());
        EXPECT_THROW(editor->Edit(), EInvalidCast);
    }
    EXPECT_TRUE(written.empty());
    try {
        editors[0]->Edit();
    } catch (const EInvalidCast &error) {
        EXPECT_EQ(error.Message(),
                  u("\"MLRQuery1\" is a TMLRQuery and not a TMLRTable, whose ControlVar01 is edited here."));
    }
}

TEST_F(PropertyEditors, KnowNoOtherPropertyThanTheTenControls)
{
    EXPECT_EQ(nuvo::controlNumber(u("ControlVar01")), 1);
    EXPECT_EQ(nuvo::controlNumber(u("ControlVar10")), 10);
    for (const char *name : {"ControlVar00", "ControlVar1", "ControlVar11", "controlvar01", "ControlVar01 ", ""})
        EXPECT_EQ(nuvo::controlNumber(u(name)), 0) << name;

    table.SetControl(1, control("Log", "weight"));
    TMLRTControlVarProperty editor({&table}, u("ControlVar11"));
    editor.SetWriter(record());
    TIndepVar untouched;
    editor.GetCurrentParameters(table, untouched);
    EXPECT_EQ(untouched.ToQStringList(), TIndepVar().ToQStringList());
    editor.SetNewParameters(table, control("Log", "price"));
    EXPECT_TRUE(written.empty());
    for (int k = 2; k <= 10; ++k)
        EXPECT_EQ(table.ControlVar(k).Transformation(), u("Undefined"));
}

TEST_F(PropertyEditors, PassOnErrorsOfTheDatabaseAndChangeNothing)
{
    const Person nobody;
    const std::function<void()> breakages[] = {
        [this] { table.SetTableName(u("nothing")); },
        [this] { table.SetTableName(QString()); },
        [this] { table.SetDatabaseName(db->name() + u(".gone")); },
        [this] { table.SetDatabaseName(QString()); },
    };
    for (const auto &spoil : breakages) {
        spoil();
        TMLRTControlVarProperty controlEditor({&table}, u("ControlVar01"));
        controlEditor.SetWriter(record());
        EXPECT_THROW(controlEditor.Edit(), EDatabaseError);
        TMLRTResponseVarProperty responseEditor({&table}, u("ResponseVarY"));
        responseEditor.SetWriter(record());
        EXPECT_THROW(responseEditor.Edit(), EDatabaseError);
    }
    EXPECT_TRUE(written.empty());
    EXPECT_TRUE(nobody.messages.isEmpty());
    EXPECT_FALSE(QFileInfo::exists(db->name() + u(".gone")));
}

TEST_F(PropertyEditors, PassOnWhatTheWriterRefuses)
{
    const Person person(kCancel);
    TMLRTControlVarProperty editor({&table}, u("ControlVar01"));
    editor.SetWriter([](TComponent &, const QString &, const QVariant &) { throw EDatabaseError(u("busy")); });
    EXPECT_THROW(editor.Edit(), EDatabaseError);
}

TEST_F(PropertyEditors, NoticeThatTheComponentHasGoneMeanwhile)
{
    auto gone = std::make_unique<TMLRTable>();
    gone->SetDatabaseName(db->name());
    gone->SetTableName(u("fields"));
    TMLRTControlVarProperty editor({gone.get()}, u("ControlVar01"));
    editor.SetWriter(record());
    const Person person([&](QDialog &dialog) {
        gone.reset();
        chooseItem(dialog, 1);
        pick(dialog, "cboxTableX", u("weight"));
        confirm(dialog);
    });
    EXPECT_THROW(editor.Edit(), EInvalidCast);
    EXPECT_TRUE(written.empty());
    EXPECT_TRUE(editor.Components().isEmpty());
}

TEST_F(PropertyEditors, OfferTheRegressionsOfTheForm)
{
    QWidget form;
    QWidget other;
    auto *box = new QWidget(&form);
    TMLRTable zulu(&form);
    TTable plain(&form);
    TMLRQuery alpha(box);
    TMLRTable nameless(&form);
    TMLRTable elsewhere(&other);
    TOptimizeMLR optimize(&form);
    zulu.SetName(u("Zulu"));
    plain.SetName(u("Plain"));
    alpha.SetName(u("Alpha"));
    elsewhere.SetName(u("Elsewhere"));
    optimize.SetName(u("Optimize"));
    TDatasetProperty editor({&optimize}, u("Dataset"));
    EXPECT_EQ(editor.GetAttributes(), paValueList | paMultiSelect | paSortList);
    EXPECT_EQ(editor.GetValues(), (QStringList{u("Alpha"), u("Zulu")})) << "in the form's order";
    editor.SetScopeFinder([&](const TComponent &component) {
        EXPECT_EQ(&component, &optimize);
        return &other;
    });
    EXPECT_EQ(editor.GetValues(), QStringList(u("Elsewhere")));
    editor.SetScopeFinder([](const TComponent &) -> QWidget * { return nullptr; });
    EXPECT_TRUE(editor.GetValues().isEmpty());
    TOptimizeMLR alone;
    EXPECT_TRUE(TDatasetProperty({&alone}, u("Dataset")).GetValues().isEmpty());
}

TEST_F(PropertyEditors, OfferTheTablesOfTheForm)
{
    QWidget form;
    TTable own(&form);
    TTable plain(&form);
    TMLRTable regression(&form);
    TMLRQuery noTable(&form);
    TStepWiseMLR stepwise(&form);
    own.SetName(u("Own"));
    plain.SetName(u("Plain"));
    regression.SetName(u("Regression"));
    noTable.SetName(u("NoTable"));
    EXPECT_EQ(TTableComponentProperty({&stepwise}, u("FDistTable")).GetValues(),
              (QStringList{u("Own"), u("Plain"), u("Regression")}));
    EXPECT_EQ(TTableComponentProperty({&own}, u("FDistTable")).GetValues(),
              (QStringList{u("Plain"), u("Regression")}));
}

TEST_F(PropertyEditors, OfferTheColumnsOfAnFTable)
{
    TStepWiseMLR stepwise;
    TFTableProperty editor({&stepwise}, u("FPercent"));
    EXPECT_EQ(editor.GetAttributes(), paValueList | paMultiSelect | paSortList);
    EXPECT_EQ(editor.GetValues(), (QStringList{u("1 Percent"), u("5 Percent"), u("10 Percent")}));
    TStepWiseMLR second;
    TFTableProperty both({&stepwise, &second}, u("FPercent"));
    both.SetValue(u("5 Percent"));
    EXPECT_EQ(stepwise.FPercent(), u("5 Percent"));
    EXPECT_EQ(second.FPercent(), u("5 Percent"));
}

TEST_F(PropertyEditors, OfferTheTablesOfTheDatabase)
{
    TTableNameProperty editor({&table}, u("TableName"));
    EXPECT_EQ(editor.GetAttributes(), paValueList | paMultiSelect | paSortList);
    EXPECT_EQ(editor.GetValues(), (QStringList{u("fields"), u("words")}));
    table.SetDatabaseName(db->name() + u(".gone"));
    EXPECT_THROW(editor.GetValues(), EDatabaseError);
    EXPECT_THROW(TTableNameProperty({&query}, u("TableName")).GetValues(), EInvalidCast);
}

TEST_F(PropertyEditors, LetTheDatabasesFileBeChosen)
{
    const auto chooseFile = [this](QDialog &dialog) {
        auto *edit = part<QLineEdit>(dialog, "fileNameEdit");
        edit->setText(db->name());
        QTest::keyClick(edit, Qt::Key_Return);
    };
    const auto mistype = [this](QDialog &dialog) {
        part<QLineEdit>(dialog, "fileNameEdit")->setText(db->name() + u(".gone"));
        dialog.reject();
    };
    TMLRQuery second;
    TDatabaseNameProperty editor({&query, &second}, u("DatabaseName"));
    EXPECT_EQ(editor.GetAttributes(), paDialog | paMultiSelect);
    const Person person(chooseFile, mistype);
    editor.Edit();
    EXPECT_EQ(query.DatabaseName(), db->name());
    EXPECT_EQ(second.DatabaseName(), db->name());
    editor.Edit();
    EXPECT_EQ(query.DatabaseName(), db->name());
}

TEST_F(PropertyEditors, ChangeTheNameOfAServerInTheDialogForConnections)
{
    query.SetDatabaseName(u("postgresql://me@127.0.0.1:1/sales"));
    TDatabaseNameProperty editor({&query}, u("DatabaseName"));
    const Person person([](QDialog &dialog) {
        EXPECT_EQ(part<QLineEdit>(dialog, "user")->text(), u("me"));
        part<QLineEdit>(dialog, "user")->setText(u("you"));
        dialog.accept(); // tries it first
        auto *ok = part<QDialogButtonBox>(dialog, "buttons")->button(QDialogButtonBox::Ok);
        EXPECT_TRUE(QTest::qWaitFor([ok] { return ok->text() != u("OK"); }, 20000));
        dialog.accept();
    });
    editor.Edit();
    EXPECT_EQ(query.DatabaseName(), u("postgresql://you@127.0.0.1:1/sales"));
}
