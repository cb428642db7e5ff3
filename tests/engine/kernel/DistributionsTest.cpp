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
