// SPDX-License-Identifier: MIT
#include "design/Mlrctrldialog.h"

#include <QLocale>
#include <QScopeGuard>
#include <QWindow>

// Numbers that are typed, in part or wrongly.

TEST(ControlDialog, ADivisorOfZeroBecomesTen)
{
    for (const char *zero : {"0", "0.0", "-0", "0e5"}) {
        const auto edited = editTable(variable("Scale", "GNP", "POP", "2", "100"), [&](QDialog &dialog) {
            type(dialog, "cboxDivideBy", zero);
            EXPECT_EQ(term(dialog), u("GNP/10"));
            confirm(dialog);
        });
        EXPECT_EQ(edited.variable.ScaleFactor(), u("10")) << zero;
        EXPECT_EQ(edited.variable.Field1(), u("GNP"));
    }
}

TEST(ControlDialog, ATablesFieldIsNotTakenOverWhileTheDivisorIsZero)
{
    const auto edited = editTable(variable("Scale", "GNP"), [](QDialog &dialog) {
        type(dialog, "cboxDivideBy", "0");
        pick(dialog, "cboxTableX", u("POP"));
        EXPECT_EQ(term(dialog), u("GNP/10"));
        EXPECT_TRUE(canConfirm(dialog));
        type(dialog, "cboxDivideBy", "5");
        EXPECT_EQ(term(dialog), u("POP/5"));
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.Field1(), u("POP"));
}

TEST(ControlDialog, AnExponentBelowOneHalfIsForAQueryOnly)
{
    const auto typed = [](QDialog &dialog) {
        chooseItem(dialog, 5);
        type(dialog, "cboxpwrY", "0.25");
    };
    editTable(variable("None", "GNP"), [&](QDialog &dialog) {
        typed(dialog);
        EXPECT_FALSE(canConfirm(dialog));
        type(dialog, "cboxpwrY", "0.5");
        EXPECT_TRUE(canConfirm(dialog));
        dialog.close();
    });
    const auto edited = editQuery(variable("None", "GNP"), [&](QDialog &dialog) {
        typed(dialog);
        EXPECT_EQ(term(dialog), u("GNP^0.25"));
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.Exponent(), u("0.25"));
}

TEST(ControlDialog, AnExponentIsWrittenAsAPlainNumber)
{
    const std::pair<const char *, const char *> exponents[] = {
        {"2.00", "2"}, {" 3", "3"}, {"1/2", "0.5"}, {"5e-1", "0.5"}, {"1.", "1"}};
    for (const auto &[typed, written] : exponents) {
        const auto edited = editTable(variable("Power", "GNP"), [text = typed](QDialog &dialog) {
            type(dialog, "cboxpwrY", text);
            EXPECT_EQ(term(dialog), u("GNP^") + u(text));
            confirm(dialog);
        });
        EXPECT_EQ(edited.variable.Exponent(), u(written));
    }
}

TEST(ControlDialog, HalfTypedNumbersAreNoReasonForAMessage)
{
    const auto edited = editQuery(variable("Scale", "AGE"), [](QDialog &dialog) {
        for (const char *key : {"-", "0", ".", "2", "5"}) {
            if (*key == '-')
                type(dialog, "cboxDivideBy", "-");
            else
                QTest::keyClicks(part<QComboBox>(dialog, "cboxDivideBy")->lineEdit(), u(key));
            EXPECT_EQ(canConfirm(dialog), *key != '-') << key;
        }
        EXPECT_EQ(term(dialog), u("AGE/-0.25"));
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.ScaleFactor(), u("-0.25"));
    EXPECT_TRUE(edited.messages.isEmpty());
}

TEST(ControlDialog, ATextThatIsNoNumberIsSaidOnceAndTheDialogStays)
{
    const std::pair<int, const char *> boxes[] = {{5, "cboxpwrY"}, {6, "cboxDivideBy"}};
    for (const auto &[item, box] : boxes) {
        for (const char *wrong : {"abc", "", "1/3", "1e999", "INF", "0x10", "12 34"}) {
            const auto edited = editTable(variable("None", "GNP"), [&, item = item, box = box](QDialog &dialog) {
                chooseItem(dialog, item);
                type(dialog, box, wrong);
                EXPECT_FALSE(canConfirm(dialog)) << wrong;
                EXPECT_EQ(term(dialog), QString());
                leave(dialog);
                EXPECT_TRUE(dialog.isVisible());
                EXPECT_FALSE(canConfirm(dialog));
                part(dialog, box)->setFocus();
                leave(dialog); // nothing new was typed
                type(dialog, box, "2");
                EXPECT_TRUE(canConfirm(dialog));
                confirm(dialog);
            });
            EXPECT_EQ(edited.messages, QStringList(QStringLiteral("\"%1\" is not a number").arg(u(wrong))));
        }
    }
}

TEST(ControlDialog, ReturnAndAFormAlsoAskForTheNumber)
{
    const auto edited = editTable(variable("Scale", "GNP"), [](QDialog &dialog) {
        type(dialog, "cboxDivideBy", "a");
        QTest::keyClick(part<QComboBox>(dialog, "cboxDivideBy")->lineEdit(), Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        type(dialog, "cboxDivideBy", "b");
        chooseItem(dialog, 1); // wants no number
        EXPECT_TRUE(canConfirm(dialog));
        chooseItem(dialog, 6);
        EXPECT_FALSE(canConfirm(dialog));
        pick(dialog, "cboxTableX", u("POP"));
        EXPECT_FALSE(canConfirm(dialog));
        cancel(dialog);
    });
    EXPECT_EQ(edited.messages, (QStringList{u("\"a\" is not a number"), u("\"b\" is not a number")}));
}

TEST(ControlDialog, ReturnConfirmsANumber)
{
    const auto edited = editTable(variable("Scale", "GNP"), [](QDialog &dialog) {
        type(dialog, "cboxDivideBy", "25");
        QTest::keyClick(part<QComboBox>(dialog, "cboxDivideBy")->lineEdit(), Qt::Key_Return);
    });
    EXPECT_EQ(edited.variable.ScaleFactor(), u("25"));
}

TEST(ControlDialog, CancelUponAWrongNumberSaysNothing)
{
    for (const bool byKey : {false, true}) {
        const auto edited = editTable(variable("Scale", "GNP"), [&](QDialog &dialog) {
            type(dialog, "cboxDivideBy", "abc");
            if (byKey)
                QTest::keyClick(&dialog, Qt::Key_Escape);
            else
                cancel(dialog);
            QTest::qWait(100);
        });
        EXPECT_TRUE(edited.messages.isEmpty());
        EXPECT_EQ(edited.variable.ToQStringList(), variable("Scale", "GNP").ToQStringList());
    }
}

TEST(ControlDialog, NoMessageComesBetweenAPressOfTheMouseAndItsRelease)
{
    const auto edited = editQuery(variable("Scale", "AGE"), [](QDialog &dialog) {
        type(dialog, "cboxDivideBy", "abc");
        QWindow *window = dialog.windowHandle();
        const auto *field = part(dialog, "edStringX");
        const QPoint place = field->mapTo(&dialog, field->rect().center());
        int told = 0;
        const TMessageHandler before = SetMessageHandler([&told](const QString &, TMsgDlgType, unsigned, int) {
            ++told;
            return int(mrOk);
        });
        QTest::mousePress(window, Qt::LeftButton, {}, place);
        QTest::qWait(100);
        EXPECT_EQ(told, 0);
        QTest::mouseRelease(window, Qt::LeftButton, {}, place);
        EXPECT_TRUE(QTest::qWaitFor([&told] { return told == 1; }));
        SetMessageHandler(before);
        cancel(dialog);
    });
    EXPECT_TRUE(edited.messages.isEmpty());
}

TEST(ControlDialog, HelpUponAWrongNumberIsTheOnlyMessage)
{
    const auto edited = editTable(variable("Scale", "GNP"), [](QDialog &dialog) {
        type(dialog, "cboxDivideBy", "abc");
        click(dialog, "bbtnHelp");
        QTest::qWait(100);
        cancel(dialog);
    });
    ASSERT_EQ(edited.messages.size(), 1);
    EXPECT_TRUE(edited.messages[0].startsWith(u("This will set each element of ControlVar03")));
}

TEST(ControlDialog, ATypedOneStaysAOne)
{
    const auto edited = editTable(variable("Scale", "GNP"), [](QDialog &dialog) {
        type(dialog, "cboxDivideBy", "1");
        EXPECT_EQ(shown(dialog, "cboxDivideBy"), u("1"));
        leave(dialog);
        EXPECT_EQ(term(dialog), u("GNP/1"));
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.ScaleFactor(), u("1"));
}

TEST(ControlDialog, ADivisorThatIsNotListedIsKept)
{
    const auto edited = editTable(variable("Scale", "GNP", "POP", "2", "2.50"), [](QDialog &dialog) {
        EXPECT_EQ(part<QComboBox>(dialog, "cboxDivideBy")->currentIndex(), -1);
        EXPECT_EQ(term(dialog), u("GNP/2.50"));
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.ScaleFactor(), u("2.50"));
}

TEST(ControlDialog, NumbersHaveTheSignOfTheLocaleAndDefinitionsAPoint)
{
    const QLocale before;
    const auto restore = qScopeGuard([&before] { QLocale::setDefault(before); });
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const auto edited = editTable(variable("Scale", "GNP", "POP", "2", "2.5"), [](QDialog &dialog) {
        EXPECT_EQ(shown(dialog, "cboxDivideBy"), u("2,5"));
        type(dialog, "cboxDivideBy", "0,125");
        EXPECT_EQ(term(dialog), u("GNP/0.125"));
        type(dialog, "cboxDivideBy", "1.000"); // a thousand, or one?
        EXPECT_FALSE(canConfirm(dialog));
        type(dialog, "cboxDivideBy", "1.5");
        EXPECT_TRUE(canConfirm(dialog));
        type(dialog, "cboxDivideBy", "1,25");
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.ScaleFactor(), u("1.25"));
    const auto raised = editQuery(variable("Power", "AGE", "POP", "2.5"), [](QDialog &dialog) {
        EXPECT_EQ(shown(dialog, "cboxpwrY"), u("2,5"));
        type(dialog, "cboxpwrY", "0,5");
        confirm(dialog);
    });
    EXPECT_EQ(raised.variable.Exponent(), u("0.5"));

    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    const auto grouped = editTable(variable("Scale", "GNP"), [](QDialog &dialog) {
        type(dialog, "cboxDivideBy", "1,000");
        leave(dialog);
        EXPECT_FALSE(canConfirm(dialog));
        cancel(dialog);
    });
    EXPECT_EQ(grouped.messages, QStringList(u("\"1,000\" is not a number: digits are written without groups")));
}

TEST(ControlDialog, AStoredTextThatIsNoNumberIsSaidAndCanBePutRight)
{
    const auto edited = editTable(variable("Scale", "GNP", "POP", "2", "lots"), [](QDialog &dialog) {
        EXPECT_EQ(shown(dialog, "cboxDivideBy"), u("lots"));
        EXPECT_FALSE(canConfirm(dialog));
        type(dialog, "cboxDivideBy", "20");
        confirm(dialog);
    });
    EXPECT_EQ(edited.messages, QStringList(u("\"lots\" is not a number")));
    EXPECT_EQ(edited.variable.ScaleFactor(), u("20"));
}
