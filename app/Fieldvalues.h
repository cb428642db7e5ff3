// SPDX-License-Identifier: MIT
#pragma once

#include "app/Terms.h"
#include "engine/Termvalue.h"

#include <QList>
#include <QString>

namespace nuvo {

/// Reads FIELD=VALUE[,FIELD=VALUE]..., a value for each field that the control variables use, in any order. A field
/// may stand in double quotes, a quote inside doubled, and has to where its name holds an equals sign, a comma or a
/// quote; blanks around names and numbers do not count, and upper and lower case of names are the same. An empty text
/// is right for a regression without control variables.
/// \return the fields as the control variables name them, in the order of the text
/// \throws UsageError naming --at for anything else: a field twice, a field too many, one that is missing, a value
/// that is no finite number.
FieldValues parseFieldValues(const QString &text, const QList<Term> &controls);

/// Refuses values that a term of the control variables cannot take. An exponent or a scale factor that does not
/// convert is left to the load, which refuses it. \throws UsageError naming the term.
void checkFieldValues(const QList<Term> &controls, const FieldValues &values);

} // namespace nuvo
