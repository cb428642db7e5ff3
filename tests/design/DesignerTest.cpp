// SPDX-License-Identifier: MIT
// What a walk through Qt Designer (session/Driver.cpp) saw, and what it ought to have seen.

#include "design/Sessionseen.h"

#include <QRegularExpression>

namespace {

const char *const Missing = "Cannot open the database \"nowhere.db\": there is no such file in \"" SESSION
                            "\" and no registered connection of that name.";

} // namespace

TEST_F(Designer, ShowsTwoPagesOnThePaletteInOrderAndWithIcons)
{
    QMap<QString, Strings> pages;
    for (const auto &page : seen("pages").toArray()) {
        for (const auto &widget : page[QLatin1String("widgets")].toArray())
            pages[page[QLatin1String("page")].toString()] += widget.toString();
    }
    EXPECT_EQ(pages[QStringLiteral("Nuvo Statistics")],
              words("TMLRTable;TMLRQuery;TOptimizeMLR;TBackElimMLR;TFwdSelectMLR;TStepWiseMLR"));
    EXPECT_EQ(pages[QStringLiteral("Data Access")], words("TTable;TQuery"));
    EXPECT_EQ(list("withoutIcon"), Strings());
}

TEST_F(Designer, KnowsWhatEveryComponentIsAndWhereItsHeaderIs)
{
    const QJsonArray classes = seen("classes").toArray();
    EXPECT_EQ(classes.size(), 8);
    for (const auto &component : classes) {
        SCOPED_TRACE(component[QLatin1String("name")].toString().toStdString());
        EXPECT_FALSE(component[QLatin1String("toolTip")].toString().isEmpty());
        EXPECT_FALSE(component[QLatin1String("whatsThis")].toString().isEmpty());
        EXPECT_TRUE(component[QLatin1String("icon")].toBool());
        EXPECT_FALSE(component[QLatin1String("container")].toBool());
        const QString header = component[QLatin1String("header")].toString();
        ASSERT_TRUE(header.startsWith(u'<') && header.endsWith(u'>')) << qPrintable(header);
        EXPECT_TRUE(QFile::exists(QStringLiteral(SOURCE_ROOT "/") + header.mid(1, header.size() - 2)));
    }
}

TEST_F(Designer, ShowsANewComponentWithASensibleNameThatFits)
{
    const QJsonArray put = seen("put").toArray();
    ASSERT_EQ(put.size(), 2);
    EXPECT_EQ(put[0][QLatin1String("name")].toString(), QStringLiteral("mlrTable"));
    EXPECT_EQ(put[1][QLatin1String("name")].toString(), QStringLiteral("stepWiseMLR"));
    for (const auto &component : put) {
        EXPECT_TRUE(component[QLatin1String("visible")].toBool());
        EXPECT_TRUE(component[QLatin1String("designing")].toBool());
        EXPECT_GT(component[QLatin1String("width")].toInt(), 32);
        EXPECT_GT(component[QLatin1String("height")].toInt(), 32);
    }
    EXPECT_TRUE(yes("managed"));
}

TEST_F(Designer, ShowsPublishedPropertiesAndOnlyThoseInTheOrderOfAModelWithToolTips)
{
    EXPECT_EQ(
        list("tableRows"),
        words("[QObject];objectName;[Data];Active;DatabaseName;TableName;Filter;Filtered;IndexFieldNames;Records;"
              "[Response];Model;ResponseVarY;[Controls];ControlVar01;ControlVar02;ControlVar03;ControlVar04;"
              "ControlVar05;ControlVar06;ControlVar07;ControlVar08;ControlVar09;ControlVar10;[Options];"
              "Description;ShowLoadProgress;ShowWarnings;ReportMessage"));
    EXPECT_EQ(
        list("stepWiseRows"),
        words("[QObject];objectName;[Data];Dataset;[Choice];Rule;[Thresholds];FDistTable;FInDefault;FOutDefault;"
              "FPercent;PIn;POut;[Options];ShowReport;ShowProgress"));
    EXPECT_EQ(list("rowsWithoutToolTip"), Strings());
}

TEST_F(Designer, OffersEveryDefinitionInTheContextMenu)
{
    EXPECT_EQ(list("contextMenu"),
              words("Model…;Choose DatabaseName…;Choose TableName…;Define ResponseVarY…;Define ControlVar01…;Define "
                    "ControlVar02…;Define ControlVar03…;Define ControlVar04…;Define ControlVar05…;Define "
                    "ControlVar06…;Define ControlVar07…;Define ControlVar08…;Define ControlVar09…;Define "
                    "ControlVar10…;Clear definition;Fit and show…"));
}

TEST_F(Designer, TakesATypedDatabaseAndDropsDownItsTables)
{
    EXPECT_EQ(text("databaseName"), QStringLiteral("samples.db"));
    EXPECT_TRUE(list("tables").contains(QStringLiteral("Longley")));
    EXPECT_GT(list("tables").size(), 2);
    EXPECT_EQ(text("tableName"), QStringLiteral("Longley"));
}

TEST_F(Designer, DefinesVariablesByDoubleClickMenuAndRow)
{
    EXPECT_EQ(text("firstDialog"), QStringLiteral("mlrTable Response Variable Definition"));
    EXPECT_EQ(text("secondDialog"), QStringLiteral("mlrTable Control Variable Definition"));
    EXPECT_EQ(list("fields"), words("GNPDEFL;GNP;UNEMP;ARMED;POP;YEAR;TOTEMP"));
    EXPECT_EQ(list("response"), words("Undefined;None;TOTEMP;Undefined;Undefined;1"));
    EXPECT_EQ(list("control1"), words("Active;Log;GNP;Datafield2;1.00;10"));
    EXPECT_EQ(list("control2"), words("Active;None;UNEMP;Datafield2;1.00;10"));
    EXPECT_EQ(list("control3"), words("Active;None;YEAR;Datafield2;1.00;10"));
    EXPECT_EQ(text("control1Row"), QStringLiteral("Ln(GNP)"));
}

TEST_F(Designer, UndoesAndRedoesADefinitionAndACancelIsNoStep)
{
    EXPECT_EQ(seen("commandsOfACancel").toInt(-1), 0);
    EXPECT_EQ(text("undoText"), QStringLiteral("Change ControlVar03 of \"mlrTable\""));
    EXPECT_EQ(list("control3Undone"), words("Inactive;Undefined;Datafield1;Datafield2;1.00;10"));
    EXPECT_EQ(list("control3Redone"), list("control3"));
    EXPECT_TRUE(yes("redoGivesTheSameForm"));
    EXPECT_EQ(list("resetControl1"), list("control3Undone"));
    EXPECT_EQ(list("control1AfterUndoneReset"), list("control1"));
}

TEST_F(Designer, BindsASelectionByTheListsOfItsRows)
{
    EXPECT_EQ(list("datasets"), words("mlrTable"));
    EXPECT_EQ(list("percents"), words("1 Percent;10 Percent;5 Percent")); // the list is shown sorted
    EXPECT_EQ(list("fTables"), words("mlrTable"));
    EXPECT_EQ(text("dataset"), QStringLiteral("mlrTable"));
    EXPECT_EQ(text("percent"), QStringLiteral("5 Percent"));
    EXPECT_EQ(text("fTable"), QString());
    EXPECT_TRUE(yes("bound"));
}

TEST_F(Designer, MarksTheFormChangedAndSavesIt)
{
    EXPECT_TRUE(yes("dirtyBeforeSave"));
    EXPECT_FALSE(yes("dirtyAfterSave"));
    EXPECT_FALSE(yes("dirtyAfterReload"));
    EXPECT_EQ(text("reloaded"), text("saved"));
    EXPECT_EQ(text("saved").count(QStringLiteral("<stringlist notr=\"true\">")), 11);
    EXPECT_FALSE(text("saved").contains(QStringLiteral("<stringlist>")));
    EXPECT_TRUE(text("saved").contains(QStringLiteral("<header location=\"global\">engine/Mlrtable.h</header>")));
}

TEST_F(Designer, SavesTheFormOfTheExamples)
{
    QFile file(QStringLiteral(SOURCE_ROOT "/examples/Designed.ui"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    // How wide a name is depends on the fonts.
    static const QRegularExpression size(QStringLiteral("<(width|height)>\\d+</(width|height)>"));
    QString saved = text("saved").remove(size);
    // Newer versions write an enumeration's name before that of its value.
    static const QRegularExpression qualified(QStringLiteral("<enum>(\\w+)::T\\w+::(\\w+)</enum>"));
    saved.replace(qualified, QStringLiteral("<enum>\\1::\\2</enum>"));
    EXPECT_EQ(saved, QString::fromUtf8(file.readAll()).remove(size));
}

TEST_F(Designer, CopiesAndPastesAComponentWithItsDefinitions)
{
    EXPECT_EQ(list("pastedControl1"), list("control1"));
    EXPECT_TRUE(yes("pastedDesigning"));
    EXPECT_EQ(text("contentsAfterPaste").count(QStringLiteral("<stringlist notr=\"true\">")), 22);
    EXPECT_EQ(list("datasetsAfterPaste"), words("mlrTable;mlrTable_2"));
    EXPECT_TRUE(yes("pasteUndone"));
    EXPECT_EQ(list("datasetsAfterUndonePaste"), words("mlrTable"));
    EXPECT_FALSE(yes("findsUndonePasted"));
    EXPECT_TRUE(yes("pasteRedone"));
}

TEST_F(Designer, ChoosesFromTheContextMenuAndForSeveralComponentsAtOnce)
{
    EXPECT_EQ(text("datasetByMenu"), QStringLiteral("mlrTable_2"));
    EXPECT_EQ(text("datasetUndone"), QStringLiteral("mlrTable"));
    EXPECT_EQ(list("tablesOfBoth"), words("States;States"));
    EXPECT_EQ(seen("stepsForBoth").toInt(), 1);
}

TEST_F(Designer, KeepsComponentsOutOfLayoutsWhereTheyWere)
{
    EXPECT_EQ(seen("pushButtons").toInt(), 2);
    for (const char *what : {"afterGrid", "afterUndoneGrid", "afterHorizontal", "afterSplitter"}) {
        SCOPED_TRACE(what);
        const QJsonObject component = seen(what).toObject();
        EXPECT_EQ(component[QLatin1String("parent")].toString(), QStringLiteral("Form"));
        EXPECT_FALSE(component[QLatin1String("inLayout")].toBool(true));
        EXPECT_FALSE(component[QLatin1String("moved")].toBool(true));
        EXPECT_TRUE(component[QLatin1String("visible")].toBool());
    }
    // The layout was there, with the buttons.
    EXPECT_TRUE(text("gridContents").contains(QStringLiteral("QGridLayout")));
    EXPECT_TRUE(yes("layoutsUndone"));
}

TEST_F(Designer, ShowsNoComponentInThePreview)
{
    const QJsonArray previews = seen("previews").toArray();
    EXPECT_EQ(previews.size(), 2);
    for (const auto &component : previews) {
        EXPECT_FALSE(component[QLatin1String("visible")].toBool(true));
        EXPECT_FALSE(component[QLatin1String("designing")].toBool(true));
    }
}

TEST_F(Designer, SaysWhatIsWrongWithADatabaseAndLeavesTheFormUnharmed)
{
    EXPECT_TRUE(yes("opened"));
    EXPECT_EQ(list("messagesOfOpening"), Strings());
    EXPECT_TRUE(yes("closedByUndo"));
    EXPECT_EQ(list("messagesWithoutDatabase"), Strings{QString::fromUtf8(Missing)});
    EXPECT_FALSE(yes("activeWithoutDatabase"));
    EXPECT_TRUE(yes("formUnharmed"));
    EXPECT_EQ(list("messagesOfTables"), Strings{QString::fromUtf8(Missing)});
    EXPECT_EQ(list("messagesOfDefining"), Strings{QString::fromUtf8(Missing)});
    EXPECT_TRUE(yes("sameAfterUndo"));
}

TEST_F(Designer, LooksUpNamesOnOneFormAlone)
{
    EXPECT_EQ(list("datasetsOfOtherForm"), words("mine"));
    EXPECT_TRUE(yes("boundOnOtherForm"));
    EXPECT_FALSE(yes("foundAcrossForms"));
}

TEST_F(Designer, LetsTheFieldsOfAQueryBeTyped)
{
    EXPECT_EQ(list("queryControl1"), words("Active;Inverse;Wind;Datafield2;1.00;10"));
    EXPECT_EQ(list("queryMessages"), Strings());
}

TEST_F(Designer, RepairsDefinitionsOfAFormAndOpensNothingWhenItLoadsOne)
{
    EXPECT_EQ(list("threeStrings"), words("Active;None;GNP;Datafield2;1.00;10"));
    EXPECT_EQ(list("nineStrings"), words("Active;None;GNP;Active;None;GNP"));
    EXPECT_EQ(list("numberForAList").size(), 6);
    EXPECT_TRUE(yes("wishedActive"));
    EXPECT_EQ(list("messagesOfLoading"), Strings());
}
