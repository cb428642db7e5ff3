// SPDX-License-Identifier: MIT
#include "app/Regressionoutput.h"

#include "present/Longleyfigures.h"
#include "support/Print.h"
#include "support/Regressions.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace {

using nuvo::Figures;
using nuvo::Json;

TEST(JsonOfAFit, HasInferenceAndDiagnosticsUnderTheirNames)
{
    const Json json = nuvo::jsonRegression(longleyFigures());
    EXPECT_EQ(json["inference"]["level"], 0.95);
    EXPECT_EQ(json["inference"]["pValues"].size(), 7U);
    EXPECT_EQ(json["inference"]["confidence"][6], Json::parse("[798.787515278, 2859.51541395]"));
    EXPECT_EQ(json["inference"]["fPValue"], 4.98403052872e-10);
    EXPECT_EQ(json["inference"]["vif"][1], 1788.51348272);
    EXPECT_EQ(json["inference"]["conditionIndices"][0], 1);
    EXPECT_EQ(json["diagnostics"]["durbinWatson"], 2.55948768928);
    const char *const breuschPagan = R"({"statistic":2.50966320764,"df":6,"pValue":0.867384634857})";
    EXPECT_EQ(json["diagnostics"]["breuschPagan"].dump(), breuschPagan);
    const char *const shapiroWilk = R"({"statistic":0.948601797709,"pValue":0.467866399754})";
    EXPECT_EQ(json["diagnostics"]["shapiroWilk"].dump(), shapiroWilk);
    EXPECT_EQ(json["diagnostics"]["reset"]["df"].dump(), "[2,7]");
    EXPECT_TRUE(json["diagnostics"]["white"].is_null());
}

TEST(JsonOfAFit, HasARowOfDfbetasForEachObservation)
{
    Figures figures = longleyFigures();
    figures.influence->dfbetas.assign(7, Figures::Numbers(16, 0.5));
    figures.influence->dfbetas[6][15] = 2;
    figures.record.assign(16, 3);
    const Json influence = nuvo::jsonRegression(figures)["influence"];
    EXPECT_EQ(influence["record"].size(), 16U);
    EXPECT_EQ(influence["cook"][4], 0.613916838192);
    ASSERT_EQ(influence["dfbetas"].size(), 16U);
    EXPECT_EQ(influence["dfbetas"][15].dump(), "[0.5,0.5,0.5,0.5,0.5,0.5,2.0]");
}

TEST(JsonOfAFit, HasWhatWasLeftOutRobustErrorsAndPredictions)
{
    Figures figures = longleyFigures();
    figures.leftOut = {{u("Ozone"), 37, 0}, {u("Ln(x)"), 1, 2}};
    figures.robust = Figures::Robust{u("hc3"), {{1}, {2}, {Figures::None}, {{4}}, 0}};
    Figures::Prediction prediction;
    prediction.at = {{u("GNP"), 250}, {u("a b"), -1}};
    prediction.predicted = {1, 2, {3, 4}, {5, Figures::None}};
    figures.predictions = {prediction};
    const Json json = nuvo::jsonRegression(figures);
    ASSERT_EQ(json["leftOut"].size(), 2U);
    EXPECT_EQ(json["leftOut"][0]["term"], "Ozone");
    EXPECT_EQ(json["leftOut"][0]["null"], 37);
    EXPECT_EQ(json["leftOut"][1]["invalid"], 2);
    EXPECT_EQ(json["robust"]["kind"], "hc3");
    EXPECT_EQ(json["robust"]["standardErrors"].dump(), "[1.0]");
    EXPECT_EQ(json["robust"]["tValues"].dump(), "[2.0]");
    EXPECT_EQ(json["robust"]["pValues"].dump(), "[null]");
    EXPECT_EQ(json["robust"]["covariance"].dump(), "[[4.0]]");
    ASSERT_EQ(json["predictions"].size(), 1U);
    const Json &one = json["predictions"][0];
    EXPECT_EQ(one["at"]["GNP"], 250);
    EXPECT_EQ(one["at"]["a b"], -1);
    EXPECT_EQ(one["value"], 1);
    EXPECT_EQ(one["standardError"], 2);
    EXPECT_EQ(one["confidence"].dump(), "[3.0,4.0]");
    EXPECT_EQ(one["prediction"].dump(), "[5.0,null]");
}

TEST(JsonOfAFit, HasNothingThatWasNotAskedFor)
{
    Figures figures = longleyFigures();
    figures.inference.reset();
    figures.diagnostics.reset();
    figures.influence.reset();
    const Json json = nuvo::jsonRegression(figures);
    for (const char *name : {"inference", "diagnostics", "influence", "robust", "predictions", "leftOut"})
        EXPECT_FALSE(json.contains(name)) << name;
}

/// A component as its JSON shows it from one step to the next.
class JsonOfAComponent : public RegressionOver<TMLRTable>
{
protected:
    void SetUp() override
    {
        fill("y a b", {{3, 1, 2}, {5, 2, 0}, {7, 4, 1}, {8, 5, 3}, {12, 7, 4}, {13, 8, 2}});
        define(regression, "a");
        ASSERT_TRUE(regression.ReLoad());
        regression.Execute();
    }
    Json json() { return nuvo::jsonRegression(nuvo::figures(regression, nuvo::Asked())); }
    /// That nothing of a fit is shown.
    void expectNoFigures()
    {
        const Json shown = json();
        EXPECT_EQ(shown["computed"], false);
        for (const char *figure : {"coefficients", "sse", "fitted", "inference", "diagnostics", "report"})
            EXPECT_FALSE(shown.contains(figure)) << figure;
    }
};

TEST_F(JsonOfAComponent, IsComputedUntilTheNextLoad)
{
    EXPECT_EQ(json()["loaded"], true);
    EXPECT_EQ(json()["computed"], true);
    EXPECT_EQ(json()["coefficients"].size(), 2U);
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_EQ(json()["loaded"], true);
    expectNoFigures();
    regression.Execute();
    EXPECT_EQ(json()["computed"], true);
}

TEST_F(JsonOfAComponent, IsNotComputedAfterALoadThatThrows)
{
    regression.SetControl(1, control("None", "nope"));
    EXPECT_THROW(regression.ReLoad(), EDatabaseError);
    EXPECT_EQ(json()["loaded"], false);
    expectNoFigures();
    regression.Execute(); // says that nothing is loaded
    expectNoFigures();
}

TEST_F(JsonOfAComponent, IsNotComputedAfterALoadWithoutAResult)
{
    regression.SetFilter(u("a > 100"));
    regression.SetFiltered(true);
    EXPECT_FALSE(regression.ReLoad());
    EXPECT_EQ(json()["loaded"], false);
    EXPECT_EQ(json()["observations"], 0);
    expectNoFigures();
}

TEST_F(JsonOfAComponent, IsComputedWithNullsWhereTermsOverflow)
{
    regression.SetControl(1, power("a", "400"));
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    const Json shown = json();
    EXPECT_EQ(shown["loaded"], true);
    EXPECT_EQ(shown["computed"], true);
    for (const char *figures : {"coefficients", "standardErrors", "tValues"})
        EXPECT_EQ(shown[figures].dump(), "[null,null]") << figures;
    for (const char *figure : {"sse", "syx", "f"})
        EXPECT_TRUE(shown[figure].is_null()) << figure;
    EXPECT_TRUE(shown["inference"]["aic"].is_null());
    regression.SetControl(1, control("None", "a"));
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_FALSE(json()["coefficients"][1].is_null());
}

} // namespace
