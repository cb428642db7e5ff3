// SPDX-License-Identifier: MIT
#include "select/Selections.h"

namespace {

/// The three searches that read critical values, each on the cement data, and a table of such values beside them.
template <class Search>
class FTable : public SelectionOver<TMLRTable, Search>
{
protected:
    /// A table whose columns hold 100, 200, 300 and 400, each plus the denominator, for denominators 1 to 12.
    void makeLevels(const char *name = "levels", const char *key = ", PRIMARY KEY (Numerator, Denominator)",
                    const char *last = "95 Percent")
    {
        this->db->exec(text("CREATE TABLE %1 (Numerator INTEGER, Denominator INTEGER, \"1 Percent\" DOUBLE, "
                            "\"5 Percent\" DOUBLE, \"10 Percent\" DOUBLE, \"%2\" DOUBLE%3)")
                           .arg(text(name), text(last), text(key)));
        for (int denominator = 1; denominator <= 12; ++denominator)
            this->db->exec(text("INSERT INTO %1 VALUES (1, ?, ?, ?, ?, ?)").arg(text(name)),
                           {denominator, 100 + denominator, 200 + denominator, 300 + denominator, 400 + denominator});
        levels.SetDatabaseName(this->db->name());
        levels.SetTableName(text(name));
        levels.Open();
        this->search.SetFDistTable(&levels);
    }
    void SetUp() override
    {
        this->fillCement();
        if constexpr (std::is_same_v<Search, TStepWiseMLR>)
            this->search.SetFPercent(text("95 Percent"));
    }
    /// The critical values that a run compares with, candidate for candidate.
    QStringList criticals()
    {
        Trace trace;
        this->search.Run();
        QStringList list;
        for (const QString &candidate : trace.of("candidate"))
            list.append(traced(candidate, "critical"));
        return list;
    }
    /// What stands in when the look-up fails.
    QString standIn() const
    {
        if constexpr (std::is_same_v<Search, TStepWiseMLR>)
            return text("7"); // FOutDefault
        else
            return text("5"); // FDefault
    }
    void setDefaults()
    {
        if constexpr (std::is_same_v<Search, TStepWiseMLR>) {
            this->search.SetFInDefault(5);
            this->search.SetFOutDefault(7);
        } else {
            this->search.SetFDefault(5);
        }
    }
    void expectStandIn()
    {
        setDefaults();
        for (const QString &critical : criticals())
            EXPECT_EQ(critical, standIn());
    }

    TTable levels;
};

using Searches = testing::Types<TStepWiseMLR, TBackElimMLR, TFwdSelectMLR>;
TYPED_TEST_SUITE(FTable, Searches);

} // namespace

TYPED_TEST(FTable, IsSearchedForOneAndTheDegreesOfFreedomOfTheFit)
{
    this->makeLevels();
    const QString expected = std::is_same_v<TypeParam, TBackElimMLR> ? text("409") : text("411");
    EXPECT_EQ(this->criticals().first(4), QStringList(4, expected));
}

TYPED_TEST(FTable, WithoutAKeyTheLookUpFails)
{
    this->makeLevels("keyless", "");
    this->expectStandIn();
}

TYPED_TEST(FTable, AnIndexStandsInForAPrimaryKey)
{
    this->makeLevels("keyless", "");
    this->levels.SetIndexFieldNames(text("Numerator;Denominator"));
    this->levels.Open();
    const QString expected = std::is_same_v<TypeParam, TBackElimMLR> ? text("409") : text("411");
    EXPECT_EQ(this->criticals().first(4), QStringList(4, expected));
}

TYPED_TEST(FTable, WithoutTheColumnTheLookUpFails)
{
    this->makeLevels("other", ", PRIMARY KEY (Numerator, Denominator)", "90 Percent");
    this->expectStandIn();
}

TYPED_TEST(FTable, AClosedOneMakesTheLookUpFail)
{
    this->makeLevels();
    this->levels.Close();
    this->levels.WishActive(false);
    this->expectStandIn();
}

TYPED_TEST(FTable, OneThatIsWishedToBeOpenIsOpenedWhenItIsNeeded)
{
    this->makeLevels();
    this->levels.Close();
    this->levels.WishActive(true);
    EXPECT_TRUE(this->criticals().first().startsWith(text("4")));
    EXPECT_TRUE(this->levels.Active());
}

TYPED_TEST(FTable, ATextInTheColumnMakesTheLookUpFail)
{
    this->makeLevels();
    this->db->exec(text("UPDATE levels SET \"95 Percent\" = 'four'"));
    this->levels.Refresh();
    this->expectStandIn();
}

TYPED_TEST(FTable, AKeyThatIsNotThereIsNotNoticed)
{
    // As written: the value of whatever record is current counts.
    this->makeLevels();
    this->db->exec(text("DELETE FROM levels WHERE Denominator > 8"));
    this->levels.Refresh();
    this->levels.Last();
    ASSERT_EQ(this->levels.FieldByName(text("Denominator")).AsFloat(), 8);
    EXPECT_EQ(this->criticals().first(4), QStringList(4, text("408")));
    EXPECT_EQ(this->levels.RecNo(), 8);
}

TYPED_TEST(FTable, AnEmptyOneAndANullReadAsZero)
{
    this->makeLevels();
    this->db->exec(text("UPDATE levels SET \"95 Percent\" = NULL"));
    this->levels.Refresh();
    EXPECT_EQ(this->criticals().first(4), QStringList(4, text("0")));
    this->prepare("a b c d");
    this->db->exec(text("DELETE FROM levels"));
    this->levels.Refresh();
    EXPECT_EQ(this->criticals().first(4), QStringList(4, text("0")));
}

TYPED_TEST(FTable, WithoutOneTheDefaultStands)
{
    this->setDefaults();
    EXPECT_EQ(this->criticals().first(), text("5"));
}

TYPED_TEST(FTable, OneThatGoesAwayDuringTheRunEndsItWithAnError)
{
    auto *gone = new TTable;
    this->makeLevels();
    gone->SetDatabaseName(this->db->name());
    gone->SetTableName(text("levels"));
    gone->Open();
    this->search.SetFDistTable(gone);
    int fits = 0;
    QObject::connect(&this->regression, &TMLRTable::Fitted, &this->search, [&] {
        if (++fits == 2)
            delete gone;
    });
    EXPECT_THROW(this->search.Run(), EDatabaseError);
    EXPECT_EQ(this->transformations().first(4), QStringList(4, text("None")));
    EXPECT_TRUE(this->regression.ResultsCurrent());
    EXPECT_EQ(this->search.FDistTable(), nullptr);
}

TYPED_TEST(FTable, MayBeOneTableForTwoSearches)
{
    this->makeLevels();
    TypeParam other;
    other.SetTable(&this->regression);
    other.SetFDistTable(&this->levels);
    if constexpr (std::is_same_v<TypeParam, TStepWiseMLR>)
        other.SetFPercent(this->search.FPercent());
    this->search.Run();
    this->prepare("a b c d");
    other.Run();
    EXPECT_EQ(other.Report(), this->search.Report());
}

namespace {

using StepwiseLevels = FTable<TStepWiseMLR>;

} // namespace

TEST_F(StepwiseLevels, EntryReadsTheChosenColumnAndRemovalNinetyFivePercent)
{
    makeLevels();
    db->exec(text("UPDATE levels SET \"5 Percent\" = 2, \"95 Percent\" = 150"));
    levels.Refresh();
    search.SetFPercent(text("5 Percent"));
    Trace trace;
    search.Run();
    EXPECT_EQ(traced(trace.of("candidate")[0], "critical"), text("2"));
    const QStringList checks = trace.of("check");
    ASSERT_GE(checks.size(), 2);
    EXPECT_EQ(traced(checks[0], "critical"), text("150"));
    EXPECT_EQ(traced(checks[0], "removed"), text("0")) << "159.3";
    EXPECT_EQ(traced(checks[1], "removed"), text("1")) << "108.2";
}

TEST_F(StepwiseLevels, AFailedLookUpForAnEntryGivesTheDefaultOfTheRemoval)
{
    // As written.
    makeLevels();
    setDefaults();
    search.SetFPercent(text("2 Percent"));
    EXPECT_EQ(criticals().first(4), QStringList(4, text("7")));
}

TEST_F(StepwiseLevels, FPercentIsAColumnNameWhateverItsCase)
{
    makeLevels();
    search.SetFPercent(text("10 PERCENT"));
    EXPECT_EQ(criticals().first(), text("311"));
}
