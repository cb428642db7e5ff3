// SPDX-License-Identifier: MIT
#include "design/Mlrctrl.h"
#include "design/Mlrresp.h"
#include "design/Propertyeditors.h"

#include "design/Definitiontest.h"
#include "support/Databases.h"

#include <QAbstractItemView>
#include <QAction>
#include <QCompleter>

// Names of fields in the definition dialogs.

namespace {

class QueryFields : public testing::Test
{
protected:
    QueryFields()
    {
        db->exec(u("CREATE TABLE employment (TOTEMP DOUBLE, GNP DOUBLE, GNPDEFL DOUBLE, remarks TEXT)"));
        db->exec(u("INSERT INTO employment VALUES (1, 2, 3, 'x')"));
        query.SetName(u("mlrQuery"));
        query.SetDatabaseName(db->name());
        query.SetSQL(u("SELECT TOTEMP, GNP, GNPDEFL, remarks, GNP / 2 AS HALF FROM employment"));
    }

    void editControl(const std::function<void(QDialog &)> &act)
    {
        meet<TMLRQControlVarProperty>("ControlVar01", act);
    }
    void editResponse(const std::function<void(QDialog &)> &act)
    {
        meet<TMLRQResponseVarProperty>("ResponseVarY", act);
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    TMLRQuery query;

private:
    template <class Editor>
    void meet(const char *property, const std::function<void(QDialog &)> &act)
    {
        const Person person([&act](QDialog &dialog) {
            dialog.activateWindow();
            EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
            act(dialog);
            if (dialog.isVisible())
                dialog.reject();
        });
        Editor({&query}, u(property)).Edit();
        EXPECT_TRUE(person.messages.isEmpty()) << person.messages.join(u(" ")).toStdString();
    }
};

QLineEdit *line(const QDialog &dialog, const char *name)
{
    return part<QLineEdit>(dialog, name);
}

/// Waits for the fields, which come while the dialog is open.
void waitForFields(const QDialog &dialog)
{
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            const QCompleter *completer = line(dialog, "edStringX")->completer();
            return completer != nullptr && completer->model()->rowCount() > 0;
        },
        10000));
}

QString faults(const QDialog &dialog)
{
    auto *label = part<QLabel>(dialog, "Faults");
    return label->isVisibleTo(&dialog) ? label->text() : QString();
}

} // namespace

TEST_F(QueryFields, CompleteWhatIsTyped)
{
    editControl([](QDialog &dialog) {
        chooseItem(dialog, 2);
        waitForFields(dialog);
        QLineEdit *edit = line(dialog, "edStringX");
        type(dialog, "edStringX", "gn");
        const QCompleter *completer = edit->completer();
        EXPECT_EQ(completer->completionCount(), 2) << "GNP, GNPDEFL";
        QTest::keyClick(completer->popup(), Qt::Key_Down);
        QTest::keyClick(completer->popup(), Qt::Key_Return);
        EXPECT_EQ(edit->text(), u("GNP"));
        EXPECT_EQ(term(dialog), u("ln(GNP)"));
        EXPECT_EQ(faults(dialog), QString());
        confirm(dialog);
    });
    EXPECT_EQ(query.ControlVar(1).OutputTerm(), u("Ln(GNP)"));
}

TEST_F(QueryFields, AreOfferedAsFarAsTheyHoldNumbers)
{
    editResponse([](QDialog &dialog) {
        waitForFields(dialog);
        const QAbstractItemModel *offered = line(dialog, "edStringX")->completer()->model();
        QStringList names;
        for (int i = 0; i < offered->rowCount(); ++i)
            names += offered->index(i, 0).data().toString();
        EXPECT_EQ(names, (QStringList{u("TOTEMP"), u("GNP"), u("GNPDEFL"), u("HALF")}));
        auto *list = part<QComboBox>(dialog, "cboxTableX");
        EXPECT_EQ(list->count(), 1) << "the list of a table's fields keeps its three dots";
    });
}

TEST_F(QueryFields, MarkANameThatIsNotThere)
{
    editResponse([](QDialog &dialog) {
        waitForFields(dialog);
        EXPECT_EQ(faults(dialog), QString()) << "a new definition's own name is no mistake";
        const auto *mark = line(dialog, "edStringX")->findChild<QAction *>(u("edStringXMark"));
        ASSERT_NE(mark, nullptr);
        EXPECT_FALSE(mark->isVisible());
        type(dialog, "edStringX", "TOTEMPP");
        EXPECT_EQ(faults(dialog), u("There is no field \"TOTEMPP\"."));
        EXPECT_TRUE(mark->isVisible());
        EXPECT_EQ(mark->toolTip(), u("There is no field \"TOTEMPP\"."));
        const auto *label = part<QLabel>(dialog, "Faults");
        EXPECT_GE(label->height(), label->heightForWidth(label->width()));
        EXPECT_TRUE(canConfirm(dialog)) << "it may come to be there";
        QTest::keyClick(line(dialog, "edStringX"), Qt::Key_Backspace);
        EXPECT_EQ(faults(dialog), QString());
        EXPECT_FALSE(mark->isVisible());
        type(dialog, "edStringX", "remarks");
        EXPECT_EQ(faults(dialog), u("The field \"remarks\" holds no number (text)."));
    });
}

TEST_F(QueryFields, MarkTheSecondNameWhereTheFormHasOne)
{
    query.ControlVar(1).SetField1(u("GNP"));
    query.ControlVar(1).SetField2(u("POP"));
    query.ControlVar(1).SetTransformation(u("Product"));
    editControl([](QDialog &dialog) {
        waitForFields(dialog);
        EXPECT_EQ(faults(dialog), u("There is no field \"POP\"."));
        EXPECT_TRUE(line(dialog, "edStringY")->findChild<QAction *>(u("edStringYMark"))->isVisible());
        chooseItem(dialog, 2);
        EXPECT_EQ(faults(dialog), QString()) << "a logarithm has no second field";
        chooseItem(dialog, 8);
        EXPECT_EQ(faults(dialog), u("There is no field \"POP\"."));
        chooseItem(dialog, 0);
        EXPECT_EQ(faults(dialog), QString());
    });
}

TEST_F(QueryFields, SayInPlaceWhyTheyAreNotKnown)
{
    query.SetSQL(u("SELECT GNP FROM employmant"));
    editResponse([](QDialog &dialog) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return faults(dialog).contains(u("employmant")); }, 10000))
            << faults(dialog).toStdString();
        type(dialog, "edStringX", "GNP");
        EXPECT_TRUE(canConfirm(dialog));
    });
    query.SetSQL(QString());
    editResponse([](QDialog &dialog) {
        QTest::qWait(50);
        EXPECT_EQ(faults(dialog), QString()) << "what nobody has asked for is not missed";
    });
}

TEST_F(QueryFields, OfATableThatAreNotThereAreToldUntilAnotherIsPicked)
{
    TMLRTable table;
    table.SetDatabaseName(db->name());
    table.SetTableName(u("employment"));
    table.ResponseVarY().SetField(u("TOTEMPP"));
    const Person person([](QDialog &dialog) {
        EXPECT_EQ(shown(dialog, "cboxTableX"), QString());
        EXPECT_EQ(faults(dialog), u("There is no field \"TOTEMPP\" that holds numbers."));
        EXPECT_FALSE(canConfirm(dialog));
        pick(dialog, "cboxTableX", u("TOTEMP"));
        EXPECT_EQ(faults(dialog), QString());
        dialog.reject();
    });
    TMLRTResponseVarProperty({&table}, u("ResponseVarY")).Edit();
}

TEST_F(QueryFields, AreNotWaitedFor)
{
    query.SetSQL(u("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT count(*) AS GNP FROM n"));
    editResponse([](QDialog &dialog) {
        EXPECT_EQ(faults(dialog), QString());
        type(dialog, "edStringX", "GNP");
        confirm(dialog);
    });
    EXPECT_EQ(query.ResponseVarY().FieldName(), u("GNP"));
}
