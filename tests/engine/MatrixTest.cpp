// SPDX-License-Identifier: MIT
#include "engine/Matrix.h"
#include "engine/kernel/Exact.h"
#include "engine/kernel/Normalequations.h"
#include "platform/Messages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <thread>
#include <vector>

namespace {

struct Shown
{
    QString text;
    TMsgDlgType type;
    unsigned buttons;
    int helpContext;
};

class MatrixKernel : public testing::Test
{
protected:
    MatrixKernel()
        : before_(SetMessageHandler([this](const QString &text, TMsgDlgType type, unsigned buttons, int helpContext) {
              shown_.push_back({text, type, buttons, helpContext});
              return static_cast<int>(mrOk);
          }))
    {
    }

    ~MatrixKernel() override { SetMessageHandler(before_); }

    double number() { return std::normal_distribution<double>(1, 10)(random_); }

    template <class Row>
    std::vector<Row> matrix(int rows)
    {
        std::vector<Row> result(rows);
        for (Row &row : result)
            std::generate(row.begin(), row.end(), [this] { return number(); });
        return result;
    }

    std::vector<double> vector(int size)
    {
        std::vector<double> result(size);
        std::generate(result.begin(), result.end(), [this] { return number(); });
        return result;
    }

    /// Expects one message of this kind and forgets it.
    void expectShown(TMsgDlgType type, const QString &text)
    {
        ASSERT_EQ(shown_.size(), 1U);
        EXPECT_EQ(shown_[0].text, text);
        EXPECT_EQ(shown_[0].type, type);
        EXPECT_EQ(shown_[0].buttons, static_cast<unsigned>(mbOK));
        EXPECT_EQ(shown_[0].helpContext, 0);
        shown_.clear();
    }

    std::mt19937_64 random_{20240301};
    std::vector<Shown> shown_;

private:
    TMessageHandler before_;
};

/// Crout's method element by element, counted from 1, as textbooks print it.
void crout(std::vector<TRow11> &rows, int n, int *indx, double &d)
{
    const auto a = [&rows](int i, int j) -> double & { return rows[i - 1][j - 1]; };
    double scale[12];
    d = 1;
    for (int i = 1; i <= n; ++i) {
        double big = 0;
        for (int j = 1; j <= n; ++j)
            if (std::fabs(a(i, j)) > big)
                big = std::fabs(a(i, j));
        scale[i] = 1 / big;
    }
    for (int j = 1; j <= n; ++j) {
        for (int i = 1; i < j; ++i)
            for (int k = 1; k < i; ++k)
                a(i, j) -= a(i, k) * a(k, j);
        double big = 0;
        int pivot = j;
        for (int i = j; i <= n; ++i) {
            for (int k = 1; k < j; ++k)
                a(i, j) -= a(i, k) * a(k, j);
            const double candidate = scale[i] * std::fabs(a(i, j));
            if (candidate >= big) {
                big = candidate;
                pivot = i;
            }
        }
        if (pivot != j) {
            std::swap_ranges(rows[pivot - 1].begin(), rows[pivot - 1].begin() + n, rows[j - 1].begin());
            d = -d;
            scale[pivot] = scale[j];
        }
        indx[j - 1] = pivot;
        if (a(j, j) == 0)
            a(j, j) = 1e-20;
        for (int i = j + 1; i <= n; ++i)
            a(i, j) /= a(j, j);
    }
}

/// Forward and back substitution as textbooks print it.
void substitute(const std::vector<TRow11> &rows, int n, const int *indx, double *z)
{
    const auto a = [&rows](int i, int j) { return rows[i - 1][j - 1]; };
    double *b = z - 1;
    int ii = 0;
    for (int i = 1; i <= n; ++i) {
        const int l = indx[i - 1];
        double sum = b[l];
        b[l] = b[i];
        if (ii != 0) {
            for (int k = ii; k < i; ++k)
                sum -= a(i, k) * b[k];
        } else if (sum != 0) {
            ii = i;
        }
        b[i] = sum;
    }
    for (int i = n; i >= 1; --i) {
        double sum = b[i];
        for (int k = i + 1; k <= n; ++k)
            sum -= a(i, k) * b[k];
        b[i] = sum / a(i, i);
    }
}

} // namespace

TEST_F(MatrixKernel, InvertsATwoByTwoMatrixAndLeavesItsFactors)
{
    TRow11 a[2] = {{4, 2}, {2, 3}};
    TRow11 inverse[2] = {};
    Matrix::invertnpbynp(a, inverse, 2, 2);
    EXPECT_DOUBLE_EQ(inverse[0][0], 0.375);
    EXPECT_DOUBLE_EQ(inverse[0][1], -0.25);
    EXPECT_DOUBLE_EQ(inverse[1][0], -0.25);
    EXPECT_DOUBLE_EQ(inverse[1][1], 0.5);
    EXPECT_EQ(a[0], (TRow11{4, 2}));
    EXPECT_EQ(a[1], (TRow11{0.5, 2}));
    EXPECT_TRUE(shown_.empty());
}

TEST_F(MatrixKernel, EachZeroRowIsOneSingularMessageAndNothingRaises)
{
    for (int zeroRows = 1; zeroRows <= 3; ++zeroRows) {
        TRow11 a[3] = {{4, 2, 1}, {2, 3, 7}, {1, 0, 5}};
        std::fill_n(a, zeroRows, TRow11{});
        TRow11 inverse[3] = {};
        EXPECT_NO_THROW(Matrix::invertnpbynp(a, inverse, 3, 3));
        ASSERT_EQ(shown_.size(), static_cast<std::size_t>(zeroRows));
        for (const Shown &message : shown_) {
            EXPECT_EQ(message.text, QStringLiteral("Your matrix is singular"));
            EXPECT_EQ(message.type, TMsgDlgType::mtError);
            EXPECT_EQ(message.buttons, static_cast<unsigned>(mbOK));
            EXPECT_EQ(message.helpContext, 0);
        }
        shown_.clear();
    }
}

TEST_F(MatrixKernel, FactorsAreThoseOfCroutsMethodToTheLastBit)
{
    for (int round = 0; round < 2000; ++round) {
        const int p = 1 + round % 11;
        std::vector<TRow11> a = matrix<TRow11>(p);
        switch (round / 11 % 6) {
        case 1: // dependent rows: a pivot that is zero or nearly so
            a[p - 1] = a[0];
            break;
        case 2: // many equal candidates
            for (TRow11 &row : a)
                std::transform(row.begin(), row.end(), row.begin(), [](double x) { return x > 0 ? 1 : -1; });
            break;
        case 3:
            a[round % p].fill(0);
            break;
        case 4:
            a[round % p][round / 2 % p] = notANumber;
            break;
        case 5:
            a[round % p][round / 2 % p] = infinity;
            break;
        default:
            break;
        }
        std::vector<TRow11> expected = a;
        int indx[11];
        int expectedIndx[11];
        double d = 0;
        double expectedD = 0;
        crout(expected, p, expectedIndx, expectedD);
        Matrix::ludecomp(a.data(), p, p, indx, d);
        ASSERT_TRUE(std::equal(indx, indx + p, expectedIndx));
        ASSERT_EQ(d, expectedD);
        for (int i = 0; i < p; ++i)
            for (int j = 0; j < 11; ++j)
                ASSERT_TRUE(same(a[i][j], expected[i][j])) << round << ": " << i << ' ' << j;

        std::vector<double> z = vector(p);
        if (round % 2)
            std::fill_n(z.begin(), round / 2 % p, 0.0); // leading zeros
        std::vector<double> expectedZ = z;
        substitute(expected, p, expectedIndx, expectedZ.data());
        Matrix::lubacksub(a.data(), p, p, indx, z.data());
        for (int i = 0; i < p; ++i)
            ASSERT_TRUE(same(z[i], expectedZ[i])) << round << ": " << i;
    }
}

TEST_F(MatrixKernel, ThePivotIsTheLastOfEqualCandidatesAndTheParityCountsExchanges)
{
    TRow11 a[3] = {{1, 2, 0}, {1, 0, 2}, {1, 1, 2}};
    int indx[3];
    double d = 0;
    Matrix::ludecomp(a, 3, 3, indx, d);
    // All scaled candidates are 1/2, in the first column and in what is left of the second.
    EXPECT_EQ(indx[0], 3);
    EXPECT_EQ(indx[1], 3);
    EXPECT_EQ(indx[2], 3);
    EXPECT_EQ(d, 1);
}

TEST_F(MatrixKernel, RowsAreScaledBeforeThePivotIsChosen)
{
    TRow11 a[2] = {{10, 1000}, {1, 1}};
    int indx[2];
    double d = 0;
    Matrix::ludecomp(a, 2, 2, indx, d);
    EXPECT_EQ(indx[0], 2);
    EXPECT_EQ(d, -1);
}

TEST_F(MatrixKernel, AZeroPivotBecomesSmallInsteadOfDividingByZero)
{
    TRow11 a[2] = {{1, 2}, {2, 4}};
    int indx[2];
    double d = 0;
    Matrix::ludecomp(a, 2, 2, indx, d);
    EXPECT_EQ(a[1][1], 1e-20);
    EXPECT_TRUE(shown_.empty());
}

TEST_F(MatrixKernel, WithNaNsThePivotRowStaysWhereItIs)
{
    TRow11 a[3];
    std::fill_n(a, 3, TRow11{notANumber, notANumber, notANumber});
    int indx[3];
    double d = 0;
    Matrix::ludecomp(a, 3, 3, indx, d);
    EXPECT_EQ(indx[0], 1);
    EXPECT_EQ(indx[1], 2);
    EXPECT_EQ(indx[2], 3);
    EXPECT_EQ(d, 1);
}

TEST_F(MatrixKernel, TheFactorsMultiplyToTheRowsInTheirNewOrder)
{
    for (int p = 1; p <= 11; ++p) {
        const std::vector<TRow11> before = matrix<TRow11>(p);
        std::vector<TRow11> a = before;
        int indx[11];
        double d = 0;
        Matrix::ludecomp(a.data(), p, p, indx, d);
        std::vector<TRow11> exchanged = before;
        for (int j = 0; j < p; ++j)
            std::swap(exchanged[j], exchanged[indx[j] - 1]);
        for (int i = 0; i < p; ++i) {
            for (int j = 0; j < p; ++j) {
                long double product = i <= j ? a[i][j] : 0;
                for (int k = 0; k < std::min(i, j + 1); ++k)
                    product += static_cast<long double>(a[i][k]) * a[k][j];
                EXPECT_NEAR(static_cast<double>(product), exchanged[i][j], 1e-12);
            }
        }
    }
}

TEST_F(MatrixKernel, TheInverseIsLaidDownByRowsOfItsColumns)
{
    for (int p = 1; p <= 11; ++p) {
        const std::vector<TRow11> before = matrix<TRow11>(p);
        std::vector<TRow11> a = before;
        std::vector<TRow11> inverse(p);
        Matrix::invertnpbynp(a.data(), inverse.data(), p, p);
        for (int i = 0; i < p; ++i) {
            for (int j = 0; j < p; ++j) {
                long double product = 0; // row i of the matrix times column j of its inverse
                for (int k = 0; k < p; ++k)
                    product += static_cast<long double>(before[i][k]) * inverse[j][k];
                EXPECT_NEAR(static_cast<double>(product), i == j, 1e-10);
            }
        }
    }
}

TEST_F(MatrixKernel, TransposesAndPrefixesAUnitColumn)
{
    const int r = 2500;
    const std::vector<TRow11> x = matrix<TRow11>(r);
    std::vector<TRow11> x1(r, TRow11{-1, -1, -1, -1, -1});
    Matrix::addunitmbynp(x.data(), x1.data(), r, 4);
    auto xt = std::make_unique<TCol2500[]>(11);
    Matrix::transposembynp(x1.data(), xt.get(), r, 4);
    for (int i = 0; i < r; ++i) {
        ASSERT_EQ(x1[i], (TRow11{1, x[i][0], x[i][1], x[i][2], -1}));
        for (int j = 0; j < 4; ++j)
            ASSERT_EQ(xt[j][i], x1[i][j]);
    }
    EXPECT_EQ(xt[4][0], 0);
    Matrix::addunitmbynp(x.data(), x1.data(), 1, 11);
    EXPECT_TRUE(std::equal(x[0].begin(), x[0].begin() + 10, x1[0].begin() + 1));
    Matrix::addunitmbynp(x.data(), x1.data(), 1, 1);
    EXPECT_EQ(x1[0][0], 1);
}

TEST_F(MatrixKernel, ProductsAreThePlainSums)
{
    for (const int r : {1, 3, 17, 2500}) {
        for (const int p : {1, 2, 6, 11}) {
            const std::vector<TCol2500> at = matrix<TCol2500>(p);
            const std::vector<TRow11> b = matrix<TRow11>(r);
            const std::vector<TRow11> c = matrix<TRow11>(p);
            const std::vector<double> y = vector(r);
            const std::vector<double> coefficients = vector(p + 1);

            std::vector<TRow11> square = matrix<TRow11>(p); // not zero before
            Matrix::multnpbymmbynp(at.data(), b.data(), square.data(), p, r);
            std::vector<TCol2500> wide = matrix<TCol2500>(p);
            Matrix::multnpbynpnpbym(c.data(), at.data(), wide.data(), p, r);
            std::vector<double> tall = vector(p + 1);
            const double atZero = tall[0];
            Matrix::multnpbymmvector(at.data(), y.data(), tall.data(), p, r);
            std::vector<double> fitted = vector(r);
            Matrix::mult1bynpbynpbym(fitted.data(), coefficients.data(), at.data(), p, r);

            EXPECT_EQ(tall[0], atZero);
            for (int i = 0; i < p; ++i) {
                double sum = 0;
                for (int k = 0; k < r; ++k)
                    sum += at[i][k] * y[k];
                EXPECT_EQ(tall[i + 1], sum);
                for (int j = 0; j < p; ++j) {
                    sum = 0;
                    for (int k = 0; k < r; ++k)
                        sum += at[i][k] * b[k][j];
                    EXPECT_EQ(square[i][j], sum);
                }
                for (int j = 0; j < r; ++j) {
                    sum = 0;
                    for (int k = 0; k < p; ++k)
                        sum += c[i][k] * at[k][j];
                    ASSERT_EQ(wide[i][j], sum);
                }
            }
            for (int k = 0; k < r; ++k) {
                double sum = 0;
                for (int i = 0; i < p; ++i)
                    sum += coefficients[i + 1] * at[i][k];
                ASSERT_EQ(fitted[k], sum);
            }
        }
    }
}

TEST_F(MatrixKernel, FittedValuesMayOverwriteTheCoefficients)
{
    const std::vector<TCol2500> a = matrix<TCol2500>(3);
    std::vector<double> both = vector(10);
    std::vector<double> apart(10);
    Matrix::mult1bynpbynpbym(apart.data(), both.data(), a.data(), 3, 10);
    Matrix::mult1bynpbynpbym(both.data(), both.data(), a.data(), 3, 10);
    EXPECT_EQ(both, apart);
}

TEST_F(MatrixKernel, ZeroShiftMovesThePositionsDownByOne)
{
    double b[5] = {-1, 5, 6, 7, 99};
    Matrix::zeroshiftnpvector(b, 3);
    EXPECT_EQ(b[0], 5);
    EXPECT_EQ(b[1], 6);
    EXPECT_EQ(b[2], 7);
    EXPECT_EQ(b[4], 99);
}

TEST_F(MatrixKernel, DotProductsCountTheirElements)
{
    const double a[] = {1000, 1, 2, 3};
    const double b[] = {1000, 4, 5, 6};
    EXPECT_EQ(Matrix::multnpvectors(a, b, 3), 32);
    EXPECT_EQ(Matrix::multnpvectors(a, b, 1), 4);
    EXPECT_EQ(Matrix::multmvectors(a + 1, b + 1, 3), 32);
    EXPECT_EQ(Matrix::multmvectors(a, b, 1), 1e6);
}

TEST_F(MatrixKernel, SmallestAndLargest)
{
    const double one[] = {7};
    EXPECT_EQ(Matrix::minmvector(one, 1), 7);
    EXPECT_EQ(Matrix::maxmvector(one, 1), 7);
    const double several[] = {3, -1, 8, -1, 8, notANumber};
    EXPECT_EQ(Matrix::minmvector(several, 6), -1);
    EXPECT_EQ(Matrix::maxmvector(several, 6), 8);
    const double zeros[] = {-0.0, 0.0};
    EXPECT_TRUE(same(Matrix::minmvector(zeros, 2), -0.0));
    EXPECT_TRUE(same(Matrix::maxmvector(zeros, 2), -0.0)); // equal values do not replace
    const double first[] = {notANumber, 1};
    EXPECT_TRUE(std::isnan(Matrix::minmvector(first, 2)));
    EXPECT_TRUE(std::isnan(Matrix::maxmvector(first, 2)));
    EXPECT_EQ(Matrix::min(2, 3), 2);
    EXPECT_EQ(Matrix::min(3, 2), 2);
    EXPECT_EQ(Matrix::max(2, 3), 3);
    EXPECT_EQ(Matrix::max(3, 2), 3);
}

TEST_F(MatrixKernel, SortsAscending)
{
    double three[] = {3, 1, 2};
    Matrix::sortmvector(three, 3);
    EXPECT_EQ(std::vector<double>(three, three + 3), (std::vector<double>{1, 2, 3}));
    for (const int r : {0, 1, 2, 100, 2500}) {
        std::vector<double> values = vector(r + 1);
        std::vector<double> expected = values;
        std::sort(expected.begin(), expected.begin() + r);
        Matrix::sortmvector(values.data(), r);
        EXPECT_EQ(values, expected); // and the element behind them stays
    }
}

TEST_F(MatrixKernel, MatricesAreShownRowByRow)
{
    const TRow11 a[2] = {{1, -2.5, 3}, {4, 123456.7, 0.00005}};
    Matrix::shownpbynpmatrix(a, 2, QStringLiteral("c"), 1);
    expectShown(TMsgDlgType::mtInformation,
                QStringLiteral("c is 2 by 2\n\r\n\r  1.0000  -2.5000\n\r  4.0000  123457.0000"));
    Matrix::showmbynpmatrix(a, 2, 3, QStringLiteral("x 100%1"), 7);
    expectShown(
        TMsgDlgType::mtInformation,
        QStringLiteral("x 100%1 is 2 by 3\n\r\n\r  1.0000  -2.5000  3.0000\n\r  4.0000  123457.0000  0.0001"));
    const TRow12 work[2] = {{1, 0}, {0, 1}};
    Matrix::showglnvmatrix(work, 2, QStringLiteral("u"), -1);
    expectShown(TMsgDlgType::mtInformation,
                QStringLiteral("u is 2 by 2\n\r\n\r  1.0000  0.0000\n\r  0.0000  1.0000"));
    auto at = std::make_unique<TCol2500[]>(2);
    at[0][2] = 5;
    Matrix::shownpbymmatrix(at.get(), 3, 2, QStringLiteral("xt"), 1);
    expectShown(TMsgDlgType::mtInformation,
                QStringLiteral("xt is 2 by 3\n\r\n\r  0.0000  0.0000  5.0000\n\r  0.0000  0.0000  0.0000"));
}

TEST_F(MatrixKernel, VectorsAreShownOneElementALine)
{
    const double b[] = {99, 1, -2};
    Matrix::shownpvector(b, 2, QStringLiteral("b"), 1);
    expectShown(TMsgDlgType::mtInformation, QStringLiteral("b has 2 rows, 1 column. \n\r  1.0000\n\r  -2.0000\n\r"));
    Matrix::showmvector(b, 2, QStringLiteral("v (bt*xt)"), 1);
    expectShown(TMsgDlgType::mtInformation,
                QStringLiteral("v (bt*xt) has 2 rows, 1 column. \n\r  99.0000\n\r  1.0000\n\r"));
}

TEST_F(MatrixKernel, WithTheSwitchOffNothingIsShown)
{
    const TRow11 a[1] = {{1}};
    const TRow12 work[1] = {{1}};
    const auto at = std::make_unique<TCol2500[]>(1);
    const double b[] = {0, 1};
    Matrix::shownpbynpmatrix(a, 1, QStringLiteral("c"), 0);
    Matrix::showmbynpmatrix(a, 1, 1, QStringLiteral("x"), 0);
    Matrix::showglnvmatrix(work, 1, QStringLiteral("u"), 0);
    Matrix::shownpbymmatrix(at.get(), 1, 1, QStringLiteral("xt"), 0);
    Matrix::shownpvector(b, 1, QStringLiteral("b"), 0);
    Matrix::showmvector(b, 1, QStringLiteral("y"), 0);
    EXPECT_TRUE(shown_.empty());
}

TEST_F(MatrixKernel, TwoThreadsInvertSideBySide)
{
    const auto invertMany = [](unsigned seed, bool &right) {
        std::mt19937_64 random(seed);
        right = true;
        for (int round = 0; round < 2000; ++round) {
            TRow11 a[11];
            for (TRow11 &row : a)
                std::generate(row.begin(), row.end(),
                              [&random] { return std::normal_distribution<double>()(random); });
            TRow11 copy[11];
            std::copy_n(a, 11, copy);
            TRow11 inverse[11];
            Matrix::invertnpbynp(copy, inverse, 11, 11);
            double corner = 0;
            for (int k = 0; k < 11; ++k)
                corner += a[0][k] * inverse[0][k];
            right = right && std::fabs(corner - 1) < 1e-6;
        }
    };
    bool here = false;
    bool there = false;
    std::thread other(invertMany, 1, std::ref(there));
    invertMany(2, here);
    other.join();
    EXPECT_TRUE(here);
    EXPECT_TRUE(there);
}

TEST_F(MatrixKernel, InverseAndFactorsAreThoseOfTheNormalEquationsUpToRounding)
{
    std::mt19937 random(6);
    std::normal_distribution<double> normal;
    std::vector<std::vector<double>> data(6, std::vector<double>(40));
    std::vector<nuvo::DataColumn> columns;
    for (std::vector<double> &values : data) {
        std::generate(values.begin(), values.end(), [&] { return normal(random); });
        columns.push_back({values.data(), nuvo::minMax(values.data(), 40).largest()});
    }
    nuvo::CrossProducts products;
    nuvo::crossProducts(columns, 40, products);
    const nuvo::NormalEquations got = nuvo::solveNormalEquations(products, 5);
    TRow11 c[6] = {};
    for (int i = 0; i < 6; ++i)
        for (int j = 0; j < 6; ++j)
            c[i][j] = products[i][j].hi;
    TRow11 inverse[6] = {};
    Matrix::invertnpbynp(c, inverse, 6, 6);
    for (int i = 0; i < 6; ++i) {
        for (int j = 0; j < 6; ++j) {
            EXPECT_NEAR(got.factors[i][j], c[i][j], 1e-12 * 40);
            EXPECT_NEAR(got.inverse[i][j], inverse[i][j], 1e-12);
            EXPECT_EQ(got.inverse[i][j], got.inverse[j][i]);
        }
    }
}
