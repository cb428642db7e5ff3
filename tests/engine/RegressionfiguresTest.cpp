// SPDX-License-Identifier: MIT
#include "engine/Fitfigures.h"
#include "support/Regressions.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <fstream>

namespace {

using nlohmann::json;

/// The component over a set of tests/data/inference, whose figures were worked out with 100 digits.
class RegressionFigures : public RegressionOver<TMLRTable>
{
protected:
    void run(const char *set, const char *columns)
    {
        std::ifstream stream(std::string(NUVO_TEST_DATA) + "/inference/" + set + ".json");
        wanted = json::parse(stream);
        const auto x = wanted.at("columns").get<std::vector<std::vector<double>>>();
        const auto response = wanted.at("response").get<std::vector<double>>();
        fill(columns, int(response.size()), [&](int i) {
            Row row{response[std::size_t(i) - 1]};
            for (const std::vector<double> &column : x)
                row.push_back(column[std::size_t(i) - 1]);
            return row;
        });
        define(regression, columns + 2);
        ASSERT_TRUE(regression.ReLoad());
        regression.Execute();
    }

    double of(const char *group, const char *name, int index) const
    {
        return wanted.at(group).at(name).at(std::size_t(index)).get<double>();
    }
    double of(const char *group, const char *name) const { return wanted.at(group).at(name).get<double>(); }

    json wanted;
};

} // namespace

TEST_F(RegressionFigures, AreThoseOfAHundredDigits)
{
    run("Longley", "y a b c d e f");
    const auto expect = [](double got, double value) { EXPECT_NEAR(got / value, 1, 1e-12); };
    for (int j = 0; j <= 6; ++j) {
        expect(regression.GetPValue(j), of("inference", "pValues", j));
        const json interval = wanted.at("inference").at("confidence").at(std::size_t(j));
        expect(regression.GetConfidence(j)[0], interval.at(0).get<double>());
        expect(regression.GetConfidence(j)[1], interval.at(1).get<double>());
        expect(regression.GetConditionIndex(j + 1), of("inference", "conditionIndices", j));
        expect(regression.GetRobustStdErr(nuvo::RobustKind::Hc3, j),
               wanted.at("robust").at("hc3").at("standardErrors").at(std::size_t(j)).get<double>());
        expect(regression.GetRobustCovar(nuvo::RobustKind::Hac, j, 0),
               wanted.at("robust").at("hac").at("covariance").at(std::size_t(j)).at(0).get<double>());
        expect(regression.GetRobustPValue(nuvo::RobustKind::Hc0, j),
               wanted.at("robust").at("hc0").at("pValues").at(std::size_t(j)).get<double>());
    }
    for (int j = 1; j <= 6; ++j) {
        expect(regression.GetStandardized(j), of("inference", "standardized", j - 1));
        expect(regression.GetTolerance(j), of("inference", "tolerance", j - 1));
        expect(regression.GetVIF(j), of("inference", "vif", j - 1));
        expect(regression.GetPartialCorrelation(j), of("inference", "partialCorrelations", j - 1));
        expect(regression.GetSemipartialCorrelation(j), of("inference", "semipartialCorrelations", j - 1));
        expect(regression.GetSequentialSumOfSquares(j), of("inference", "sequentialSumsOfSquares", j - 1));
        expect(regression.GetPartialSumOfSquares(j), of("inference", "partialSumsOfSquares", j - 1));
    }
    expect(regression.GetFPValue(), of("inference", "fPValue"));
    expect(regression.GetAdjustedRSquared(), of("inference", "adjustedRSquared"));
    expect(regression.GetLogLikelihood(), of("inference", "logLikelihood"));
    expect(regression.GetAIC(), of("inference", "aic"));
    expect(regression.GetAICc(), of("inference", "aicc"));
    expect(regression.GetBIC(), of("inference", "bic"));
    expect(regression.GetHQC(), of("inference", "hqc"));
    expect(regression.GetDurbinWatson(), of("diagnostics", "durbinWatson"));
    expect(regression.GetPRESS(), of("diagnostics", "press"));
    expect(regression.GetPredictedRSquared(), of("diagnostics", "predictedRSquared"));
    const auto expectTest = [&](const nuvo::TestResult &got, const char *name) {
        expect(got.statistic, wanted.at("diagnostics").at(name).at("statistic").get<double>());
        expect(got.pValue, wanted.at("diagnostics").at(name).at("pValue").get<double>());
    };
    expectTest(regression.GetBreuschPagan(), "breuschPagan");
    expectTest(regression.GetJarqueBera(), "jarqueBera");
    expectTest(regression.GetShapiroWilk(), "shapiroWilk");
    expectTest(regression.GetRESET(), "reset");
    EXPECT_TRUE(std::isnan(regression.GetWhite().statistic)) << "27 columns, 16 observations";
    for (int i = 1; i <= 16; ++i) {
        expect(regression.GetLeverage(i), of("influence", "leverage", i - 1));
        expect(regression.GetStandardizedResidual(i), of("influence", "standardizedResiduals", i - 1));
        expect(regression.GetStudentizedResidual(i), of("influence", "studentizedResiduals", i - 1));
        expect(regression.GetCook(i), of("influence", "cook", i - 1));
        expect(regression.GetDFFITS(i), of("influence", "dffits", i - 1));
        expect(regression.GetCovRatio(i), of("influence", "covRatio", i - 1));
        EXPECT_NEAR(regression.GetDFBETAS(i, 4),
                    wanted.at("influence").at("dfbetas").at(std::size_t(i) - 1).at(4).get<double>(), 1e-12);
    }
    const json prediction = wanted.at("predictions").at(0);
    std::vector<double> at{0};
    for (const json &value : prediction.at("at"))
        at.push_back(value.get<double>());
    const nuvo::Prediction got = regression.PredictInterval(at.data());
    expect(got.value, prediction.at("value").get<double>());
    expect(got.standardError, prediction.at("standardError").get<double>());
    expect(got.confidence[0], prediction.at("confidence").at(0).get<double>());
    expect(got.prediction[1], prediction.at("prediction").at(1).get<double>());
}

TEST_F(RegressionFigures, AreOfTheLastFit)
{
    EXPECT_EQ(regression.Figures(), nullptr);
    EXPECT_TRUE(std::isnan(regression.GetPValue(0)));
    EXPECT_TRUE(std::isnan(regression.GetConfidence(0)[0]));
    EXPECT_TRUE(std::isnan(regression.GetWhite().pValue));
    const double at[] = {0, 1};
    EXPECT_TRUE(std::isnan(regression.PredictInterval(at).value));

    run("Cement", "y a b c d");
    const auto before = regression.Figures();
    const double aic = regression.GetAIC();
    EXPECT_EQ(regression.Figures(), before) << "worked out once";
    EXPECT_TRUE(std::isnan(regression.GetPValue(5)));
    EXPECT_TRUE(std::isnan(regression.GetLeverage(14)));
    EXPECT_TRUE(std::isnan(regression.GetConfidence(1, 2)[0]));
    define(regression, "a b");
    regression.SetControl(3, {});
    regression.SetControl(4, {});
    ASSERT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetAIC(), aic) << "until it is fitted";
    regression.Execute();
    EXPECT_LT(regression.GetAIC(), aic);
    EXPECT_NE(regression.Figures(), before);
    EXPECT_EQ(before->inference().aic, aic) << "a value that does not change";
}
