// SPDX-License-Identifier: MIT
#include "engine/Fit.h"
#include "engine/Fitfigures.h"
#include "engine/Leftout.h"
#include "engine/Mlrquery.h"
#include "engine/Progress.h"
#include "engine/Termvalue.h"
#include "engine/Transformations.h"
#include "reference/Fitted.h"

#include <gtest/gtest.h>

TEST(RegressionExamples, ATable)
{
    //! [TMLRTable]
    TMLRTable longley;
    longley.SetDatabaseName("samples.db");
    longley.SetTableName("Longley");
    longley.ResponseVarY().SetField("TOTEMP");
    longley.ControlVar(1).SetField1("GNP");
    longley.ControlVar(1).SetTransformation("None");
    longley.Open();
    if (longley.ReLoad())
        longley.Execute();
    const double perMillion = longley.Getb(1);
    //! [TMLRTable]
    EXPECT_NEAR(perMillion, 0.0347522935, 1e-9);
}

TEST(RegressionExamples, AQuery)
{
    //! [TMLRQuery]
    TMLRQuery states;
    states.SetDatabaseName("samples.db");
    states.SetSQL("SELECT Murder, Region = 'South' AS South FROM States");
    states.ResponseVarY().SetField("Murder");
    states.ControlVar(1).SetField1("South");
    states.ControlVar(1).SetTransformation("None");
    states.Open();
    if (states.ReLoad())
        states.Execute();
    const double moreInTheSouth = states.Getb(1);
    //! [TMLRQuery]
    EXPECT_NEAR(moreInTheSouth, 4.710662, 1e-5);
}

TEST(RegressionExamples, FiguresOfAFit)
{
    FittedLongley longley;
    //! [TRegression]
    TRegression &regression = longley; // what a table and a query have in common
    const double r2 = regression.GetRSquared();
    const double p = regression.GetPValue(2); // of UNEMP
    const std::array<double, 2> interval = regression.GetConfidence(2, 0.99);
    const nuvo::Prediction at = regression.PredictAt({{"GNP", 500000}, {"UNEMP", 4000}});
    //! [TRegression]
    EXPECT_NEAR(r2, 0.9806546, 1e-6);
    EXPECT_LT(p, 0.05);
    EXPECT_LT(interval[0], regression.Getb(2));
    EXPECT_LT(at.prediction[0], at.confidence[0]);
}

TEST(RegressionExamples, DefinitionsOfVariables)
{
    //! [TIndepVar]
    TIndepVar share; // six texts: Usage, Transformation, Field1, Field2, Exponent, ScaleFactor
    share.SetField1("GNP");
    share.SetField2("POP");
    share.SetTransformation("Quotient"); // now it takes part
    const QString term = share.OutputTerm();
    //! [TIndepVar]
    EXPECT_EQ(term, "GNP/POP");
    EXPECT_EQ(share.Usage(), "Active");
    //! [TDependentVar]
    TDependentVar response;
    response.SetField("Ozone");
    response.SetTransformation("Log");
    const QString written = response.OutputTerm();
    //! [TDependentVar]
    EXPECT_EQ(written, "Ln(Ozone)");
}

TEST(RegressionExamples, AFitWithoutAComponent)
{
    //! [Fit]
    const nuvo::Observations observations = nuvo::Observations::of({{1, 2, 3, 4, 5}}, {2.1, 3.9, 6.2, 7.8, 10.1});
    const auto fit = std::make_shared<const nuvo::Fit>(observations); // a value: nobody changes it
    const nuvo::FitFigures figures(fit);
    const double slope = fit->b(1);
    const double p = figures.inference().pValues[1];
    const double most = figures.influence().cook[0];
    //! [Fit]
    EXPECT_NEAR(slope, 1.99, 1e-12);
    EXPECT_LT(p, 1e-4);
    EXPECT_GT(most, 0);
}

TEST(RegressionExamples, SpreadAndSumsOfObservations)
{
    //! [Sums]
    const nuvo::Observations observations = nuvo::Observations::of({{1, 2, 3, 4, 5}}, {2.1, 3.9, 6.2, 7.8, 10.1});
    nuvo::Spread spread;
    nuvo::findMeans(observations, spread);
    nuvo::findDeviations(observations, spread);
    nuvo::Sums sums = nuvo::sumsOf(observations);
    sums += nuvo::sumsOf(observations); // each record twice
    const nuvo::Fit doubled(observations, sums);
    //! [Sums]
    EXPECT_NEAR(spread.xBar[1], 3, 1e-15);
    EXPECT_NEAR(spread.xStdErr[1], std::sqrt(2.5), 1e-15);
    EXPECT_EQ(doubled.n(), 10);
    EXPECT_NEAR(doubled.b(1), 1.99, 1e-12);
}

TEST(RegressionExamples, RecordsThatCouldNotBeUsed)
{
    QStringList told;
    //! [LeftOut]
    TMLRTable air;
    air.SetDatabaseName("samples.db");
    air.SetTableName("Airquality");
    air.ResponseVarY().SetField("Ozone");
    air.ControlVar(1).SetField1("Radiation");
    air.ControlVar(1).SetTransformation("None");
    air.Open();
    air.ReLoad();
    for (const nuvo::LeftOut &term : air.LeftOut())
        told.append(QString("%1: %2 nulls").arg(term.term).arg(term.null));
    //! [LeftOut]
    EXPECT_EQ(told, (QStringList{"Ozone: 37 nulls", "Radiation: 7 nulls"}));
}

TEST(RegressionExamples, ValuesOfTerms)
{
    //! [TermValue]
    TIndepVar inverse;
    inverse.SetField1("Wind");
    inverse.SetTransformation("Inverse");
    const std::optional<nuvo::TermValue> value = nuvo::termValue(inverse, {{"Wind", 8}});
    //! [TermValue]
    ASSERT_TRUE(value.has_value());
    EXPECT_EQ(value->value, 0.125);
    //! [Transformation]
    QStringList keywords; // of all transformations that a control variable can have
    for (const nuvo::Transformation &transformation : nuvo::controlTransformations())
        keywords.append(transformation.keyword.toString());
    //! [Transformation]
    EXPECT_TRUE(keywords.contains("Quotient"));
}

TEST(RegressionExamples, WhoeverFollowsSomethingLong)
{
    //! [Progress]
    class Count : public nuvo::Progress // a dialog, a line of the terminal, or this
    {
    public:
        void Show() override {}
        void SetGaugeProgress(unsigned short progress) override { percent_ = progress; }
        void SetGaugeText(const QString &) override {}
        bool Stopped() const override { return percent_ >= 50; } // ends it half-way
        unsigned short percent_ = 0;
    };
    //! [Progress]
    Count count;
    count.SetGaugeProgress(49);
    EXPECT_FALSE(count.Stopped());
    count.SetGaugeProgress(50);
    EXPECT_TRUE(count.Stopped());
}
