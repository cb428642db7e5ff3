// SPDX-License-Identifier: MIT
#include "engine/Termvalue.h"

#include "engine/kernel/Prediction.h"
#include "support/Regressions.h"
#include "support/Text.h"

#include <cmath>

namespace {

const std::vector<TIndepVar> terms{control("Log", "a"), power("A", "3"), control("Product", "a", "b"),
                                   control("Quotient", "b", "c"), scaled("Scale", "c", "4")};

QString refusal(const std::vector<TIndepVar> &of, const nuvo::FieldValues &values)
{
    return errorOf<EConvertError>([&] { nuvo::termValues(of, values); });
}

using TermValues = RegressionOver<TMLRTable>;

} // namespace

TEST_F(TermValues, AreThoseOfARecordWithTheseFields)
{
    EXPECT_EQ(nuvo::termValues(terms, {{u("B"), 5}, {u("a"), 2}, {u("c"), 8}}).values,
              (std::vector<double>{std::log(2.0), -8, 10, 0.625, 2}));
    std::vector<Row> rows;
    for (int i = 1; i <= 12; ++i)
        rows.push_back({i * 7 % 5 + 0.5, 0.3 * i + 1, i * 5 % 11 + 0.25, i * 3 % 7 + 1.5});
    fill("y a b c", rows);
    regression.SetResponse(response("None", "y"));
    for (int k = 1; k <= 5; ++k)
        regression.SetControl(k, terms[std::size_t(k) - 1]);
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    const nuvo::Prediction got =
        regression.PredictAt({{u("a"), *rows[3][1]}, {u("b"), *rows[3][2]}, {u("c"), *rows[3][3]}}, 0.9);
    std::vector<double> at{0};
    for (int j = 1; j <= 5; ++j)
        at.push_back(regression.Getx(4, j));
    const nuvo::Prediction expected = regression.PredictInterval(at.data(), 0.9);
    EXPECT_NEAR(got.value, regression.GetyHat(4), 1e-12);
    // These terms are rounded, those of the fields are not.
    EXPECT_DOUBLE_EQ(got.value, expected.value);
    EXPECT_DOUBLE_EQ(got.standardError, expected.standardError);
    EXPECT_NEAR(got.confidence[0], expected.confidence[0], 1e-14);
    EXPECT_NEAR(got.prediction[1], expected.prediction[1], 1e-14);
    EXPECT_LT(got.prediction[0], got.confidence[0]);
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_TRUE(std::isnan(regression.PredictAt({{u("a"), 1}, {u("b"), 1}, {u("c"), 1}}).value))
        << "the fit is of the load before";
}

TEST_F(TermValues, HaveWhatRoundingCutsOffThem)
{
    const std::vector<TIndepVar> of{control("Inverse", "a"), power("a", "2"), control("None", "a"),
                                    control("Product", "a", "b"), control("Log", "a")};
    const nuvo::TermValues got = nuvo::termValues(of, {{u("a"), 3}, {u("b"), 0.1}});
    EXPECT_EQ(got.low[0], std::fma(-3, 1.0 / 3, 1) / 3);
    EXPECT_NE(got.low[0], 0);
    EXPECT_EQ(got.low[1], 0);
    EXPECT_EQ(got.low[2], 0);
    EXPECT_EQ(got.low[3], std::fma(3, 0.1, -(3 * 0.1)));
    EXPECT_NE(got.low[3], 0);
    EXPECT_EQ(got.low[4], 0);
}

TEST_F(TermValues, NameTheTermThatCannotTakeItsValue)
{
    EXPECT_EQ(refusal(terms, {{u("a"), -2.5}, {u("b"), 5}, {u("c"), 8}}),
              u("The term Ln(a) cannot take -2.5 of the field \"a\"."));
    EXPECT_EQ(refusal(terms, {{u("a"), 1}, {u("b"), 5}, {u("c"), 0}}),
              u("The term b/c cannot take 5 of the field \"b\" with 0 of \"c\"."));
    EXPECT_EQ(refusal({control("Inverse", "a")}, {{u("a"), 0}}), u("The term 1/a cannot take 0 of the field \"a\"."));
    EXPECT_EQ(refusal({control("None", "a")}, {{u("a"), NAN}}).left(11), u("The term a "));
    EXPECT_NE(refusal({power("a", "400")}, {{u("a"), 1e10}}), QString());
    EXPECT_EQ(refusal({control("Sqrt", "a")}, {{u("a"), 4}}), QString());
}

TEST_F(TermValues, WantEveryFieldOnceAndNoOther)
{
    EXPECT_EQ(refusal(terms, {{u("a"), 1}, {u("c"), 5}}), u("No value of the field \"b\" is given."));
    EXPECT_EQ(refusal(terms, {{u("a"), 1}, {u("b"), 5}, {u("c"), 5}, {u("A"), 1}}),
              u("A value of the field \"A\" is given twice."));
    EXPECT_EQ(refusal(terms, {{u("a"), 1}, {u("b"), 5}, {u("d"), 5}}),
              u("No term has a field \"d\"; the fields of the terms: a, b, c."));
    EXPECT_EQ(refusal({}, {}), QString());
}
