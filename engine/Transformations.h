// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QLatin1StringView>
#include <QString>
#include <QStringView>

#include <span>

namespace nuvo {

class SqlNumbers;

/// What stands second in a term, behind its first field.
enum class Second { Nothing, Field2, Exponent, ScaleFactor };

/// What a record must have to be used, besides a first field that is not null. The bound is exact, not a matter of
/// rounding: `above` a limit is strictly more, else the limit itself will do.
struct Range
{
    enum class Of {
        Anything,            ///< no further condition, and nothing else is read
        Field1,              ///< the value of the first field
        SizeOfField1,        ///< its absolute value
        Exponent,            ///< the definition's exponent as a number: the same for every record
        SizeOfScaleFactor,   ///< the absolute value of its scale factor: the same for every record
        Field2NotNull,       ///< the second field has a value
        Field2NotNullOrZero, ///< or it reads as 0, as a null does: any record will do, yet the field must be there
    };
    Of of = Of::Anything;
    double limit = 0;
    bool above = true;

    constexpr bool Holds(double value) const { return above ? value > limit : value >= limit; }
};

/// How the transformed value comes about, v being the first field and s what stands second.
enum class Operation {
    Plain,       ///< v
    Logarithm,   ///< ln v
    Reciprocal,  ///< 1 / v
    SquareRoot,  ///< sqrt v
    SignedPower, ///< 0 for v = 0; else |v|^s, and minus that where the whole number s is odd, whatever the sign of v
    Times,       ///< v s
    Over,        ///< v / s
};

/// The transformed value by IEEE arithmetic: nothing is refused here, ln of -1 is a NaN, 1/0 infinite.
NUVO_EXPORT double transformed(Operation operation, double first, double second);

/// Whether rounding leaves something of such values that can be had: of all but logarithms and values as they stand.
NUVO_EXPORT bool hasLowPart(Operation operation);
/// What rounding left of `value`, which is transformed(operation, first, second): engine/kernel/Lowparts.h. 0 where
/// the value is not finite, or too small for it.
NUVO_EXPORT double lowPart(Operation operation, double first, double second, double value);

/// The same as an expression of a statement. Databases refuse what IEEE arithmetic does not.
/// \param second a field or a number as it stands in the statement, whose value is `number` where it is one.
NUVO_EXPORT QString transformedSql(Operation operation, const QString &first, const QString &second, double number,
                                   const SqlNumbers &sql);

/// One transformation of a control variable or of the response: all that the rest needs to know about it. A term is
/// written `before` first field `behind` second.
struct Transformation
{
    QStringView keyword; ///< as definitions hold it; capitals are told apart
    QStringView before;  ///< of a report's term, "Ln("
    QStringView behind;  ///< "^"
    Second second;       ///< Nothing but for a field's name or a number behind that
    Range range;
    Operation operation;
    int item = -1;           ///< the form of the definition dialog that makes it, from 0; -1: none does
    QStringView shownBefore; ///< as `before`, in that dialog
    QStringView shownBehind;
    bool term = true; ///< false: a report writes `before` alone, which is no term
};

/// The transformations of a control variable, and those of the response. A keyword that is not among them counts as
/// "None", but for its term, which is empty.
NUVO_EXPORT std::span<const Transformation> controlTransformations();
/// The same of the response.
NUVO_EXPORT std::span<const Transformation> responseTransformations();

/// The entry of a keyword; nullptr when there is none.
NUVO_EXPORT const Transformation *findKeyword(std::span<const Transformation> transformations, QStringView keyword);
/// The entry of a dialog's form; nullptr when there is none.
NUVO_EXPORT const Transformation *findItem(std::span<const Transformation> transformations, int item);

} // namespace nuvo
