// SPDX-License-Identifier: MIT
#include "design/model/Modelhands.h"

#include <QAbstractItemView>
#include <QCompleter>

// Names that are typed at a place.

namespace {

class ModelTyping : public ModelHands
{
protected:
    QLineEdit *edit(QWidget *slot) { return slot->findChild<QLineEdit *>(u("FieldEdit")); }
};

} // namespace

TEST_F(ModelTyping, BeginsWithALetterAndEndsWithEnter)
{
    open();
    QWidget *slot = field("X1");
    slot->setFocus();
    QTest::keyClick(slot, Qt::Key_G);
    ASSERT_NE(edit(slot), nullptr);
    QTest::keyClicks(edit(slot), u("np"));
    QTest::keyClick(edit(slot), Qt::Key_Return);
    EXPECT_EQ(editor.Model().term(1), u("GNP")) << "as the database writes it";
    EXPECT_TRUE(slot->hasFocus());
    EXPECT_EQ(edit(slot), nullptr);
}

TEST_F(ModelTyping, TakesANameThatIsNotThereAndMarksIt)
{
    open();
    QWidget *slot = field("X1");
    slot->setFocus();
    QTest::keyClick(slot, Qt::Key_F2);
    QTest::keyClicks(edit(slot), u("GNPX"));
    QTest::keyClick(edit(slot), Qt::Key_Tab);
    EXPECT_EQ(editor.Model().term(1), u("GNPX"));
    EXPECT_EQ(trouble("X1"), u("There is no field \"GNPX\"."));
    EXPECT_TRUE(transformation("X1")->hasFocus());
}

TEST_F(ModelTyping, IsGivenUpWithEscape)
{
    editor.SetModel(model({"TOTEMP", "GNP"}));
    editor.SetFields({});
    open();
    QWidget *slot = field("X1");
    slot->setFocus();
    QTest::keyClick(slot, Qt::Key_F2);
    EXPECT_EQ(edit(slot)->text(), u("GNP"));
    QTest::keyClicks(edit(slot), u("other"));
    QTest::keyClick(edit(slot), Qt::Key_Escape);
    EXPECT_EQ(editor.Model().term(1), u("GNP"));
    QTest::keyClick(slot, Qt::Key_F2);
    QTest::keyClick(edit(slot), Qt::Key_Delete);
    QTest::keyClick(edit(slot), Qt::Key_Return);
    EXPECT_TRUE(editor.Model().isEmpty(1)) << "a name that is taken away takes the place with it";
}

TEST_F(ModelTyping, OffersTheFieldsThatHoldNumbers)
{
    open();
    QWidget *slot = field("X1");
    QTest::mouseClick(slot, Qt::LeftButton, {}, QPoint(slot->width() - 8, slot->height() / 2));
    ASSERT_NE(edit(slot), nullptr) << "the arrow opens the list";
    QCompleter *completer = edit(slot)->completer();
    EXPECT_TRUE(completer->popup()->isVisible());
    EXPECT_EQ(completer->completionCount(), 8);
    QTest::keyClicks(edit(slot), u("e"));
    EXPECT_EQ(completer->completionCount(), 5) << "YEAR, UNEMP, ARMED, TOTEMP, GNPDEFL";
    QTest::keyClick(completer->popup(), Qt::Key_Down);
    QTest::keyClick(completer->popup(), Qt::Key_Return);
    EXPECT_EQ(editor.Model().term(1), u("YEAR"));
}

TEST_F(ModelTyping, NamesTheSecondField)
{
    editor.SetModel(model({"TOTEMP", "Product GNP"}));
    open();
    QWidget *slot = second("X1");
    ASSERT_TRUE(slot->isVisible());
    slot->setFocus();
    QTest::keyClick(slot, Qt::Key_P);
    QTest::keyClicks(edit(slot), u("OP"));
    QTest::keyClick(edit(slot), Qt::Key_Return);
    EXPECT_EQ(shownTerm("X1"), u("GNP*POP"));
    QTest::keyClick(slot, Qt::Key_Delete);
    EXPECT_EQ(trouble("X1"), u("No second field is chosen."));
    EXPECT_EQ(editor.Model().field(1), u("GNP")) << "the first one stays";
}
