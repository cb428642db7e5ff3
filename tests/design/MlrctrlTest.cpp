#include "design/Mlrctrl.h"

#include "design/Definitiontest.h"
#include "platform/Errors.h"

#include <QGroupBox>
#include <QLocale>
#include <QScopeGuard>
#include <QScreen>
#include <QWindow>

namespace {

TIndepVar variable(const char *transformation, const char *field1, const char *field2 = "Datafield2",
                   const char *exponent = "1.00", const char *factor = "10")
{
    TIndepVar definition;
    definition.SetTransformation(u(transformation));
    definition.SetField1(u(field1));
    definition.SetField2(u(field2));
    definition.SetExponent(u(exponent));
    definition.SetScaleFactor(u(factor));
    return definition;
}

Edited<TIndepVar> editTable(const TIndepVar &definition, const std::function<void(QDialog &)> &act,
                            const QStringList &fields = fieldNames())
{
    TMLRTable table;
    table.SetName(u("MLRTable1"));
    return openFor<TControlDefDlg>(table, "ControlVar03", definition, act, fields);
}

Edited<TIndepVar> editQuery(const TIndepVar &definition, const std::function<void(QDialog &)> &act)
{
    TMLRQuery query;
    query.SetName(u("MLRQuery1"));
    return openFor<TControlDefDlg>(query, "ControlVar03", definition, act, {u("...")});
}

const char *const kItems[] = {"Inactive",
                              "datafield1",
                              "ln(datafield1)",
                              "1/(datafield1)",
                              "sqrt(datafield)",
                              "(datafield1)^r",
                              "(datafield)/n",
                              "(datafield1)*(datafield2)",
                              "(datafield1)/(datafield2)"};
const char *const kKeywords[] = {"Undefined", "None",  "Log",     "Inverse", "Sqrt",
                                 "Power",     "Scale", "Product", "Quotient"};

const char *const kLower[] = {"pnlTblY", "pnlQryY", "pnlXpwry", "pnlScaleX"};

void expectInFront(const QDialog &dialog, const char *name)
{
    for (const char *panel : kLower)
        EXPECT_EQ(inFront(dialog, panel), u(panel) == u(name)) << panel;
}

QStringList entries(const QWidget &dialog, const char *name)
{
    QStringList list;
    const auto *box = part<QComboBox>(dialog, name);
    for (int i = 0; i < box->count(); ++i)
        list += box->itemText(i);
    return list;
}

} // namespace

TEST(ControlDialog, IsAFormOf339By337Pixels)
{
    TControlDefDlg form;
    EXPECT_EQ(form.windowTitle(), u("Control Variable Definition"));
    EXPECT_EQ(form.size(), QSize(339, 337));
    EXPECT_EQ(form.font().family(), u("Arial"));
    EXPECT_EQ(form.font().pixelSize(), 13);
    for (int i = 0; i < 9; ++i) {
        const auto *item = part<QRadioButton>(form, qPrintable(QStringLiteral("RadioGroup1Item%1").arg(i)));
        EXPECT_EQ(item->text(), u(kItems[i]));
        EXPECT_FALSE(item->isChecked());
    }
    EXPECT_EQ(entries(form, "cboxpwrY"), (QStringList{u("1/2"), u("2"), u("3"), u("4"), u("5"), u("6")}));
    EXPECT_EQ(entries(form, "cboxDivideBy"),
              (QStringList{u("10"), u("100"), u("1000"), u("10000"), u("100000"), u("1000000")}));
    EXPECT_EQ(shown(form, "cboxpwrY"), u("1"));
    EXPECT_EQ(shown(form, "cboxDivideBy"), u("1"));
    EXPECT_EQ(textOf(form, "Label4"), u("Raise datafield1 to the power "));
    EXPECT_EQ(textOf(form, "Label8"), u("Divide datafield1 by the value:"));
    EXPECT_EQ(textOf(form, "Label2"), u("Multivariate Regression"));
    EXPECT_EQ(textOf(form, "Label3"), u("Multivariate Regression"));
    EXPECT_EQ(part(form, "Label2")->palette().color(QPalette::WindowText), QColor(Qt::white));
    EXPECT_EQ(part(form, "Label3")->palette().color(QPalette::WindowText), QColor(0, 0, 0x80));
    EXPECT_FALSE(canConfirm(form));
    EXPECT_EQ(part<QPushButton>(form, "bbtnOK")->text(), u("OK"));
    EXPECT_EQ(part<QPushButton>(form, "bbtnCancel")->text(), u("Cancel"));
    EXPECT_TRUE(part<QPushButton>(form, "bbtnOK")->isDefault());
}

TEST(ControlDialog, NamesTheComponentAndThePropertyAndCannotBeResized)
{
    editTable(TIndepVar(), [](QDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle(), u("MLRTable1 Control Variable Definition"));
        EXPECT_EQ(part<QGroupBox>(dialog, "RadioGroup1")->title(), u("Set ControlVar03 to "));
        EXPECT_EQ(dialog.size(), QSize(339, 337));
        EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
        expectNothingIsClipped(dialog);
        dialog.close();
    });
}

TEST(ControlDialog, ATableHasListsAndAQueryHasEdits)
{
    editTable(TIndepVar(), [](QDialog &dialog) {
        EXPECT_TRUE(part(dialog, "pnlTblX")->isVisible());
        EXPECT_FALSE(part(dialog, "pnlQryX")->isVisible());
        EXPECT_EQ(entries(dialog, "cboxTableX"), fieldNames());
        EXPECT_EQ(entries(dialog, "cboxTableY"), fieldNames());
        expectInFront(dialog, "pnlTblY");
        dialog.close();
    });
    editQuery(TIndepVar(), [](QDialog &dialog) {
        EXPECT_FALSE(part(dialog, "pnlTblX")->isVisible());
        EXPECT_TRUE(part(dialog, "pnlQryX")->isVisible());
        EXPECT_EQ(part<QLineEdit>(dialog, "edStringX")->text(), u("Datafield1"));
        EXPECT_EQ(part<QLineEdit>(dialog, "edStringY")->text(), u("Datafield2"));
        expectInFront(dialog, "pnlQryY");
        dialog.close();
    });
}

TEST(ControlDialog, AFreshVariableIsInactiveAndThatIsComplete)
{
    const auto edited = editTable(TIndepVar(), [](QDialog &dialog) {
        EXPECT_TRUE(part<QRadioButton>(dialog, "RadioGroup1Item0")->isChecked());
        EXPECT_EQ(term(dialog), u("Inactive"));
        EXPECT_FALSE(part(dialog, "cboxTableX")->isEnabled());
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.ToQStringList(), TIndepVar().ToQStringList());
}

TEST(ControlDialog, EveryFormOfAQueryIsStoredAndShown)
{
    const char *const terms[] = {"Inactive", "AGE",     "ln(AGE)",  "1/(AGE)", "AGE^1/2",
                                 "AGE^2",    "AGE/100", "AGE*COST", "AGE/COST"};
    for (int item = 0; item < 9; ++item) {
        const auto edited = editQuery(variable("None", "AGE", "COST", "2", "100"), [&](QDialog &dialog) {
            chooseItem(dialog, item);
            EXPECT_EQ(term(dialog), u(terms[item]));
            confirm(dialog);
        });
        EXPECT_EQ(edited.variable.Transformation(), u(kKeywords[item]));
        EXPECT_EQ(edited.variable.Usage(), item == 0 ? u("Inactive") : u("Active"));
        EXPECT_EQ(edited.variable.Field1(), u("AGE"));
        EXPECT_EQ(edited.variable.Field2(), u("COST"));
        EXPECT_EQ(edited.variable.Exponent(), item == 4 ? u("0.5") : u("2"));
        EXPECT_TRUE(edited.messages.isEmpty());
    }
}

TEST(ControlDialog, EveryFormOfATableIsStoredAndShown)
{
    const char *const terms[] = {"Inactive", "GNP",      "ln(GNP)", "1/(GNP)", "GNP^1/2",
                                 "GNP^3",    "GNP/1000", "GNP*POP", "GNP/POP"};
    for (int item = 1; item < 9; ++item) {
        const auto edited = editTable(TIndepVar(), [&](QDialog &dialog) {
            chooseItem(dialog, item);
            EXPECT_EQ(part(dialog, "cboxTableY")->isEnabled(), item >= 7);
            EXPECT_EQ(part(dialog, "cboxpwrY")->isEnabled(), item == 5);
            EXPECT_EQ(part(dialog, "cboxDivideBy")->isEnabled(), item == 6);
            pick(dialog, "cboxTableX", u("GNP"));
            if (item == 5)
                pick(dialog, "cboxpwrY", u("3"));
            if (item == 6)
                pick(dialog, "cboxDivideBy", u("1000"));
            if (item >= 7) {
                EXPECT_FALSE(canConfirm(dialog)) << "the second field is still open";
                EXPECT_EQ(term(dialog), QString());
                pick(dialog, "cboxTableY", u("POP"));
            }
            EXPECT_EQ(term(dialog), u(terms[item]));
            confirm(dialog);
        });
        EXPECT_EQ(edited.variable.Transformation(), u(kKeywords[item]));
        EXPECT_EQ(edited.variable.Usage(), u("Active"));
        EXPECT_EQ(edited.variable.Field1(), u("GNP"));
        EXPECT_EQ(edited.variable.Field2(), item >= 7 ? u("POP") : u("Datafield2"));
        EXPECT_EQ(edited.variable.Exponent(), item == 4 ? u("0.5") : item == 5 ? u("3") : u("1.00"));
        EXPECT_EQ(edited.variable.ScaleFactor(), item == 6 ? u("1000") : u("10"));
    }
}

TEST(ControlDialog, ItsFormsAreShownAgain)
{
    for (int item = 0; item < 9; ++item) {
        editTable(variable(kKeywords[item], "GNP", "POP", "2", "100"), [&](QDialog &dialog) {
            for (int i = 0; i < 9; ++i)
                EXPECT_EQ(
                    part<QRadioButton>(dialog, qPrintable(QStringLiteral("RadioGroup1Item%1").arg(i)))->isChecked(),
                    i == item);
            EXPECT_EQ(shown(dialog, "cboxTableX"), u("GNP"));
            EXPECT_EQ(shown(dialog, "cboxTableY"), u("POP"));
            EXPECT_EQ(shown(dialog, "cboxpwrY"), item == 4 ? u("1/2") : u("2"));
            EXPECT_EQ(part<QComboBox>(dialog, "cboxDivideBy")->currentIndex(), 1);
            expectInFront(dialog, item == 4 || item == 5 ? "pnlXpwry" : item == 6 ? "pnlScaleX" : "pnlTblY");
            EXPECT_TRUE(canConfirm(dialog));
            dialog.close();
        });
    }
}

TEST(ControlDialog, HelpTellsWhatEachFormDoes)
{
    const char *const texts[] = {
        "The Inactive option disables ControlVar03.",
        "This will set ControlVar03 to the\n\rvalues of the database field with\n\rthe name listed in "
        "\"datafield1\".",
        "This will set ControlVar03 to the\n\rnatural logarithm of the values of\n\rthe database field named in "
        "\"datafield1\".",
        "This will set ControlVar03 to\n\r1 divided by the values of\n\rthe database field named in "
        "\"datafield1\".\n\r\n\rNOTE: All values must be nonzero.",
        "This will set ControlVar03 to the\n\rsquare root of the values of\n\r\"datafield1\".\n\r\n\rAll values must "
        "be >= 0.",
        "This will set ControlVar03 to the\n\rvalues of database field named in\n\r\"datafield1\" raised to the "
        "power\n\rentered below.",
        "This will set each element of ControlVar03\n\rto the value of the database field named "
        "in\n\r\"datafield1\", divided by the value below.",
        "This will set each element of ControlVar03\n\rto the value of the database field named "
        "in\n\r\"datafield1\", multiplied by the value of the\n\rdatabase field named in \"datafield2\".",
        "This will set each element of ControlVar03\n\rto the value of the database field named "
        "in\n\r\"datafield1\", divided by the value of the\n\rdatabase field named in \"datafield2\"."};
    const QString one = u("\n\r\n\rNOTE: \"datafield1\" must be in the\n\rquery's result dataset.");
    const QString both =
        u("\n\r\n\rNOTE: Both \"datafield1\" and \"datafield2\"\n\rmust be in the query's result dataset.");
    editTable(TIndepVar(), [&](QDialog &dialog) {
        for (int item = 0; item < 9; ++item) {
            chooseItem(dialog, item);
            EXPECT_EQ(helpText(dialog), u(texts[item]));
        }
        dialog.close();
    });
    editQuery(TIndepVar(), [&](QDialog &dialog) {
        for (int item = 0; item < 9; ++item) {
            chooseItem(dialog, item);
            const QString note = item == 0   ? QString()
                                 : item < 7  ? one
                                 : item == 7 ? both
                                             : both + u("\n\rALL values in datafield2 MUST be nonzero.");
            EXPECT_EQ(helpText(dialog), u(texts[item]) + note);
        }
        dialog.close();
    });
}

TEST(ControlDialog, HelpAlsoComesWithTheKeys)
{
    int shown = 0;
    editTable(TIndepVar(), [&shown](QDialog &dialog) {
        const TMessageHandler before = SetMessageHandler([&shown](const QString &, TMsgDlgType, unsigned, int) {
            ++shown;
            return int(mrOk);
        });
        QTest::keyClick(&dialog, Qt::Key_F1);
        EXPECT_EQ(shown, 1);
        QTest::keyClick(&dialog, Qt::Key_H, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&shown] { return shown == 2; })) << "a button shows that it is pressed first";
        SetMessageHandler(before);
        dialog.close();
    });
}

TEST(ControlDialog, CancelEscapeAndClosingLeaveTheVariableAsItWas)
{
    const TIndepVar before = variable("Scale", "GNP", "POP", "4", "100");
    const std::function<void(QDialog &)> ends[] = {
        [](QDialog &dialog) { cancel(dialog); },
        [](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
        [](QDialog &dialog) { dialog.close(); },
    };
    for (const auto &end : ends) {
        const auto edited = editTable(before, [&](QDialog &dialog) {
            type(dialog, "cboxDivideBy", "7");
            chooseItem(dialog, 5);
            type(dialog, "cboxpwrY", "3");
            pick(dialog, "cboxTableX", u("YEAR"));
            chooseItem(dialog, 8);
            pick(dialog, "cboxTableY", u("UNEMP"));
            EXPECT_EQ(term(dialog), u("YEAR/UNEMP"));
            chooseItem(dialog, 0);
            end(dialog);
        });
        EXPECT_EQ(edited.variable.ToQStringList(), before.ToQStringList());
        EXPECT_TRUE(edited.messages.isEmpty());
    }
}

TEST(ControlDialog, TheSquareRootSelectsOneHalf)
{
    const auto edited = editTable(variable("Power", "GNP", "POP", "3"), [](QDialog &dialog) {
        EXPECT_EQ(shown(dialog, "cboxpwrY"), u("3"));
        chooseItem(dialog, 4);
        EXPECT_EQ(shown(dialog, "cboxpwrY"), u("1/2"));
        EXPECT_EQ(term(dialog), u("GNP^1/2"));
        EXPECT_FALSE(part(dialog, "cboxpwrY")->isEnabled());
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.Transformation(), u("Sqrt"));
    EXPECT_EQ(edited.variable.Exponent(), u("0.5"));
}

TEST(ControlDialog, ItsPanelComesToTheFrontOnlyWhenTheDialogIsActivated)
{
    editTable(variable("Product", "GNP", "POP"), [](QDialog &dialog) {
        expectInFront(dialog, "pnlTblY");
        chooseItem(dialog, 4); // does not enable the exponent, so it brings nothing to the front
        expectInFront(dialog, "pnlTblY");
        QEvent activated(QEvent::WindowActivate);
        QApplication::sendEvent(&dialog, &activated);
        expectInFront(dialog, "pnlXpwry");
        chooseItem(dialog, 6);
        expectInFront(dialog, "pnlScaleX");
        chooseItem(dialog, 5);
        expectInFront(dialog, "pnlXpwry");
        chooseItem(dialog, 7);
        expectInFront(dialog, "pnlTblY");
        dialog.close();
    });
}

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

TEST(ControlDialog, ATableWithoutAChosenFieldIsCompleteOnlyWhenInactive)
{
    editTable(TIndepVar(), [](QDialog &dialog) {
        for (int item = 0; item < 9; ++item) {
            chooseItem(dialog, item);
            EXPECT_EQ(canConfirm(dialog), item == 0) << kItems[item];
            EXPECT_EQ(term(dialog), item == 0 ? u("Inactive") : QString());
            if (item == 7 || item == 8)
                pick(dialog, "cboxTableY", u("POP"));
            EXPECT_EQ(canConfirm(dialog), item == 0) << kItems[item];
        }
        dialog.close();
    });
}

TEST(ControlDialog, AQueryNeedsAName)
{
    editQuery(variable("None", "AGE", "COST"), [](QDialog &dialog) {
        type(dialog, "edStringX", "");
        for (int item = 1; item < 9; ++item) {
            chooseItem(dialog, item);
            EXPECT_FALSE(canConfirm(dialog)) << kItems[item];
        }
        type(dialog, "edStringX", "W");
        EXPECT_TRUE(canConfirm(dialog));
        EXPECT_EQ(term(dialog), u("W/COST"));
        type(dialog, "edStringY", "");
        EXPECT_FALSE(canConfirm(dialog));
        dialog.close();
    });
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

TEST(ControlDialog, TheExponentsLabelIsSetByBothPanels)
{
    editTable(variable("None", "GNP"), [](QDialog &dialog) {
        chooseItem(dialog, 5);
        EXPECT_EQ(textOf(dialog, "Label4"), u("Raise GNP to the power:"));
        chooseItem(dialog, 6);
        EXPECT_EQ(textOf(dialog, "Label4"), u("Scale GNP by the value:"));
        EXPECT_EQ(textOf(dialog, "Label8"), u("Divide datafield1 by the value:"));
        pick(dialog, "cboxTableX", u("POP"));
        EXPECT_EQ(textOf(dialog, "Label4"), u("Scale POP by the value:"));
        dialog.close();
    });
}

TEST(ControlDialog, TheFocusGoesWhereTheNextEntryIsDue)
{
    const char *const table[] = {"cboxTableX", "cboxTableX",   "cboxTableX", nullptr,
                                 "cboxpwrY",   "cboxDivideBy", "cboxTableY", "cboxTableY"};
    const char *const query[] = {"edStringX", "edStringX",    "edStringX", nullptr,
                                 "cboxpwrY",  "cboxDivideBy", "edStringY", "edStringY"};
    const auto check = [](const char *const(&expected)[8]) {
        return [&expected](QDialog &dialog) {
            for (int item = 1; item < 9; ++item) {
                chooseItem(dialog, item);
                const char *name = expected[item - 1];
                EXPECT_EQ(dialog.focusWidget()->objectName(), name != nullptr ? u(name) : u("RadioGroup1Item4"));
            }
            dialog.close();
        };
    };
    editTable(variable("None", "GNP", "POP"), check(table));
    editQuery(variable("None", "GNP", "POP"), check(query));
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

TEST(ControlDialog, AFieldThatIsNotInTheListIsNotSelected)
{
    const TIndepVar before = variable("Log", "GONE", "POP");
    const auto edited = editTable(before, [](QDialog &dialog) {
        EXPECT_EQ(part<QComboBox>(dialog, "cboxTableX")->currentIndex(), -1);
        EXPECT_FALSE(canConfirm(dialog));
        cancel(dialog);
    });
    EXPECT_EQ(edited.variable.ToQStringList(), before.ToQStringList());
}

TEST(ControlDialog, FieldNamesIgnoreUpperAndLowerCaseWhereNoneIsTheSame)
{
    editTable(variable("None", "gnp", "Pop"), [](QDialog &dialog) {
        EXPECT_EQ(shown(dialog, "cboxTableX"), u("GNP"));
        EXPECT_EQ(shown(dialog, "cboxTableY"), u("POP"));
        EXPECT_TRUE(canConfirm(dialog));
        dialog.close();
    });
    editTable(variable("None", "age"),
              [](QDialog &dialog) {
                  EXPECT_EQ(shown(dialog, "cboxTableX"), u("age"));
                  dialog.close();
              },
              {u("AGE"), u("age")});
}

TEST(ControlDialog, AnUnknownTransformationSelectsNothing)
{
    const TIndepVar before = variable("Cube", "GNP");
    const auto edited = editTable(before, [](QDialog &dialog) {
        for (int i = 0; i < 9; ++i)
            EXPECT_FALSE(
                part<QRadioButton>(dialog, qPrintable(QStringLiteral("RadioGroup1Item%1").arg(i)))->isChecked());
        EXPECT_FALSE(canConfirm(dialog));
        EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
        chooseItem(dialog, 1);
        EXPECT_TRUE(canConfirm(dialog));
        dialog.close();
    });
    EXPECT_EQ(edited.variable.ToQStringList(), before.ToQStringList());
}

TEST(ControlDialog, FillingIsSilentAndThenTheHandlerRunsOnce)
{
    class Counting : public TControlDefDlg
    {
    public:
        int clicks = 0;
        int validations = 0;

    protected:
        void RadioGroup1Click() override
        {
            ++clicks;
            TControlDefDlg::RadioGroup1Click();
        }
        void ValidateData() override
        {
            ++validations;
            TControlDefDlg::ValidateData();
        }
    };
    TMLRTable table;
    Counting dialog;
    TIndepVar definition = variable("Scale", "GNP", "POP", "3", "7");
    const TModalRunner before = SetModalRunner([](QDialog &) { return int(QDialog::Rejected); });
    dialog.OpenForm(table, u("ControlVar01"), fieldNames(), definition);
    EXPECT_EQ(dialog.clicks, 1);
    EXPECT_EQ(dialog.validations, 1);
    definition = variable("Cube", "GNP");
    dialog.OpenForm(table, u("ControlVar01"), fieldNames(), definition);
    EXPECT_EQ(dialog.clicks, 1);
    SetModalRunner(before);
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

TEST(ControlDialog, ADefinitionOfTooFewStringsIsAnErrorOfTheCaller)
{
    TMLRTable table;
    TIndepVar definition;
    definition.Assign(QStringList{u("Active"), u("Log"), u("GNP")});
    const QStringList before = definition.ToQStringList();
    EXPECT_THROW(TControlDefDlg().OpenForm(table, u("ControlVar01"), fieldNames(), definition), EStringListError);
    EXPECT_EQ(definition.ToQStringList(), before);
}

TEST(ControlDialog, GrowsWithLongNamesSoThatNothingIsCut)
{
    const QString name = u("AVERAGE_TEMPERATURE_OF_STATION_1");
    const QByteArray utf8 = name.toUtf8();
    const TIndepVar quotient = variable("Quotient", utf8.constData(), utf8.constData());
    editQuery(quotient, [](QDialog &dialog) {
        EXPECT_GT(dialog.width(), 339);
        EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
        expectNothingIsClipped(dialog);
        dialog.close();
    });
    editTable(variable("Power", utf8.constData()),
              [&](QDialog &dialog) {
                  expectNothingIsClipped(dialog);
                  EXPECT_EQ(textOf(dialog, "Label4"), QStringLiteral("Raise %1 to the power:").arg(name));
                  dialog.close();
              },
              {name});
}

TEST(ControlDialog, IsNeverWiderThanTheScreenAndThenHasTheTermAsAHint)
{
    const QByteArray name(2000, 'W');
    editQuery(variable("None", name.constData()), [&](QDialog &dialog) {
        EXPECT_LE(dialog.width(), dialog.screen()->availableGeometry().width());
        EXPECT_EQ(part(dialog, "Panel2")->toolTip(), u(name.constData()));
        confirm(dialog);
    });
}

TEST(ControlDialog, NamesAreShownAsTheyAre)
{
    for (const char *name : {"R&D", "<b>bold</b>", "a b", "Größe"}) {
        const auto edited = editQuery(variable("Power", name, "POP", "2"), [&](QDialog &dialog) {
            EXPECT_EQ(part<QLabel>(dialog, "Panel2")->textFormat(), Qt::PlainText);
            EXPECT_EQ(part<QLabel>(dialog, "Label4")->textFormat(), Qt::PlainText);
            EXPECT_EQ(term(dialog), u(name) + u("^2"));
            confirm(dialog);
        });
        EXPECT_EQ(edited.variable.Field1(), u(name));
    }
}

TEST(ControlDialog, TabGoesThroughWhatCanBeEntered)
{
    editTable(variable("Product", "GNP", "POP"), [](QDialog &dialog) {
        part(dialog, "RadioGroup1Item7")->setFocus();
        for (const char *next :
             {"cboxTableX", "cboxTableY", "bbtnOK", "bbtnCancel", "bbtnHelp", "RadioGroup1Item7"}) {
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
            EXPECT_EQ(dialog.focusWidget()->objectName(), u(next));
        }
        expectAccessible(dialog);
        dialog.close();
    });
    editQuery(variable("Scale", "GNP"), [](QDialog &dialog) {
        part(dialog, "RadioGroup1Item6")->setFocus();
        for (const char *next : {"edStringX", "cboxDivideBy", "bbtnOK", "bbtnCancel", "bbtnHelp"}) {
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
            EXPECT_EQ(dialog.focusWidget()->objectName(), u(next));
        }
        dialog.close();
    });
}

TEST(ControlDialog, FormsCanBeChosenWithTheArrowKeys)
{
    const auto edited = editTable(variable("Log", "GNP"), [](QDialog &dialog) {
        part(dialog, "RadioGroup1Item2")->setFocus();
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Down);
        EXPECT_EQ(term(dialog), u("1/(GNP)"));
        confirm(dialog);
    });
    EXPECT_EQ(edited.variable.Transformation(), u("Inverse"));
}

TEST(ControlDialog, MayGoWhileItIsOpen)
{
    TMLRTable table;
    TIndepVar definition = variable("Log", "GNP");
    auto *dialog = new TControlDefDlg;
    const TModalRunner before = SetModalRunner([](QDialog &open) {
        delete &open;
        return int(QDialog::Accepted);
    });
    dialog->OpenForm(table, u("ControlVar01"), fieldNames(), definition);
    SetModalRunner(before);
    EXPECT_EQ(definition.Transformation(), u("Log"));
}
