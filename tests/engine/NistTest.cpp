// SPDX-License-Identifier: MIT
#include "engine/kernel/Nist.h"
#include "engine/Fit.h"
#include "engine/kernel/Leastsquares.h"
#include "engine/kernel/Prediction.h"
#include "support/Regressions.h"
#include "support/Text.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <fstream>

namespace {

/// Where even powers come from; odd ones always come from columns, because Power gives them another sign.
enum class Even { Power, Column, WithOdd };

/// A set, and how many digits, to one decimal, its worst coefficient and its worst standard deviation are to reach.
/// No bar for the deviations of an exact fit.
struct Bar
{
    const char *set;
    double coefficients;
    std::optional<double> deviations;
    Even even = Even::Power;
};

std::string caseName(const Bar &bar)
{
    return std::string(bar.set) + (bar.even == Even::Column    ? "FromColumns"
                                   : bar.even == Even::WithOdd ? "FromPowers"
                                                               : "");
}

void PrintTo(const Bar &bar, std::ostream *out)
{
    *out << caseName(bar);
}

bool reaches(double digits, double bar)
{
    return std::round(digits * 10) >= std::round(bar * 10);
}

double worst(const std::vector<double> &digits)
{
    return *std::min_element(digits.begin(), digits.end());
}

/// A set loaded as a user would define it.
class Certified : public RegressionOver<TMLRTable>, public testing::WithParamInterface<Bar>
{
protected:
    Certified() : set(readNist(GetParam().set))
    {
        const int controls = set.controls();
        QString names = text("y");
        for (int j = 1; j <= controls; ++j)
            names += QStringLiteral(" x%1").arg(j);
        fill(names.toUtf8().constData(), set.observations(), [this, controls](int i) {
            Row row = {set.columns[controls][i - 1]};
            for (int j = 0; j < controls; ++j)
                row.push_back(set.columns[j][i - 1]);
            return row;
        });
        const bool longley = std::string(GetParam().set) == "Longley";
        regression.SetResponse(response("None", "y"));
        for (int j = 1; j <= controls; ++j) {
            const QByteArray field = QByteArray("x") + QByteArray::number(j);
            const bool powered = !longley && (j % 2 == 0 ? GetParam().even != Even::Column
                                                         : j > 1 && GetParam().even == Even::WithOdd);
            regression.SetControl(j, powered ? power("x1", QByteArray::number(j).constData())
                                             : control("None", field.constData()));
        }
        EXPECT_TRUE(regression.ReLoad());
        regression.Execute();
    }

    std::vector<double> coefficientDigits() const
    {
        std::vector<double> digits;
        for (int j = 0; j <= set.controls(); ++j)
            digits.push_back(digitsAgreed(regression.Getb(j), set.coefficients[j].certified));
        return digits;
    }
    std::vector<double> deviationDigits()
    {
        std::vector<double> digits;
        for (int j = 0; j <= set.controls(); ++j)
            digits.push_back(digitsAgreed(std::sqrt(regression.GetCovar(j, j)), set.standardErrors[j].certified));
        return digits;
    }
    nlohmann::json certified() const
    {
        std::ifstream file(std::string(NUVO_TEST_DATA "/nist/") + GetParam().set + ".json");
        return nlohmann::json::parse(file).at("certified");
    }

    NistSet set;
};

// Filip's x is no double. Power raises x as it was rounded, the columns hold the true powers, rounded: mixed, they
// leave 6.9 digits even to exact arithmetic, the columns alone 7.7.
INSTANTIATE_TEST_SUITE_P(Nist, Certified,
                         testing::Values(Bar{"Norris", 14.1, 12.9}, Bar{"Pontius", 13.5, 12.8},
                                         Bar{"Longley", 15, 14}, Bar{"Filip", 7.6, 6.6, Even::Column},
                                         Bar{"Filip", 6.9, 6.6}, Bar{"Filip", 14, 13.9, Even::WithOdd},
                                         Bar{"Wampler1", 15, {}}, Bar{"Wampler2", 13.2, {}}, Bar{"Wampler3", 15, 14},
                                         Bar{"Wampler4", 15, 14}, Bar{"Wampler5", 15, 14}),
                         [](const auto &each) { return caseName(each.param); });

} // namespace

TEST_P(Certified, EverythingIsLoaded)
{
    EXPECT_EQ(regression.GetNumObs(), set.observations());
    EXPECT_EQ(regression.GetNumVars(), set.controls());
    EXPECT_EQ(QString::number(regression.GetDOF()).toStdString(),
              certified().at("analysis_of_variance").at("residual").at("df").get<std::string>());
    EXPECT_EQ(messages.shown, std::vector<Message>());
    // Power gives the published powers: exactly where x is a whole number, else within what rounding x leaves.
    const bool whole = std::string(GetParam().set) != "Filip";
    for (int j = 1; j <= set.controls(); ++j) {
        for (int i = 1; i <= set.observations(); ++i) {
            const double published = set.columns[j - 1][i - 1];
            EXPECT_NEAR(regression.Getx(i, j), published, whole ? 0 : std::fabs(published) * (j + 1) * 1.2e-16)
                << i << ' ' << j;
        }
    }
}

TEST_P(Certified, CoefficientsReachTheirBar)
{
    const double digits = worst(coefficientDigits());
    RecordProperty("coefficients", std::to_string(digits));
    EXPECT_TRUE(reaches(digits, GetParam().coefficients)) << digits;
}

TEST_P(Certified, CoefficientsAreThoseOfExactArithmeticOnTheSameDoubles)
{
    // Of the columns, that is: powers of a rounded x are other doubles.
    double bar = 15;
    if (std::string(GetParam().set) == "Filip")
        bar = GetParam().even == Even::Column ? 11 : 6.8;
    for (int j = 0; j <= set.controls(); ++j)
        EXPECT_GE(digitsAgreed(regression.Getb(j), set.coefficients[j].fromDoubles), bar) << j;
}

TEST_P(Certified, StandardDeviationsReachTheirBarAndThoseOfExactFitsAreNothing)
{
    EXPECT_EQ(regression.GetSyx(), std::sqrt(regression.GetMSE()));
    if (!GetParam().deviations) {
        EXPECT_GE(regression.GetSSE(), 0);
        EXPECT_LT(regression.GetSyx(), 1e-13 * regression.GetyMax());
        EXPECT_NEAR(regression.GetRSquared(), 1, 1e-15);
        return;
    }
    const double digits = worst(deviationDigits());
    const double residual = digitsAgreed(regression.GetSyx(), set.residualDeviation.certified);
    RecordProperty("deviations", std::to_string(digits));
    RecordProperty("residual", std::to_string(residual));
    EXPECT_TRUE(reaches(digits, *GetParam().deviations)) << digits;
    EXPECT_TRUE(reaches(residual, *GetParam().deviations)) << residual;
}

TEST_P(Certified, SumsOfSquaresAndTheirRatiosAreThere)
{
    const nlohmann::json values = certified();
    const nlohmann::json &variance = values.at("analysis_of_variance");
    EXPECT_GE(digitsAgreed(regression.GetSSR(), set.regressionSquares.certified), 9);
    EXPECT_GE(digitsAgreed(regression.GetRSquared(), values.at("r_squared")), 9);
    if (!GetParam().deviations)
        return;
    const double bar = std::min(*GetParam().deviations, 12.5);
    EXPECT_GE(digitsAgreed(regression.GetSSE(), set.residualSquares.certified), bar);
    EXPECT_GE(digitsAgreed(regression.GetF(), variance.at("f_statistic")), bar);
    EXPECT_GE(digitsAgreed(regression.GetMSE(), variance.at("residual").at("ms")), bar);
}

// The yardstick itself.

TEST_P(Certified, ACoefficientThatIsALittleOffFallsShort)
{
    for (const NistSet::Figure &figure : set.coefficients) {
        const double value = std::stod(figure.certified);
        EXPECT_LT(digitsAgreed(value * (1 + 1e-6), figure.certified), 7);
        EXPECT_GE(digitsAgreed(value, figure.certified), 15);
    }
}

TEST_P(Certified, NormalEquationsInPlainDoublesFallShort)
{
    const std::vector<double> b = plainNormalEquations(set.columns);
    std::vector<double> digits;
    for (std::size_t j = 0; j < b.size(); ++j)
        digits.push_back(digitsAgreed(b[j], set.coefficients[j].certified));
    EXPECT_LT(worst(digits), GetParam().coefficients);
}

// Filip's fit in arithmetic of 80 digits, on the decimals as they were published.
TEST(FilipFromPowers, PredictsAtAFieldWithTheDigitsThatItsCoefficientsHave)
{
    struct Reference
    {
        double x;
        const char *value;
        const char *standardError;
    };
    const NistSet set = readNist("Filip");
    const auto db = TestDatabase::make(TestDatabase::Sqlite);
    std::vector<Row> rows;
    for (std::size_t i = 0; i < std::size_t(set.observations()); ++i)
        rows.push_back({set.columns[0][i], set.columns[10][i]});
    makeTable(*db, "data", "x y", rows);
    TMLRTable regression;
    bind(regression, *db, "data");
    regression.SetResponse(response("None", "y"));
    regression.SetControl(1, control("None", "x"));
    for (int j = 2; j <= 10; ++j)
        regression.SetControl(j, power("x", QByteArray::number(j).constData()));
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    for (const auto &[x, value, error] : {Reference{-3.25, "0.92599623989824860523", "0.0022200598615972557691"},
                                          Reference{-6, "0.88604832232643521529", "0.00083452215160943660003"},
                                          Reference{-8.75, "0.76888037527200314941", "0.0020206639140874475624"}}) {
        const nuvo::Prediction got = regression.PredictAt({{u("x"), x}});
        EXPECT_GE(digitsAgreed(got.value, value), 14) << x;
        EXPECT_GE(digitsAgreed(got.standardError, error), 13.5) << x;
    }
    EXPECT_NE(regression.CurrentFit()->factors(), nullptr);
    for (int j = 2; j <= 10; ++j)
        regression.SetControl(j, TIndepVar());
    ASSERT_TRUE(regression.ReLoad());
    regression.Execute();
    EXPECT_EQ(regression.CurrentFit()->factors(), nullptr) << "x as it stands has no low parts";
}
