#pragma once

#include "app/Terms.h"

#include <QList>
#include <QString>

#include <vector>

namespace nuvo {

/// A field of the database with the value that it is given.
struct FieldValue
{
    QString field;
    double value;

    bool operator==(const FieldValue &) const = default;
};

/// Reads FIELD=VALUE[,FIELD=VALUE]..., a value for each field that the control variables use, in any order. A field
/// may stand in double quotes, a quote inside doubled, and has to where its name holds an equals sign, a comma or a
/// quote; blanks around names and numbers do not count, and upper and lower case of names are the same. An empty text
/// is right for a regression without control variables.
/// \return the fields as the control variables name them, in the order of the text
/// \throws UsageError naming --at for anything else: a field twice, a field too many, one that is missing, a value
/// that is no finite number.
QList<FieldValue> parseFieldValues(const QString &text, const QList<Term> &controls);

/// What the terms of the control variables are at these values, one for each that is no empty text. An exponent or a
/// scale factor that does not convert, which a load refuses, makes a NaN of its term. \throws UsageError naming the
/// term that cannot take its values.
std::vector<double> termValues(const QList<Term> &controls, const QList<FieldValue> &values);

} // namespace nuvo
