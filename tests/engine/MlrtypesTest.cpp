// SPDX-License-Identifier: MIT
#include "engine/Mlrtypes.h"

#include "platform/Table.h"
#include "support/Regressions.h"

#include <cmath>
#include <limits>

namespace {

const double kAtZero = 1e-20;
const double kBelow = std::nextafter(kAtZero, 0.0);
const double kAbove = std::nextafter(kAtZero, 1.0);

QStringList strings(const char *parted)
{
    return text(parted).split(u'|');
}

/// Definitions at work on the records of a table.
class Definitions : public testing::Test
{
protected:
    /// A table of one record, standing on it: "a b", {1, 2}.
    TTable &record(const char *columns, const Row &cells)
    {
        table_.Close();
        db->exec(QStringLiteral("DROP TABLE IF EXISTS data"));
        makeTable(*db, "data", columns, {cells});
        table_.SetTableName(QString());
        bind(table_, *db, "data");
        return table_;
    }
    template <class Definition>
    bool valid(const Definition &definition, std::optional<double> a)
    {
        return definition.ValidTransformation(record("a", {a}));
    }
    template <class Definition>
    double processed(const Definition &definition, std::optional<double> a)
    {
        return definition.Process(record("a", {a}));
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);

private:
    TTable table_;
};

using ControlValidity = Definitions;
using ControlValue = Definitions;
using ResponseValidity = Definitions;
using ResponseValue = Definitions;

} // namespace

// The six strings.

TEST(ControlDefinition, AFreshOneHoldsItsSixStrings)
{
    EXPECT_EQ(TIndepVar().ToQStringList(), strings("Inactive|Undefined|Datafield1|Datafield2|1.00|10"));
}

TEST(ResponseDefinition, AFreshOneHoldsItsSixStrings)
{
    EXPECT_EQ(TDependentVar().ToQStringList(), strings("Undefined|None|Datafield|Undefined|Undefined|1"));
}

TEST(ControlDefinition, ATransformationMakesTheUsageActive)
{
    TIndepVar definition;
    definition.SetTransformation(text("Log"));
    EXPECT_EQ(definition.ToQStringList(), strings("Active|Log|Datafield1|Datafield2|1.00|10"));
}

TEST(ControlDefinition, UsageInactiveUndefinesTheTransformation)
{
    TIndepVar definition;
    definition.SetTransformation(text("Log"));
    definition.SetUsage(text("Inactive"));
    EXPECT_EQ(definition.ToQStringList(), strings("Inactive|Undefined|Datafield1|Datafield2|1.00|10"));
}

TEST(ControlDefinition, UsageActiveAloneLeavesTheTransformation)
{
    TIndepVar definition;
    definition.SetUsage(text("Active"));
    EXPECT_EQ(definition.ToQStringList(), strings("Active|Undefined|Datafield1|Datafield2|1.00|10"));
    definition.SetTransformation(text("Sqrt"));
    definition.SetUsage(text("Active"));
    EXPECT_EQ(definition.Transformation(), text("Sqrt"));
}

TEST(ControlDefinition, AnyOtherUsageIsStoredAsItIs)
{
    TIndepVar definition;
    definition.SetTransformation(text("Sqrt"));
    definition.SetUsage(text("inactive"));
    EXPECT_EQ(definition.ToQStringList(), strings("inactive|Sqrt|Datafield1|Datafield2|1.00|10"));
}

TEST(ControlDefinition, TransformationUndefinedLeavesTheUsage)
{
    TIndepVar definition;
    definition.SetTransformation(text("Log"));
    definition.SetTransformation(text("Undefined"));
    EXPECT_EQ(definition.Usage(), text("Active"));
    EXPECT_EQ(definition.Transformation(), text("Undefined"));
}

TEST(ControlDefinition, TransformationInactiveCountsAsDefined)
{
    TIndepVar definition;
    definition.SetTransformation(text("Inactive"));
    EXPECT_EQ(definition.Usage(), text("Active"));
    EXPECT_EQ(definition.Transformation(), text("Inactive"));
}

TEST(ControlDefinition, TheOtherSettersStoreTheirValueAlone)
{
    TIndepVar definition;
    definition.SetField1(text("a"));
    definition.SetField2(text("b"));
    definition.SetExponent(text("3"));
    definition.SetScaleFactor(text("2,5"));
    EXPECT_EQ(definition.ToQStringList(), strings("Inactive|Undefined|a|b|3|2,5"));
    EXPECT_EQ(definition.Field1(), text("a"));
    EXPECT_EQ(definition.Field2(), text("b"));
    EXPECT_EQ(definition.Exponent(), text("3"));
    EXPECT_EQ(definition.ScaleFactor(), text("2,5"));
}

TEST(ResponseDefinition, TheSettersStoreTheirValueAlone)
{
    TDependentVar definition;
    definition.SetField(text("cost"));
    definition.SetTransformation(text("Scale"));
    definition.SetScaleFactor(text("100"));
    EXPECT_EQ(definition.ToQStringList(), strings("Undefined|Scale|cost|Undefined|Undefined|100"));
    EXPECT_EQ(definition.FieldName(), text("cost"));
    EXPECT_EQ(definition.Transformation(), text("Scale"));
    EXPECT_EQ(definition.ScaleFactor(), text("100"));
}

TEST(ControlDefinition, SetParametersReplacesByPositionAndCouplesNothing)
{
    TIndepVar definition;
    for (int i = 0; i < 6; ++i)
        definition.SetParameters(i, QString::number(i));
    EXPECT_EQ(definition.ToQStringList(), strings("0|1|2|3|4|5"));
    definition.SetParameters(1, text("Log"));
    EXPECT_EQ(definition.Usage(), text("0"));
    EXPECT_THROW(definition.SetParameters(6, text("x")), EStringListError);
    EXPECT_THROW(definition.SetParameters(-1, text("x")), EStringListError);
}

TEST(ControlDefinition, OnlyTheTransformationOfAShortListIsAnswered)
{
    TIndepVar definition;
    definition.Assign(QStringList());
    EXPECT_EQ(definition.Transformation(), text("Undefined"));
    EXPECT_THROW(definition.Usage(), EStringListError);
    EXPECT_THROW(definition.Field1(), EStringListError);
    EXPECT_THROW(definition.Field2(), EStringListError);
    EXPECT_THROW(definition.Exponent(), EStringListError);
    EXPECT_THROW(definition.ScaleFactor(), EStringListError);
    EXPECT_THROW(definition.SetTransformation(text("Log")), EStringListError);
    definition.Assign(strings("Active"));
    EXPECT_EQ(definition.Transformation(), text("Undefined"));
    EXPECT_EQ(definition.Usage(), text("Active"));
    definition.Assign(strings("Active|Log"));
    EXPECT_EQ(definition.Transformation(), text("Log"));
    EXPECT_THROW(definition.Field1(), EStringListError);
}

TEST(ResponseDefinition, EveryGetterOfAShortListRaises)
{
    TDependentVar definition;
    definition.Assign(QStringList());
    EXPECT_THROW(definition.Transformation(), EStringListError);
    EXPECT_THROW(definition.FieldName(), EStringListError);
    EXPECT_THROW(definition.ScaleFactor(), EStringListError);
}

TEST(ControlDefinition, AssignCopiesAllSixStrings)
{
    TIndepVar source;
    for (int i = 0; i < 6; ++i)
        source.SetParameters(i, QStringLiteral("s%1").arg(i));
    TIndepVar copy;
    copy.Assign(source);
    EXPECT_EQ(copy.ToQStringList(), strings("s0|s1|s2|s3|s4|s5"));
    source.SetField1(text("changed"));
    EXPECT_EQ(copy.Field1(), text("s2"));
}

TEST(ControlDefinition, AListOfAFormIsRepaired)
{
    TIndepVar definition;
    definition.SetField1(text("old"));
    definition.AssignRepaired({});
    EXPECT_EQ(definition.ToQStringList(), TIndepVar().ToQStringList());
    definition.AssignRepaired(strings("Active|Log|a"));
    EXPECT_EQ(definition.ToQStringList(), strings("Active|Log|a|Datafield2|1.00|10"));
    definition.AssignRepaired(strings("Active|Product|a|b|2|3"));
    EXPECT_EQ(definition.ToQStringList(), strings("Active|Product|a|b|2|3"));
    definition.AssignRepaired(strings("Active|Product|a|b|2|3|7|8|9"));
    EXPECT_EQ(definition.ToQStringList(), strings("Active|Product|a|b|2|3"));
}

TEST(ResponseDefinition, AListOfAFormIsRepaired)
{
    TDependentVar definition;
    definition.AssignRepaired(strings("Undefined|Log|cost"));
    EXPECT_EQ(definition.ToQStringList(), strings("Undefined|Log|cost|Undefined|Undefined|1"));
    definition.AssignRepaired(strings("Undefined|Scale|cost|Undefined|Undefined|3|7|8|9"));
    EXPECT_EQ(definition.ToQStringList(), strings("Undefined|Scale|cost|Undefined|Undefined|3"));
    definition.AssignRepaired({});
    EXPECT_EQ(definition.ToQStringList(), TDependentVar().ToQStringList());
}

// Which records can be transformed.

TEST_F(ControlValidity, ANullInField1IsRejectedWhateverTheTransformation)
{
    for (const char *transformation : {"None", "Log", "Inverse", "Sqrt", "Power", "Scale", "Scaled", "Product",
                                       "Quotient", "Undefined", "Inactive", "Anything"}) {
        TIndepVar definition = control(transformation, "a", "b");
        definition.SetExponent(text("2"));
        EXPECT_FALSE(definition.ValidTransformation(record("a b", {null, 1}))) << transformation;
        EXPECT_TRUE(definition.ValidTransformation(record("a b", {1, 1}))) << transformation;
    }
}

TEST_F(ControlValidity, NothingElseIsTestedAfterANullInField1)
{
    TTable &data = record("a", {null});
    EXPECT_FALSE(power("a", "no number").ValidTransformation(data));
    EXPECT_FALSE(scaled("Scaled", "a", "no number").ValidTransformation(data));
    EXPECT_FALSE(control("Product", "a", "no field").ValidTransformation(data));
    EXPECT_FALSE(control("Quotient", "a", "no field").ValidTransformation(data));
}

TEST_F(ControlValidity, AnInfiniteNumberIsANull)
{
    const double infinite = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(valid(control("None", "a"), infinite));
    EXPECT_FALSE(valid(control("None", "a"), -infinite));
    EXPECT_FALSE(control("Product", "a", "b").ValidTransformation(record("a b", {1, infinite})));
}

TEST_F(ControlValidity, NoneTakesEveryNumber)
{
    for (const double value : {0.0, -1.0, 1e-300, -1e300})
        EXPECT_TRUE(valid(control("None", "a"), value)) << value;
}

TEST_F(ControlValidity, LogAndSqrtWantMoreThanTheTolerance)
{
    for (const char *transformation : {"Log", "Sqrt"}) {
        const TIndepVar definition = control(transformation, "a");
        EXPECT_FALSE(valid(definition, 0)) << transformation;
        EXPECT_FALSE(valid(definition, -1)) << transformation;
        EXPECT_FALSE(valid(definition, kBelow)) << transformation;
        EXPECT_FALSE(valid(definition, kAtZero)) << transformation;
        EXPECT_TRUE(valid(definition, kAbove)) << transformation;
        EXPECT_FALSE(valid(definition, -kAbove)) << transformation;
        EXPECT_TRUE(valid(definition, 5)) << transformation;
    }
}

TEST_F(ControlValidity, InverseWantsTheToleranceAtLeast)
{
    const TIndepVar definition = control("Inverse", "a");
    EXPECT_FALSE(valid(definition, 0));
    EXPECT_FALSE(valid(definition, kBelow));
    EXPECT_FALSE(valid(definition, -kBelow));
    EXPECT_TRUE(valid(definition, kAtZero));
    EXPECT_TRUE(valid(definition, -kAtZero));
    EXPECT_TRUE(valid(definition, kAbove));
    EXPECT_TRUE(valid(definition, -3));
}

TEST_F(ControlValidity, PowerWantsAnExponentOfAHalfAtLeast)
{
    TTable &data = record("a", {-3});
    for (const char *exponent : {"0.5", "0,5", "1", "1.00", "2", "3", " 2 ", "2,0", "+2", "1e1", "0.500001"})
        EXPECT_TRUE(power("a", exponent).ValidTransformation(data)) << exponent;
    for (const char *exponent : {"0.25", "0", "-1", "-2", "0.4999999", "0,4999999"})
        EXPECT_FALSE(power("a", exponent).ValidTransformation(data)) << exponent;
    for (const char *exponent : {"", " ", "two", "2x", "1 2", "0x2"})
        EXPECT_THROW(power("a", exponent).ValidTransformation(data), EConvertError) << exponent;
}

TEST_F(ControlValidity, PowerTakesAnyValue)
{
    for (const double value : {0.0, -1e-30, 1e300})
        EXPECT_TRUE(valid(power("a", "2"), value)) << value;
}

TEST_F(ControlValidity, ScaleDoesNotTestItsFactor)
{
    TTable &data = record("a", {4});
    for (const char *factor : {"10", "0", "-0", "1e-30", "no number", ""})
        EXPECT_TRUE(scaled("Scale", "a", factor).ValidTransformation(data)) << factor;
}

TEST_F(ControlValidity, TheFactorIsTestedUnderTheNameScaled)
{
    TTable &data = record("a", {4});
    for (const char *factor : {"10", "-10", "2e-20", "-2e-20", "0,5"})
        EXPECT_TRUE(scaled("Scaled", "a", factor).ValidTransformation(data)) << factor;
    for (const char *factor : {"0", "-0", "1e-20", "-1e-20", "1e-21"})
        EXPECT_FALSE(scaled("Scaled", "a", factor).ValidTransformation(data)) << factor;
    EXPECT_THROW(scaled("Scaled", "a", "no number").ValidTransformation(data), EConvertError);
}

TEST_F(ControlValidity, ProductWantsBothFields)
{
    const TIndepVar definition = control("Product", "a", "b");
    EXPECT_TRUE(definition.ValidTransformation(record("a b", {2, 3})));
    EXPECT_TRUE(definition.ValidTransformation(record("a b", {2, 0})));
    EXPECT_FALSE(definition.ValidTransformation(record("a b", {2, null})));
}

TEST_F(ControlValidity, QuotientTakesAnyDivisor)
{
    const TIndepVar definition = control("Quotient", "a", "b");
    for (const std::optional<double> divisor : std::initializer_list<std::optional<double>>{3, 0, 1e-30, -7, null})
        EXPECT_TRUE(definition.ValidTransformation(record("a b", {2, divisor})));
}

TEST_F(ControlValidity, UnknownTransformationsAreAccepted)
{
    for (const char *transformation : {"Undefined", "Inactive", "log", "LOG", "", "Cube"})
        EXPECT_TRUE(valid(control(transformation, "a"), -1)) << transformation;
}

TEST_F(ControlValidity, AnUnknownFieldPassesThroughAsADatabaseError)
{
    TTable &data = record("a b", {2, 3});
    EXPECT_THROW(control("None", "c").ValidTransformation(data), EDatabaseError);
    EXPECT_THROW(control("Product", "a", "c").ValidTransformation(data), EDatabaseError);
    EXPECT_THROW(control("Quotient", "a", "c").ValidTransformation(data), EDatabaseError);
    EXPECT_NO_THROW(control("Log", "a", "c").ValidTransformation(data)) << "Field2 has no part in it";
    try {
        (void)control("None", "c").ValidTransformation(data);
    } catch (const EDatabaseError &error) {
        EXPECT_TRUE(error.Message().contains(text("\"c\""))) << error.what();
        EXPECT_TRUE(error.Message().contains(text("a, b"))) << error.what();
    }
}

TEST_F(ControlValidity, ATextThatIsNoNumberPassesThroughAsAConversionError)
{
    db->exec(text("CREATE TABLE words (id INTEGER PRIMARY KEY, a DOUBLE PRECISION)"));
    db->exec(text("INSERT INTO words (a) VALUES ('n/a')"));
    TTable table;
    bind(table, *db, "words");
    EXPECT_TRUE(control("None", "a").ValidTransformation(table)) << "its value is not read";
    EXPECT_THROW(control("None", "a").Process(table), EConvertError);
    EXPECT_THROW(control("Log", "a").ValidTransformation(table), EConvertError);
}

TEST_F(ControlValidity, FieldNamesTellNoCases)
{
    EXPECT_TRUE(control("None", "A").ValidTransformation(record("a", {1})));
    EXPECT_EQ(control("None", "AGE").Process(record("Age", {7})), 7);
}

// What they become.

TEST_F(ControlValue, NoneIsTheValue)
{
    EXPECT_EQ(processed(control("None", "a"), -2.5), -2.5);
    EXPECT_EQ(processed(control("None", "a"), null), 0) << "a null reads as 0";
}

TEST_F(ControlValue, LogIsTheNaturalLogarithm)
{
    EXPECT_EQ(processed(control("Log", "a"), 7.5), std::log(7.5));
    EXPECT_TRUE(std::isnan(processed(control("Log", "a"), -1)));
    EXPECT_EQ(processed(control("Log", "a"), 0), -std::numeric_limits<double>::infinity());
}

TEST_F(ControlValue, InverseIsOneOverTheValue)
{
    EXPECT_EQ(processed(control("Inverse", "a"), -8), -0.125);
    EXPECT_EQ(processed(control("Inverse", "a"), 0), std::numeric_limits<double>::infinity());
}

TEST_F(ControlValue, SqrtIsTheSquareRoot)
{
    EXPECT_EQ(processed(control("Sqrt", "a"), 2), std::sqrt(2.0));
}

TEST_F(ControlValue, PowerTakesItsSignFromTheParityOfTheExponent)
{
    EXPECT_EQ(processed(power("a", "2"), -3), 9);
    EXPECT_EQ(processed(power("a", "2"), 3), 9);
    EXPECT_EQ(processed(power("a", "3"), 2), -8);
    EXPECT_EQ(processed(power("a", "3"), -2), -8);
    EXPECT_EQ(processed(power("a", "1"), 5), -5);
    EXPECT_EQ(processed(power("a", "1"), -5), -5);
    EXPECT_EQ(processed(power("a", "10"), -2), 1024);
    EXPECT_EQ(processed(power("a", "-1"), 4), -0.25);
    EXPECT_EQ(processed(power("a", "-2"), 4), 0.0625);
    EXPECT_EQ(processed(power("a", "-3"), -2), -0.125);
    EXPECT_EQ(processed(power("a", "0"), 4), 1);
}

TEST_F(ControlValue, PowersOfWholeNumbersAreExact)
{
    for (int value = 1; value <= 20; ++value) {
        double square = double(value) * value;
        EXPECT_EQ(processed(power("a", "2"), value), square);
        EXPECT_EQ(processed(power("a", "4"), value), square * square);
    }
}

TEST_F(ControlValue, PowerReadsItsExponentAsAWholeNumber)
{
    EXPECT_EQ(processed(power("a", " 2 "), -3), 9);
    EXPECT_EQ(processed(power("a", "+2"), -3), 9);
    for (const char *exponent : {"1.00", "2.0", "2,0", "0.25", "1e1", "", "two"})
        EXPECT_THROW(processed(power("a", exponent), 2), EConvertError) << exponent;
}

TEST_F(ControlValue, PowerOfZeroIsZeroWithoutReadingTheExponent)
{
    for (const char *exponent : {"2", "3", "0", "-1", "1.00", "two"})
        EXPECT_EQ(processed(power("a", exponent), 0), 0) << exponent;
    EXPECT_FALSE(std::signbit(processed(power("a", "3"), 0)));
}

TEST_F(ControlValue, ScaleDividesByTheFactor)
{
    EXPECT_EQ(processed(scaled("Scale", "a", "4"), 3), 0.75);
    EXPECT_EQ(processed(scaled("Scale", "a", "2,5"), 10), 4);
    EXPECT_EQ(processed(scaled("Scale", "a", "2.5"), 10), 4);
    EXPECT_EQ(processed(scaled("Scale", "a", "-1e-3"), 1), 1 / -1e-3);
    EXPECT_EQ(processed(scaled("Scale", "a", "0"), 3), std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(processed(scaled("Scale", "a", "0"), 0)));
    EXPECT_THROW(processed(scaled("Scale", "a", "ten"), 3), EConvertError);
    EXPECT_THROW(processed(scaled("Scale", "a", ""), 3), EConvertError);
}

TEST_F(ControlValue, ProductAndQuotientTakeBothFields)
{
    EXPECT_EQ(control("Product", "a", "b").Process(record("a b", {1.5, -4})), -6);
    EXPECT_EQ(control("Quotient", "a", "b").Process(record("a b", {1.5, -4})), -0.375);
    EXPECT_EQ(control("Product", "a", "a").Process(record("a b", {1.5, -4})), 2.25);
}

TEST_F(ControlValue, AQuotientByNothingIsWhatTheDivisionGives)
{
    const TIndepVar definition = control("Quotient", "a", "b");
    const double infinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(definition.Process(record("a b", {2, 0})), infinite);
    EXPECT_EQ(definition.Process(record("a b", {-2, 0})), -infinite);
    EXPECT_EQ(definition.Process(record("a b", {2, null})), infinite);
    EXPECT_TRUE(std::isnan(definition.Process(record("a b", {0, 0}))));
    EXPECT_TRUE(std::isnan(definition.Process(record("a b", {0, null}))));
}

TEST_F(ControlValue, OtherTransformationsGiveTheValue)
{
    for (const char *transformation : {"Undefined", "Inactive", "Scaled", "log", "Cube", ""})
        EXPECT_EQ(processed(control(transformation, "a"), 2.5), 2.5) << transformation;
}

TEST_F(ControlValue, AnUnknownFieldPassesThroughAsADatabaseError)
{
    TTable &data = record("a b", {2, 3});
    for (const char *transformation : {"None", "Log", "Inverse", "Sqrt", "Power", "Scale", "Product", "Quotient"}) {
        TIndepVar definition = control(transformation, "c", "b");
        definition.SetExponent(text("2"));
        EXPECT_THROW((void)definition.Process(data), EDatabaseError) << transformation;
    }
    EXPECT_THROW((void)control("Product", "a", "c").Process(data), EDatabaseError);
    EXPECT_THROW((void)control("Quotient", "a", "c").Process(data), EDatabaseError);
}

TEST_F(ResponseValidity, ANullIsRejectedWhateverTheTransformation)
{
    for (const char *transformation : {"None", "Log", "Inverse", "Scale", "Sqrt", ""})
        EXPECT_FALSE(valid(response(transformation, "a"), null)) << transformation;
    EXPECT_FALSE(valid(response("Scale", "a", "no number"), null)) << "the factor is not read then";
}

TEST_F(ResponseValidity, NoneTakesEveryNumber)
{
    for (const double value : {0.0, -1.0, 1e-300})
        EXPECT_TRUE(valid(response("None", "a"), value)) << value;
}

TEST_F(ResponseValidity, LogWantsMoreThanTheTolerance)
{
    const TDependentVar definition = response("Log", "a");
    EXPECT_FALSE(valid(definition, 0));
    EXPECT_FALSE(valid(definition, -1));
    EXPECT_FALSE(valid(definition, kAtZero));
    EXPECT_TRUE(valid(definition, kAbove));
}

TEST_F(ResponseValidity, InverseWantsMoreThanTheToleranceUnlikeAControls)
{
    const TDependentVar definition = response("Inverse", "a");
    EXPECT_FALSE(valid(definition, 0));
    EXPECT_FALSE(valid(definition, kAtZero));
    EXPECT_FALSE(valid(definition, -kAtZero));
    EXPECT_TRUE(valid(definition, kAbove));
    EXPECT_TRUE(valid(definition, -kAbove));
}

TEST_F(ResponseValidity, ScaleWantsAFactorMoreThanTheTolerance)
{
    TTable &data = record("a", {5});
    for (const char *factor : {"10", "-10", "2e-20", "0,5"})
        EXPECT_TRUE(response("Scale", "a", factor).ValidTransformation(data)) << factor;
    for (const char *factor : {"0", "1e-20", "-1e-20", "1e-21"})
        EXPECT_FALSE(response("Scale", "a", factor).ValidTransformation(data)) << factor;
    EXPECT_THROW((void)response("Scale", "a", "ten").ValidTransformation(data), EConvertError);
}

TEST_F(ResponseValidity, OtherTransformationsAreAccepted)
{
    for (const char *transformation : {"Scaled", "Power", "Sqrt", "Undefined", "Inactive", ""})
        EXPECT_TRUE(valid(response(transformation, "a", "0"), -1)) << transformation;
}

TEST_F(ResponseValidity, AnUnknownFieldPassesThroughAsADatabaseError)
{
    TTable &data = record("a", {5});
    EXPECT_THROW((void)response("None", "c").ValidTransformation(data), EDatabaseError);
    EXPECT_THROW((void)response("None", "c").Process(data), EDatabaseError);
}

TEST_F(ResponseValue, IsTransformed)
{
    EXPECT_EQ(processed(response("None", "a"), -2.5), -2.5);
    EXPECT_EQ(processed(response("Log", "a"), 7.5), std::log(7.5));
    EXPECT_EQ(processed(response("Inverse", "a"), -8), -0.125);
    EXPECT_EQ(processed(response("Scale", "a", "4"), 3), 0.75);
    EXPECT_EQ(processed(response("Scale", "a", "2,5"), 10), 4);
    EXPECT_THROW(processed(response("Scale", "a", "ten"), 3), EConvertError);
    EXPECT_EQ(processed(response("Sqrt", "a"), 2.5), 2.5) << "an unknown one gives the value";
}

// How reports write them.

TEST(ControlTerm, FollowsTheTransformation)
{
    EXPECT_EQ(control("None", "AGE").OutputTerm(), text("AGE"));
    EXPECT_EQ(control("Log", "AGE").OutputTerm(), text("Ln(AGE)"));
    EXPECT_EQ(control("Inverse", "AGE").OutputTerm(), text("1/AGE"));
    EXPECT_EQ(control("Sqrt", "AGE").OutputTerm(), text("AGE^1/2"));
    EXPECT_EQ(power("AGE", "2").OutputTerm(), text("AGE^2"));
    EXPECT_EQ(power("AGE", " 2,0 ").OutputTerm(), text("AGE^ 2,0 ")) << "as it stands";
    EXPECT_EQ(scaled("Scale", "AGE", "1e3").OutputTerm(), text("AGE/1e3"));
    EXPECT_EQ(control("Product", "AGE", "COST").OutputTerm(), text("AGE*COST"));
    EXPECT_EQ(control("Quotient", "AGE", "COST").OutputTerm(), text("AGE/COST"));
    EXPECT_EQ(control("Inactive", "AGE").OutputTerm(), text("Disabled"));
    EXPECT_EQ(control("Undefined", "AGE").OutputTerm(), text("Disabled"));
    for (const char *other : {"Scaled", "log", "", "Disabled"})
        EXPECT_EQ(control(other, "AGE").OutputTerm(), QString(text(""))) << other;
}

TEST(ControlTerm, AsksTheTransformationAndNotTheUsage)
{
    TIndepVar definition = control("Log", "AGE");
    definition.SetParameters(0, text("Inactive"));
    EXPECT_EQ(definition.OutputTerm(), text("Ln(AGE)"));
}

TEST(ResponseTerm, FollowsTheTransformation)
{
    EXPECT_EQ(response("None", "COST").OutputTerm(), text("COST"));
    EXPECT_EQ(response("Log", "COST").OutputTerm(), text("Ln(COST)"));
    EXPECT_EQ(response("Inverse", "COST").OutputTerm(), text("1/(COST)"));
    EXPECT_EQ(response("Scale", "COST", "1,5").OutputTerm(), text("COST/1,5"));
    EXPECT_EQ(response("Inactive", "COST").OutputTerm(), text("Disabled"));
    for (const char *other : {"Undefined", "Sqrt", "Power", "Product", "Quotient", "Scaled", "log", ""})
        EXPECT_EQ(response(other, "COST").OutputTerm(), QString(text(""))) << other;
}
