// SPDX-License-Identifier: MIT
#include "engine/Termreader.h"

#include "platform/Dataset.h"
#include "platform/Errors.h"
#include "platform/Formats.h"

#include <cmath>

namespace nuvo {

namespace {

/// A text of a definition as a number; an error says whose text it is.
template <class Convert>
auto converted(const Convert &convert, const QString &text, const QString &what, const QString &field)
{
    try {
        return convert(text);
    } catch (const EConvertError &error) {
        throw EConvertError(QStringLiteral("The %1 of a term of field \"%2\" does not convert: %3.")
                                .arg(what, field, error.Message()));
    }
}

} // namespace

double scaleFactorOf(const TVariableDefinition &definition)
{
    return converted(StrToFloat, definition.ScaleFactor(), QStringLiteral("scale factor"), definition.Strings(2));
}

double exponentOf(const TVariableDefinition &definition)
{
    return converted(StrToFloat, definition.Strings(4), QStringLiteral("exponent"), definition.Strings(2));
}

int wholeExponentOf(const TVariableDefinition &definition)
{
    return converted(StrToInt, definition.Strings(4), QStringLiteral("exponent"), definition.Strings(2));
}

TermReader::TermReader(const TVariableDefinition &definition, TDataSet &dataset, const Transformation *transformation)
    : definition_(definition), dataset_(dataset)
{
    if (transformation != nullptr) {
        range_ = transformation->range;
        operation_ = transformation->operation;
        second_ = transformation->second;
    }
    plain_ = operation_ == Operation::Plain && range_.of == Range::Of::Anything;
}

TermReader::TermReader(const TIndepVar &definition, TDataSet &dataset)
    : TermReader(definition, dataset, findKeyword(controlTransformations(), definition.Transformation()))
{
}

TermReader::TermReader(const TDependentVar &definition, TDataSet &dataset)
    : TermReader(definition, dataset, findKeyword(responseTransformations(), definition.Transformation()))
{
}

TermReader::Use TermReader::UseOf()
{
    const auto possible = [](bool holds) { return holds ? Use::Possible : Use::Impossible; };
    const TField &field = Field1();
    if (field.IsNull())
        return Use::Null;
    switch (range_.of) {
    case Range::Of::Field1:
        return possible(range_.Holds(field.AsFloat()));
    case Range::Of::SizeOfField1:
        return possible(range_.Holds(std::fabs(field.AsFloat())));
    case Range::Of::Exponent:
        return possible(range_.Holds(ExponentAsFloat()));
    case Range::Of::SizeOfScaleFactor:
        return possible(range_.Holds(std::fabs(ScaleFactor())));
    case Range::Of::Field2NotNull:
        return Field2().IsNull() ? Use::Null : Use::Possible;
    case Range::Of::Field2NotNullOrZero:
        return possible(!Field2().IsNull() || std::fabs(Field2().AsFloat()) < ZeroTolerance);
    case Range::Of::Anything:
        break;
    }
    return Use::Possible;
}

double TermReader::ValueSlow()
{
    const double value = Field1().AsFloat();
    // A power of 0 is 0 whatever its exponent, which is not even read.
    if (operation_ == Operation::SignedPower && value == 0)
        return 0;
    return transformed(operation_, value, SecondValue());
}

double TermReader::LowPart(double value)
{
    const double first = Field1().AsFloat();
    return first == 0 ? 0 : lowPart(operation_, first, SecondValue(), value);
}

double TermReader::SecondValue()
{
    switch (second_) {
    case Second::Field2:
        return Field2().AsFloat();
    case Second::Exponent:
        return ExponentAsInteger();
    case Second::ScaleFactor:
        return ScaleFactor();
    case Second::Nothing:
        break;
    }
    return 0;
}

const TField &TermReader::Field1()
{
    if (field1_ == nullptr)
        field1_ = &dataset_.FieldByName(definition_.Strings(2));
    return *field1_;
}

const TField &TermReader::Field2()
{
    if (field2_ == nullptr)
        field2_ = &dataset_.FieldByName(definition_.Strings(3));
    return *field2_;
}

double TermReader::ScaleFactor()
{
    if (!scaleFactor_)
        scaleFactor_ = scaleFactorOf(definition_);
    return *scaleFactor_;
}

double TermReader::ExponentAsFloat()
{
    if (!exponentAsFloat_)
        exponentAsFloat_ = exponentOf(definition_);
    return *exponentAsFloat_;
}

int TermReader::ExponentAsInteger()
{
    if (!exponentAsInteger_)
        exponentAsInteger_ = wholeExponentOf(definition_);
    return *exponentAsInteger_;
}

} // namespace nuvo
