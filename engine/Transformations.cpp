// SPDX-License-Identifier: MIT
#include "engine/Transformations.h"

#include "engine/Mlrtypes.h"
#include "engine/kernel/Lowparts.h"
#include "platform/Sqlnumbers.h"

#include <algorithm>
#include <cmath>

namespace nuvo {

namespace {

using Of = Range::Of;

constexpr Range anything{};
constexpr Range positive{Of::Field1, ZeroTolerance, true};
constexpr Range sizeAtLeastTolerance{Of::SizeOfField1, ZeroTolerance, false};
constexpr Range sizeAboveTolerance{Of::SizeOfField1, ZeroTolerance, true};
constexpr Range exponentAtLeastHalf{Of::Exponent, 0.5, false};
constexpr Range secondNotNull{Of::Field2NotNull};
constexpr Range secondNotNullOrZero{Of::Field2NotNullOrZero};
constexpr Range factorNotZero{Of::SizeOfScaleFactor, ZeroTolerance, true};

// Several entries look like slips and are not: the two inverses differ in parentheses and in whether the limit itself
// is in range; a control's "Scale" has no condition, the one for a factor belongs to the keyword "Scaled", which
// divides nothing.
constexpr Transformation controls[] = {
    {u"Undefined", u"Disabled", u"", Second::Nothing, anything, Operation::Plain, 0, u"", u"", false},
    {u"None", u"", u"", Second::Nothing, anything, Operation::Plain, 1, u"", u""},
    {u"Log", u"Ln(", u")", Second::Nothing, positive, Operation::Logarithm, 2, u"ln(", u")"},
    {u"Inverse", u"1/", u"", Second::Nothing, sizeAtLeastTolerance, Operation::Reciprocal, 3, u"1/(", u")"},
    {u"Sqrt", u"", u"^1/2", Second::Nothing, positive, Operation::SquareRoot, 4, u"", u"^"},
    {u"Power", u"", u"^", Second::Exponent, exponentAtLeastHalf, Operation::SignedPower, 5, u"", u"^"},
    {u"Scale", u"", u"/", Second::ScaleFactor, anything, Operation::Over, 6, u"", u"/"},
    {u"Product", u"", u"*", Second::Field2, secondNotNull, Operation::Times, 7, u"", u"*"},
    {u"Quotient", u"", u"/", Second::Field2, secondNotNullOrZero, Operation::Over, 8, u"", u"/"},
    {u"Scaled", u"", u"", Second::Nothing, factorNotZero, Operation::Plain, -1, u"", u"", false},
    {u"Inactive", u"Disabled", u"", Second::Nothing, anything, Operation::Plain, -1, u"", u"", false},
};

constexpr Transformation responses[] = {
    {u"None", u"", u"", Second::Nothing, anything, Operation::Plain, 0, u"", u""},
    {u"Log", u"Ln(", u")", Second::Nothing, positive, Operation::Logarithm, 1, u"ln(", u")"},
    {u"Inverse", u"1/(", u")", Second::Nothing, sizeAboveTolerance, Operation::Reciprocal, 3, u"1/(", u")"},
    {u"Scale", u"", u"/", Second::ScaleFactor, factorNotZero, Operation::Over, 2, u"", u"/"},
    {u"Inactive", u"Disabled", u"", Second::Nothing, anything, Operation::Plain, -1, u"", u"", false},
};

const Transformation *orNothing(std::span<const Transformation> all, std::span<const Transformation>::iterator found)
{
    return found == all.end() ? nullptr : &*found;
}

} // namespace

double transformed(Operation operation, double first, double second)
{
    switch (operation) {
    case Operation::Logarithm:
        return std::log(first);
    case Operation::Reciprocal:
        return 1 / first;
    case Operation::SquareRoot:
        return std::sqrt(first);
    case Operation::SignedPower: {
        if (first == 0)
            return 0;
        // The sign goes by the exponent alone, whatever the sign of the value: deliberate, not a slip.
        const double power = std::pow(std::fabs(first), second);
        return std::fmod(second, 2) == 0 ? power : -power;
    }
    case Operation::Times:
        return first * second;
    case Operation::Over:
        return first / second;
    case Operation::Plain:
        break;
    }
    return first;
}

bool hasLowPart(Operation operation)
{
    return operation != Operation::Plain && operation != Operation::Logarithm;
}

double lowPart(Operation operation, double first, double second, double value)
{
    constexpr double smallest = 1e-290;
    if (!std::isfinite(value) || std::fabs(value) < smallest)
        return 0;
    switch (operation) {
    case Operation::Reciprocal:
        return lowPartOfQuotient(1, first);
    case Operation::SquareRoot:
        return lowPartOfRoot(first);
    case Operation::SignedPower: {
        const double low = lowPartOfPower(std::fabs(first), second, std::fabs(value));
        return value < 0 ? -low : low;
    }
    case Operation::Times:
        return lowPartOfProduct(first, second);
    case Operation::Over:
        return lowPartOfQuotient(first, second);
    case Operation::Plain:
    case Operation::Logarithm:
        break;
    }
    return 0;
}

QString transformedSql(Operation operation, const QString &first, const QString &second, double number,
                       const SqlNumbers &sql)
{
    switch (operation) {
    case Operation::Logarithm:
        return sql.log(first);
    case Operation::Reciprocal:
        return QStringLiteral("(%1 / %2)").arg(sql.literal(1), first);
    case Operation::SquareRoot:
        return sql.sqrt(first);
    case Operation::SignedPower: {
        const QString power = sql.power(sql.abs(first), second);
        return std::fmod(number, 2) == 0 ? power : QStringLiteral("(-%1)").arg(power);
    }
    case Operation::Times:
        return QStringLiteral("(%1 * %2)").arg(first, second);
    case Operation::Over:
        return QStringLiteral("(%1 / %2)").arg(first, second);
    case Operation::Plain:
        break;
    }
    return first;
}

std::span<const Transformation> controlTransformations()
{
    return controls;
}

std::span<const Transformation> responseTransformations()
{
    return responses;
}

const Transformation *findKeyword(std::span<const Transformation> transformations, QStringView keyword)
{
    return orNothing(transformations,
                     std::find_if(transformations.begin(), transformations.end(),
                                  [keyword](const Transformation &one) { return one.keyword == keyword; }));
}

const Transformation *findItem(std::span<const Transformation> transformations, int item)
{
    if (item < 0)
        return nullptr;
    return orNothing(transformations, std::find_if(transformations.begin(), transformations.end(),
                                                   [item](const Transformation &one) { return one.item == item; }));
}

} // namespace nuvo
