#pragma once

#include "engine/Mlrtypes.h"
#include "platform/Export.h"

#include <QString>

#include <span>
#include <utility>
#include <vector>

namespace nuvo {

/// Fields and what they are to be, given by hand.
using FieldValues = std::vector<std::pair<QString, double>>;

/// What terms make of the values of their fields, as of a record that holds these. Names of fields are found as a
/// dataset finds them, whatever their capitals. Every field of the terms has to be given, once, and no other.
/// \throws EConvertError which names the field that is missing, unknown or given twice, or the term that cannot take
/// its value: one that would leave a record out, or make the term infinite or no number.
NUVO_EXPORT std::vector<double> termValues(std::span<const TIndepVar> terms, const FieldValues &values);

} // namespace nuvo
