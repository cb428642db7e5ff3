// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Fieldtypes.h"

/// What counts as a number, whatever a driver hands it over as.
namespace nuvo {

/// A number in a text, as it comes from a database: with a decimal point, or money with a currency sign ("$5.99",
/// "-$1,234.50"). Unlike what a person types, a comma is no decimal sign here; it is taken where it parts groups of
/// three digits of money, and refused elsewhere ("1,234" could be either, "12,50 €" is no number of this kind).
/// A text that names what is not finite ("NaN", "Inf", "-Infinity", "1e400") is read, and gives a NaN. A number too
/// small for a double is 0. \return false, value unchanged, where the text is none of these.
NUVO_EXPORT bool numberFromText(QStringView text, double &value);

/// What a text that is no number is written like, as the end of a sentence about it: "has thousands separators", "is
/// a date", "is a time of day", "is a percentage", "has a decimal comma"; empty for any other text, and for a number.
/// \param decimal of the numbers around it, a point or a comma
NUVO_EXPORT QString writtenLike(QStringView text, QChar decimal = u'.');

enum class NumberReading {
    Number,
    Null,   ///< nothing, or not finite
    Text,   ///< a text that is no number
    Date,   ///< a date, a time or both
    Binary, ///< bytes
    Bits,   ///< a string of bits, which is none of decimal digits
};

/// A value of a field of this kind as the number that statistics take it for; a boolean is 1 or 0. Number is
/// unchanged unless the reading is Number. Every way from a database to a double goes through here.
NumberReading readNumber(const QVariant &value, FieldKind kind, double &number);

/// Why a value is not a number: "A date is not a number (<place>).", naming the text where it is one.
/// \throws EConvertError for a text, EDatabaseError for the others; returns for Number and Null.
void requireNumber(NumberReading reading, const QVariant &value, const QString &place);

} // namespace nuvo
