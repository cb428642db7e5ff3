// SPDX-License-Identifier: MIT
#include "platform/Errors.h"
#include "platform/Query.h"
#include "platform/Stringlist.h"
#include "platform/Table.h"

#include <QDir>

#include <gtest/gtest.h>

namespace {

/// All examples work where the sample database is, as their reader does.
class InItsFolder : public testing::Environment
{
public:
    void SetUp() override { ASSERT_TRUE(QDir::setCurrent(SAMPLES_FOLDER)); }
};

const testing::Environment *const inItsFolder = testing::AddGlobalTestEnvironment(new InItsFolder);

} // namespace

TEST(DatasetExamples, AWalkOverRecords)
{
    double hottest = 0;
    //! [TDataSet]
    TTable air;
    air.SetDatabaseName("samples.db");
    air.SetTableName("Airquality");
    const nuvo::ControlsOff off(air); // views do not follow the walk
    for (air.Open(); !air.Eof(); air.Next())
        hottest = std::max(hottest, air.FieldByName("Temp").AsFloat());
    air.Locate({"Temp"}, {hottest}); // the first day that was as hot
    //! [TDataSet]
    EXPECT_EQ(hottest, 97);
    EXPECT_EQ(air.FieldByName("Day").AsString(), "1973-08-28");
}

TEST(DatasetExamples, ATableWithFilterAndOrder)
{
    //! [TTable]
    TTable states;
    states.SetDatabaseName("samples.db");
    states.SetTableName("States");
    states.SetFilter("Region = 'South'");
    states.SetFiltered(true);
    states.SetIndexFieldNames("Population");
    states.Open();
    const QString smallest = states.FieldByName("State").AsString();
    //! [TTable]
    EXPECT_EQ(smallest, "Delaware");
    EXPECT_EQ(states.RecordCount(), 16);
}

TEST(DatasetExamples, AQueryWithAParameter)
{
    //! [TQuery]
    TQuery states;
    states.SetDatabaseName("samples.db");
    states.SetSQL("SELECT Region, COUNT(*) AS States FROM States WHERE Population >= :least GROUP BY Region");
    states.SetParam("least", 10000);
    states.Open();
    const bool found = states.Locate({"Region"}, {"Northeast"});
    const qint64 large = states.FieldByName("States").AsInteger();
    //! [TQuery]
    EXPECT_TRUE(found);
    EXPECT_EQ(large, 2);
}

TEST(DatasetExamples, AFieldOfTheCurrentRecord)
{
    //! [TField]
    TTable air;
    air.SetDatabaseName("samples.db");
    air.SetTableName("Airquality");
    air.Open();
    air.MoveBy(4); // the fifth of May
    const TField &ozone = air.FieldByName("Ozone");
    const bool missing = ozone.IsNull();    // a null reads as 0: ask before
    const bool numeric = ozone.IsNumeric(); // SMALLINT gives a TSmallintField
    const QDate day = air.FieldByName("Day").AsDateTime().date();
    //! [TField]
    EXPECT_TRUE(missing);
    EXPECT_TRUE(numeric);
    EXPECT_NE(dynamic_cast<const TSmallintField *>(&ozone), nullptr);
    EXPECT_EQ(day, QDate(1973, 5, 5));
}

TEST(DatasetExamples, WhatCannotBeDoneIsAnException)
{
    QString said;
    //! [EPlatformError]
    TTable table;
    table.SetDatabaseName("samples.db");
    table.SetTableName("Longly");
    try {
        table.Open();
    } catch (const EDatabaseError &error) { // no such table, file, server, field
        said = error.Message();
    } catch (const EPlatformError &error) { // EConvertError and all others
        said = error.Message();
    }
    //! [EPlatformError]
    EXPECT_TRUE(said.startsWith("No table \"Longly\" in database")) << qPrintable(said);
}

TEST(DatasetExamples, AListOfTexts)
{
    //! [TStringList]
    TStringList list(QStringList{"Active", "None"});
    list.Add("GNP");
    list.Put(1, "Log");
    const int place = list.IndexOf("GNP");
    //! [TStringList]
    EXPECT_EQ(place, 2);
    EXPECT_EQ(list[1], "Log");
    EXPECT_THROW(list.Put(3, ""), EStringListError);
}

TEST(DatasetExamples, AComponentIsFoundByItsName)
{
    //! [TComponent]
    QWidget form;
    auto *data = new TTable(&form); // the form owns and deletes it
    data->SetName("Data");
    const TComponent other(&form);
    TTable *found = other.FindComponent<TTable>("Data");
    //! [TComponent]
    EXPECT_EQ(found, data);
}
