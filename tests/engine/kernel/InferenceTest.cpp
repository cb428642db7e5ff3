// SPDX-License-Identifier: MIT
#include "engine/kernel/Inference.h"
#include "engine/kernel/Diagnostics.h"
#include "engine/kernel/Exact.h"
#include "engine/kernel/Inferencereference.h"
#include "engine/kernel/Influence.h"
#include "engine/kernel/Prediction.h"
#include "engine/kernel/Robust.h"

#include <gtest/gtest.h>

using namespace nuvo;
using nlohmann::json;

namespace {

json inferenceOf(const Factors &factors, double level)
{
    const Inference got = infer(factors, level);
    return {{"level", got.level},
            {"standardErrors", got.standardErrors},
            {"tValues", got.tValues},
            {"pValues", got.pValues},
            {"confidence", got.confidence},
            {"fPValue", got.fPValue},
            {"adjustedRSquared", got.adjustedRSquared},
            {"logLikelihood", got.logLikelihood},
            {"aic", got.aic},
            {"aicc", got.aicc},
            {"bic", got.bic},
            {"hqc", got.hqc},
            {"standardized", got.standardized},
            {"tolerance", got.tolerance},
            {"vif", got.vif},
            {"partialCorrelations", got.partialCorrelations},
            {"semipartialCorrelations", got.semipartialCorrelations},
            {"sequentialSumsOfSquares", got.sequentialSumsOfSquares},
            {"partialSumsOfSquares", got.partialSumsOfSquares},
            {"conditionIndices", got.conditionIndices}};
}

json testOf(const TestResult &test)
{
    return {{"statistic", test.statistic}, {"df", test.degrees}, {"pValue", test.pValue}};
}

json diagnosticsOf(const Factors &factors, const Observed &observed, const ObservedColumns &columns)
{
    const Diagnostics got = diagnose(factors, observed, columns);
    json reset = testOf(got.reset);
    reset["df"] = {got.reset.degrees, got.resetDenominator};
    return {{"durbinWatson", got.durbinWatson},
            {"press", got.press},
            {"predictedRSquared", got.predictedRSquared},
            {"breuschPagan", testOf(got.breuschPagan)},
            {"white", testOf(got.white)},
            {"jarqueBera", testOf(got.jarqueBera)},
            {"shapiroWilk", testOf(got.shapiroWilk)},
            {"reset", reset}};
}

json influenceOf(const Factors &factors, const Observed &observed)
{
    const Influence got = influence(factors, observed);
    json dfbetas = json::array(); // a row for each observation
    for (std::size_t i = 0; i < got.leverage.size(); ++i) {
        dfbetas.push_back(json::array());
        for (const std::vector<double> &column : got.dfbetas)
            dfbetas.back().push_back(column[i]);
    }
    return {{"leverage", got.leverage},
            {"standardizedResiduals", got.standardizedResiduals},
            {"studentizedResiduals", got.studentizedResiduals},
            {"cook", got.cook},
            {"dffits", got.dffits},
            {"covRatio", got.covRatio},
            {"dfbetas", dfbetas}};
}

constexpr std::array<std::pair<const char *, RobustKind>, 5> kinds = {{{"hc0", RobustKind::Hc0},
                                                                       {"hc1", RobustKind::Hc1},
                                                                       {"hc2", RobustKind::Hc2},
                                                                       {"hc3", RobustKind::Hc3},
                                                                       {"hac", RobustKind::Hac}}};

json robustOf(const Factors &factors, const Observed &observed, RobustKind kind)
{
    const Robust got = robust(factors, observed, kind);
    return {{"standardErrors", got.standardErrors},
            {"tValues", got.tValues},
            {"pValues", got.pValues},
            {"covariance", got.covariance}};
}

json predictionOf(const Factors &factors, const json &at, double level)
{
    const Prediction got = predict(factors, at.get<std::vector<double>>(), {}, level);
    return {{"at", at},
            {"value", got.value},
            {"standardError", got.standardError},
            {"confidence", got.confidence},
            {"prediction", got.prediction}};
}

struct DigitsBar
{
    const char *set;
    double digits; ///< of every figure
};

void PrintTo(const DigitsBar &bar, std::ostream *stream)
{
    *stream << bar.set;
}

class Figures : public testing::TestWithParam<DigitsBar>
{
protected:
    // A whole figure of NaNs on our side where there is to be none is what the comparison takes it for.
    void expectDigits(const json &got, const char *name)
    {
        const Agreement agreement = compare(got, set_.figures.at(name), name);
        EXPECT_EQ(agreement.different, "");
        EXPECT_GE(agreement.digits, GetParam().digits) << agreement.worst;
        std::printf("%-15s %-12s %5.1f  %s\n", GetParam().set, name, agreement.digits, agreement.worst.c_str());
    }

    const ReferenceSet set_ = readReference(GetParam().set);
    const ObservedColumns columns_ = set_.observed();
    const Factors factors_ = factorize(productsOf(columns_), columns_);
    const Observed observed_ = observe(factors_, columns_);
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Sets, Figures,
                         testing::Values(DigitsBar{"Longley", 12}, DigitsBar{"Filip", 12}, DigitsBar{"Cement", 12},
                                         DigitsBar{"Airquality", 12}, DigitsBar{"illconditioned", 12},
                                         DigitsBar{"exact", 12}, DigitsBar{"saturated", 12},
                                         DigitsBar{"onedegree", 12}, DigitsBar{"twodegrees", 12},
                                         DigitsBar{"dependent", 12}, DigitsBar{"large", 12}, DigitsBar{"small", 12},
                                         DigitsBar{"none", 12}, DigitsBar{"leverageone", 12},
                                         DigitsBar{"dummies", 12}, DigitsBar{"three", 12}, DigitsBar{"steep", 12}),
                         [](const auto &test) { return std::string(test.param.set); });

TEST_P(Figures, OfInferenceHaveTheirDigits)
{
    expectDigits(inferenceOf(factors_, 0.95), "inference");
}

TEST_P(Figures, OfDiagnosticsHaveTheirDigits)
{
    expectDigits(diagnosticsOf(factors_, observed_, columns_), "diagnostics");
}

TEST_P(Figures, OfInfluenceHaveTheirDigits)
{
    expectDigits(influenceOf(factors_, observed_), "influence");
    json residuals = json::array();
    for (const double value : observed_.residual)
        residuals.push_back(factors_.unscaled(value, factors_.m + 1));
    expectDigits(residuals, "residuals");
}

TEST_P(Figures, OfRobustErrorsHaveTheirDigits)
{
    for (const auto &[name, kind] : kinds) {
        const json wanted = set_.figures.at("robust").at(name);
        const json got = robustOf(factors_, observed_, kind);
        if (wanted.is_null()) {
            for (const json &error : got.at("standardErrors"))
                EXPECT_TRUE(std::isnan(error.get<double>())) << name;
            continue;
        }
        const Agreement agreement = compare(got, wanted, name);
        EXPECT_EQ(agreement.different, "");
        EXPECT_GE(agreement.digits, GetParam().digits) << agreement.worst;
    }
}

TEST_P(Figures, OfPredictionsHaveTheirDigits)
{
    json got = json::array();
    for (const json &prediction : set_.figures.at("predictions"))
        got.push_back(predictionOf(factors_, prediction.at("at"), 0.95));
    expectDigits(got, "predictions");
}

TEST_P(Figures, AreTheSameToTheLastBitWithoutAvx2)
{
    const WithoutAvx2 guard;
    const Factors factors = factorize(productsOf(columns_), columns_);
    const Observed observed = observe(factors, columns_);
    EXPECT_EQ(inferenceOf(factors, 0.95).dump(), inferenceOf(factors_, 0.95).dump());
    EXPECT_EQ(diagnosticsOf(factors, observed, columns_).dump(), diagnosticsOf(factors_, observed_, columns_).dump());
    EXPECT_EQ(influenceOf(factors, observed).dump(), influenceOf(factors_, observed_).dump());
    EXPECT_EQ(robustOf(factors, observed, RobustKind::Hac).dump(),
              robustOf(factors_, observed_, RobustKind::Hac).dump());
}
