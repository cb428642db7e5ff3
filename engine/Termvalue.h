// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Mlrtypes.h"
#include "platform/Export.h"

#include <QString>

#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace nuvo {

/// A field and what it is to be, given by hand.
using FieldValue = std::pair<QString, double>;
using FieldValues = std::vector<FieldValue>;

/// A term's value, with what rounding cut off it (engine/kernel/Lowparts.h).
struct TermValue
{
    double value = 0;
    double low = 0;
};

/// The same of several terms.
struct TermValues
{
    std::vector<double> values;
    std::vector<double> low;
};

/// What a term makes of the values of its fields, as of a record that holds these; nothing where it cannot take
/// them: where they would leave a record out, or make the term infinite or no number. Names of fields are found as a
/// dataset finds them, whatever their capitals. \pre Its fields are among them.
/// \throws EConvertError for an exponent or a scale factor that is no number.
NUVO_EXPORT std::optional<TermValue> termValue(const TIndepVar &term, const FieldValues &values);

/// The same of several terms. Every field of theirs has to be given, once, and no other.
/// \throws EConvertError which names the field that is missing, unknown or given twice, or the term that cannot take
/// its value.
NUVO_EXPORT TermValues termValues(std::span<const TIndepVar> terms, const FieldValues &values);

} // namespace nuvo
