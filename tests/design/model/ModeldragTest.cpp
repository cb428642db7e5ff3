// SPDX-License-Identifier: MIT
#include "design/model/Modelhands.h"

namespace {

class ModelDrag : public ModelHands
{
};

} // namespace

TEST_F(ModelDrag, PutsAFieldWhereItIsDropped)
{
    editor.SetModel(model({"", "Log POP"}));
    open();
    drop(field("Y"), nuvo::mimeOfFields({u("TOTEMP")}));
    drop(field("X4"), nuvo::mimeOfFields({u("GNP")}));
    drop(field("X1"), nuvo::mimeOfFields({u("YEAR")}));
    EXPECT_EQ(terms(editor.Model()), (QStringList{u("TOTEMP"), u("Ln(YEAR)"), QString(), QString(), u("GNP")}))
        << "what was there keeps its transformation";
    EXPECT_TRUE(field("X1")->hasFocus());
}

TEST_F(ModelDrag, PutsFurtherFieldsIntoFreePlaces)
{
    open();
    drop(field("X2"), nuvo::mimeOfFields({u("GNP"), u("POP"), u("YEAR")}));
    EXPECT_EQ(terms(editor.Model()), (QStringList{QString(), u("POP"), u("GNP"), u("YEAR")}));
}

TEST_F(ModelDrag, DragsTheMarkedFieldsOfTheListThatHoldNumbers)
{
    list()->selectAll();
    const std::unique_ptr<QMimeData> mime(list()->model()->mimeData(list()->selectionModel()->selectedIndexes()));
    EXPECT_EQ(nuvo::fieldsIn(mime.get()), fewFields().numericNames());
    EXPECT_FALSE(nuvo::placeIn(mime.get()).has_value());
}

TEST_F(ModelDrag, ExchangesPlaces)
{
    editor.SetModel(model({"TOTEMP", "Log GNP", "POP"}));
    open();
    drop(field("X2"), nuvo::mimeOfPlace(1));
    EXPECT_EQ(terms(editor.Model()), (QStringList{u("TOTEMP"), u("POP"), u("Ln(GNP)")}));
    drop(field("Y"), nuvo::mimeOfPlace(2));
    EXPECT_EQ(terms(editor.Model()), (QStringList{u("Ln(GNP)"), u("POP"), u("TOTEMP")}));
}

TEST_F(ModelDrag, EmptiesAPlaceThatIsDraggedBackToTheList)
{
    editor.SetModel(model({"TOTEMP", "Log GNP", "POP"}));
    open();
    drop(list()->viewport(), nuvo::mimeOfPlace(1));
    EXPECT_EQ(terms(editor.Model()), (QStringList{u("TOTEMP"), QString(), u("POP")}));
}

TEST_F(ModelDrag, DropsASecondField)
{
    editor.SetModel(model({"TOTEMP", "Quotient GNP"}));
    open();
    drop(second("X1"), nuvo::mimeOfFields({u("POP")}));
    EXPECT_EQ(shownTerm("X1"), u("GNP/POP"));
    bool taken = true;
    drop(second("X1"), nuvo::mimeOfPlace(0), &taken);
    EXPECT_FALSE(taken) << "a place is no second field";
}

TEST_F(ModelDrag, TakesNothingElse)
{
    editor.SetModel(model({"TOTEMP", "GNP"}));
    open();
    const RegressionModel before = editor.Model();
    bool taken = true;
    drop(field("X1"), nuvo::mimeOfPlace(1), &taken);
    EXPECT_FALSE(taken) << "its own place";
    auto *text = new QMimeData;
    text->setText(u("GNP"));
    drop(field("X1"), text, &taken);
    EXPECT_FALSE(taken);
    auto *odd = new QMimeData;
    odd->setData(u("application/x-nuvo-place"), "77");
    drop(field("X1"), odd, &taken);
    EXPECT_FALSE(taken);
    auto *broken = new QMimeData;
    broken->setData(u("application/x-nuvo-fields"), "\xff\xff\xff\xf0garbage");
    drop(field("X1"), broken, &taken);
    EXPECT_FALSE(taken);
    drop(list()->viewport(), nuvo::mimeOfFields({u("GNP")}), &taken);
    EXPECT_FALSE(taken);
    EXPECT_TRUE(editor.Model() == before);
    drop(field("X1"), nuvo::mimeOfFields({u("NAME")}));
    EXPECT_EQ(said(), u("NAME holds no number (text): it cannot be a variable of a regression."));
    EXPECT_TRUE(editor.Model() == before);
}
