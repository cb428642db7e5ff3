// SPDX-License-Identifier: MIT
#include "engine/Transformations.h"

#include "engine/Mlrtypes.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

using namespace nuvo;

namespace {

QStringList keywordsByItem(std::span<const Transformation> transformations)
{
    QStringList keywords;
    while (const Transformation *transformation = findItem(transformations, int(keywords.size())))
        keywords.append(transformation->keyword.toString());
    return keywords;
}

void expectEachKeywordOnce(std::span<const Transformation> transformations)
{
    std::set<QString> keywords;
    for (const Transformation &transformation : transformations) {
        EXPECT_TRUE(keywords.insert(transformation.keyword.toString()).second);
        EXPECT_EQ(findKeyword(transformations, transformation.keyword), &transformation);
        EXPECT_EQ(findItem(transformations, transformation.item),
                  transformation.item < 0 ? nullptr : &transformation);
    }
}

} // namespace

TEST(Transformations, StandOnceEachInTheOrderOfTheDialogs)
{
    expectEachKeywordOnce(controlTransformations());
    expectEachKeywordOnce(responseTransformations());
    EXPECT_EQ(keywordsByItem(controlTransformations()),
              QStringList({u("Undefined"), u("None"), u("Log"), u("Inverse"), u("Sqrt"), u("Power"), u("Scale"),
                           u("Product"), u("Quotient")}));
    EXPECT_EQ(keywordsByItem(responseTransformations()),
              QStringList({u("None"), u("Log"), u("Scale"), u("Inverse")}));
    EXPECT_EQ(findKeyword(controlTransformations(), u"log"), nullptr) << "capitals are told apart";
    EXPECT_EQ(findKeyword(responseTransformations(), u"Sqrt"), nullptr);
    EXPECT_EQ(findItem(controlTransformations(), -1), nullptr) << "no dialog makes it, and there are several";
    EXPECT_EQ(findItem(responseTransformations(), 4), nullptr);
}

TEST(Transformations, ARangeEndsExactlyAtItsLimit)
{
    const auto range = [](std::span<const Transformation> all, QStringView keyword) {
        return findKeyword(all, keyword)->range;
    };
    const double above = std::nextafter(ZeroTolerance, 1);
    const double below = std::nextafter(ZeroTolerance, 0);
    EXPECT_TRUE(range(controlTransformations(), u"Inverse").Holds(ZeroTolerance));
    EXPECT_FALSE(range(controlTransformations(), u"Inverse").Holds(below));
    EXPECT_FALSE(range(responseTransformations(), u"Inverse").Holds(ZeroTolerance));
    EXPECT_TRUE(range(responseTransformations(), u"Inverse").Holds(above));
    EXPECT_FALSE(range(controlTransformations(), u"Log").Holds(ZeroTolerance));
    EXPECT_TRUE(range(controlTransformations(), u"Sqrt").Holds(above));
    EXPECT_TRUE(range(controlTransformations(), u"Power").Holds(0.5));
    EXPECT_FALSE(range(controlTransformations(), u"Power").Holds(std::nextafter(0.5, 0)));
    EXPECT_EQ(range(controlTransformations(), u"Scale").of, Range::Of::Anything);
    EXPECT_EQ(range(controlTransformations(), u"Scaled").of, Range::Of::SizeOfScaleFactor);
    EXPECT_EQ(range(responseTransformations(), u"Scale").of, Range::Of::SizeOfScaleFactor);
    EXPECT_FALSE(range(controlTransformations(), u"Log").Holds(std::numeric_limits<double>::quiet_NaN()));
}

TEST(Transformations, AreWorkedOutByFloatingPoint)
{
    EXPECT_EQ(transformed(Operation::Plain, 3, 7), 3);
    EXPECT_EQ(transformed(Operation::Logarithm, 3, 0), std::log(3.0));
    EXPECT_TRUE(std::isnan(transformed(Operation::Logarithm, -1, 0)));
    EXPECT_EQ(transformed(Operation::Reciprocal, 4, 0), 0.25);
    EXPECT_EQ(transformed(Operation::SquareRoot, 9, 0), 3);
    EXPECT_EQ(transformed(Operation::Times, 3, 7), 21);
    EXPECT_EQ(transformed(Operation::Over, 3, 4), 0.75);
    EXPECT_EQ(transformed(Operation::Over, 3, 0), std::numeric_limits<double>::infinity());
    // The sign goes by the exponent, not by the value.
    EXPECT_EQ(transformed(Operation::SignedPower, -3, 2), 9);
    EXPECT_EQ(transformed(Operation::SignedPower, 2, 3), -8);
    EXPECT_EQ(transformed(Operation::SignedPower, -2, -3), -0.125);
    EXPECT_EQ(transformed(Operation::SignedPower, 0, -1), 0);
    EXPECT_EQ(transformed(Operation::SignedPower, 5, 0), 1);
}
