// SPDX-License-Identifier: MIT
#include "engine/kernel/Distributions.h"
#include "engine/kernel/Exact.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace nuvo;

TEST(FDistribution, PValuesAreThoseOfFortyDigits)
{
    struct Tail
    {
        double f;
        double numerator;
        double denominator;
        double p;
    };
    for (const Tail &tail : {
             Tail{22.79852, 1, 11, 0.00057623183603599469406},
             Tail{4.0, 1, 2497, 0.045608396099429552762},
             Tail{0.01, 1, 8, 0.92280490943059690352},
             Tail{161.40000000000001, 1, 1, 0.050007348139564308483},
             Tail{2.5, 10, 2489, 0.005508562412759230942},
             Tail{5000.0, 1, 30, 6.2269821860479670202e-35},
             Tail{1000000.0, 6, 9, 1.1082882240881050647e-25},
             Tail{1.0000000000000001e-9, 3, 7, 0.99999999999995180149},
             Tail{100000.0, 1, 200, 5.8551654571264920558e-272},
             Tail{3.8399999999999999, 1, 1000000, 0.050043798609967241154},
         }) {
        const double p = fUpperTail(tail.f, tail.numerator, tail.denominator);
        EXPECT_NEAR(p / tail.p, 1, 1e-13) << tail.f;
        if (tail.p < 0.99) { // one nearer to 1 has lost the digits of its f
            EXPECT_NEAR(fUpperQuantile(tail.p, tail.numerator, tail.denominator) / tail.f, 1, 1e-12) << tail.f;
        }
    }
}

TEST(FDistribution, EndsAndWhatIsNoProbability)
{
    EXPECT_EQ(fUpperTail(0, 1, 10), 1);
    EXPECT_EQ(fUpperTail(-3, 1, 10), 1);
    EXPECT_EQ(fUpperTail(infinity, 1, 10), 0);
    EXPECT_EQ(fUpperTail(1e300, 10, 2000), 0);
    EXPECT_EQ(fUpperQuantile(0, 1, 10), infinity);
    EXPECT_EQ(fUpperQuantile(1, 1, 10), 0);
    EXPECT_TRUE(std::isnan(fUpperTail(notANumber, 1, 10)));
    EXPECT_TRUE(std::isnan(fUpperTail(1, 1, 0)));
    EXPECT_TRUE(std::isnan(fUpperQuantile(1.5, 1, 10)));
    EXPECT_TRUE(std::isnan(fUpperQuantile(-0.1, 1, 10)));
    EXPECT_TRUE(std::isnan(fUpperQuantile(notANumber, 1, 10)));
    EXPECT_TRUE(std::isnan(fUpperQuantile(0.05, 1, 0)));
}

TEST(StudentDistribution, TailsAreThoseOfSixtyDigits)
{
    struct Tail
    {
        double t;
        double degrees;
        double p;
    };
    for (const Tail &tail : {Tail{2.5, 9, 0.03386182768298573921}, Tail{1e-9, 3, 0.9999999992648948061},
                             Tail{50, 100, 1.4472163679761388752e-72}, Tail{-37.5, 2489, 2.2728471562300051831e-244},
                             Tail{1e12, 20, 1.8042578125e-228}, Tail{3, 1, 0.20483276469913345165},
                             Tail{1.96, 1000000, 0.049996067585269790686}})
        EXPECT_NEAR(studentTail(tail.t, tail.degrees) / tail.p, 1, 1e-13) << tail.t;
    EXPECT_EQ(studentTail(0, 5), 1);
    EXPECT_EQ(studentTail(1e300, 50), 0) << "below the smallest double";
    EXPECT_EQ(studentTail(-infinity, 5), 0);
    EXPECT_TRUE(std::isnan(studentTail(1, 0)));
    EXPECT_TRUE(std::isnan(studentTail(notANumber, 5)));
}

TEST(StudentDistribution, QuantilesAreThoseOfSixtyDigits)
{
    struct Quantile
    {
        double level;
        double degrees;
        double t;
    };
    for (const Quantile &quantile :
         {Quantile{0.95, 9, 2.2621571627982049992}, Quantile{0.999999, 3, 130.15458955711021351},
          Quantile{0.95, 2489, 1.9609175424476304038}, Quantile{0.1, 1, 0.15838444032453630278},
          Quantile{1e-12, 7, 1.2987301378228252304e-12}, Quantile{0.95, 1000000, 1.9599663568141066553},
          Quantile{0.5, 30, 0.68275569332129255301}})
        EXPECT_NEAR(studentQuantile(quantile.level, quantile.degrees) / quantile.t, 1, 1e-14) << quantile.level;
    for (const double level : {0.0, 1.0, -0.5, 2.0, notANumber})
        EXPECT_TRUE(std::isnan(studentQuantile(level, 5))) << level;
    EXPECT_TRUE(std::isnan(studentQuantile(0.95, 0)));
}

TEST(ChiSquaredDistribution, TailsAreThoseOfSixtyDigits)
{
    EXPECT_NEAR(chiSquaredTail(1e-3, 2) / 0.99950012497916927056, 1, 1e-14);
    EXPECT_NEAR(chiSquaredTail(30, 10) / 0.00085664121077530039211, 1, 1e-13);
    EXPECT_NEAR(chiSquaredTail(1400, 2) / 9.8596765437597708567e-305, 1, 1e-13);
    EXPECT_EQ(chiSquaredTail(3000, 65), 0) << "9e-587";
    EXPECT_EQ(chiSquaredTail(infinity, 3), 0);
    EXPECT_EQ(chiSquaredTail(0, 3), 1);
    EXPECT_TRUE(std::isnan(chiSquaredTail(notANumber, 3)));
    EXPECT_TRUE(std::isnan(chiSquaredTail(1, 0)));
}

TEST(NormalDistribution, TailsAndQuantilesAreThoseOfSixtyDigits)
{
    EXPECT_NEAR(normalTail(-3.5) / 0.99976737092096447496, 1, 1e-14);
    EXPECT_EQ(normalTail(0), 0.5);
    EXPECT_NEAR(normalTail(8.25) / 7.919726314642477341e-17, 1, 1e-13);
    EXPECT_NEAR(normalTail(37) / 5.7255712225245768227e-300, 1, 1e-13);
    EXPECT_NEAR(normalQuantile(0.0002) / -3.5400837992061451032, 1, 1e-14);
    EXPECT_NEAR(normalQuantile(0.3) / -0.52440051270804081597, 1, 1e-14);
    EXPECT_EQ(normalQuantile(0.5), 0);
    EXPECT_NEAR(normalQuantile(0.999) / 3.0902323061678132778, 1, 1e-14);
    EXPECT_TRUE(std::isnan(normalQuantile(0)));
    EXPECT_TRUE(std::isnan(normalQuantile(1)));
}
