// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QString>

/// Text and numbers. All of them write and read a decimal point unless a locale's sign is handed in; NaN and the
/// infinities are written "NAN", "INF" and "-INF", and read back from these (upper or lower case). Where a number is
/// rounded it is rounded once, half away from zero on the exact decimal expansion of the double.

/// Fixed notation. The value is rounded once, half away from zero on its exact decimal expansion, to at most
/// `precision` significant digits (1..18) and `decimals` places, then padded with zeros to `decimals` places:
/// 836424.0555 with precision 8 and 3 decimals is "836424.060". A value whose integer part, as rounded, needs more
/// than `precision` digits is written in general form instead: at most `precision` significant digits, no trailing
/// zeros, 'E', no plus sign ("1.2345679E8"; 99999999.9996 is "1E8"). What rounds to zero has no sign: -0.0004 is
/// "0.000".
NUVO_EXPORT QString FloatToStrFixed(double value, int precision, int decimals, QChar point = u'.');

/// A number after a mask of up to three sections parted by ';' (positive, negative, zero). Understood are '0' and '#'
/// digit places, '.', ',' for thousands, 'E+'/'E-'/'e+'/'e-' with exponent digits, text in quotes and any other
/// character as it stands. Without a negative section a negative value takes the first one with a leading '-'; with
/// one its sign is the section's own matter. Without a zero section zero takes the first one. " 0.00E+0;-0.00E+0"
/// gives " 1.23E-2" and "-1.23E-2"; zero with "0.00E+0" is "0.00E+0". The decimals asked for bound the rounding;
/// integer digits beyond the mask's places stand before the first of them, however many there are. With an exponent
/// the mantissa has as many integer digits as the mask has places and the exponent at least as many digits as the
/// mask has zeros. What rounds to zero counts as zero. Thousands are parted by ',', or by '.' when the point is a
/// comma. An empty mask gives FloatToStr.
NUVO_EXPORT QString FormatFloat(QStringView mask, double value, QChar point = u'.');

/// The fewest digits that read back as the same double ("0.1", "1E300"), the sign of zero included; with an exponent
/// below 0.0001 and from 1E15 on.
NUVO_EXPORT QString FloatToStr(double value, QChar point = u'.');

/// Reads a floating-point number, blanks around it allowed, with a point or a comma as the decimal sign: "1.5",
/// "1,5",
/// ".5", "5.", "+1e-5". No digit groups ("1 000", "1.000,5"), no hexadecimal, and of the words only those that are
/// written here ("infinity" is none). A number too large for a double, or too small to differ from zero, does not
/// convert either.
/// \throws EConvertError naming the text: "\"abc\" is not a number".
NUVO_EXPORT double StrToFloat(const QString &text);
/// The same without raising: false when it does not convert; value is then unchanged.
NUVO_EXPORT bool TryStrToFloat(QStringView text, double &value);

/// Reads a decimal integer of 32 bits, a sign and blanks around it allowed; "2.0" is no integer.
/// \throws EConvertError naming the text: "\"2.5\" is not an integer".
NUVO_EXPORT int StrToInt(const QString &text);

/// Elapsed or clock time as "hh:nn:ss" from days and a fraction of a day; whole days are not shown, nor is a sign.
/// Rounded to the millisecond, then cut to the second.
NUVO_EXPORT QString FormatTime(double days);
