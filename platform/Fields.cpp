// SPDX-License-Identifier: MIT
#include "platform/Fields.h"

#include "platform/Dataset.h"
#include "platform/Errors.h"
#include "platform/Fieldtypes.h"
#include "platform/Formats.h"
#include "platform/Numbervalue.h"

namespace {

constexpr double kNoCell = std::numeric_limits<double>::quiet_NaN();
// Every look at it leads to the slow path, which asks the dataset.
constexpr nuvo::RecordCursor kNoCursor{&kNoCell, 0, 0, 0};

bool isWholeNumber(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return true;
    default:
        return false;
    }
}

} // namespace

TField::TField(TDataSet &dataset, int index, const QString &name, const QString &declaredType)
    : dataset_(dataset), cursor_(NoCursor()), index_(index), name_(name), declaredType_(declaredType)
{
}

TField::~TField() = default;

const nuvo::RecordCursor *TField::NoCursor()
{
    return &kNoCursor;
}

QVariant TField::Value() const
{
    return dataset_.FieldValue(*this);
}

nuvo::NumberReading TField::Read(const QVariant &value, double &number) const
{
    nuvo::FieldKind kind = nuvo::FieldKind::Unknown;
    if (dynamic_cast<const TDateTimeField *>(this) != nullptr)
        kind = nuvo::FieldKind::DateTime;
    else if (dynamic_cast<const nuvo::BitStringField *>(this) != nullptr)
        kind = nuvo::FieldKind::Bits;
    return nuvo::readNumber(value, kind, number);
}

bool TField::IsNullSlow() const
{
    double number = 0;
    return Read(Value(), number) == nuvo::NumberReading::Null;
}

QString TField::Place() const
{
    return QStringLiteral("field \"%1\" of %2, record %3").arg(name_, dataset_.Caption()).arg(dataset_.RecNo());
}

double TField::AsFloatSlow() const
{
    const QVariant value = Value();
    double number = 0;
    const nuvo::NumberReading reading = Read(value, number);
    if (reading != nuvo::NumberReading::Number && reading != nuvo::NumberReading::Null)
        nuvo::requireNumber(reading, value, Place());
    return number;
}

qint64 TField::AsInteger() const
{
    if (!(std::fabs(Cell()) <= kMaxFinite)) {
        const QVariant value = Value();
        bool ok = false;
        if (isWholeNumber(value)) {
            const qint64 whole = value.toLongLong(&ok);
            if (ok && (value.typeId() != QMetaType::ULongLong || value.toULongLong() <= quint64(INT64_MAX)))
                return whole;
        }
    }
    const double rounded = std::round(AsFloat());
    // 2^63 is the first double that does not fit.
    if (!(rounded >= -0x1p63 && rounded < 0x1p63)) {
        throw EConvertError(
            QStringLiteral("%1 is not an integer of 64 bits (%2).").arg(FloatToStr(AsFloat()), Place()));
    }
    return qint64(rounded);
}

QString TField::AsString() const
{
    return nuvo::textFromValue(Value());
}

bool TField::AsBoolean() const
{
    const QVariant value = Value();
    if (value.typeId() != QMetaType::QString)
        return value.toDouble() != 0;
    const QString text = value.toString().trimmed().toLower();
    double number = 0;
    if (nuvo::numberFromText(text, number))
        return number != 0 && std::isfinite(number);
    return QStringList{QStringLiteral("true"), QStringLiteral("t"), QStringLiteral("yes"), QStringLiteral("y"),
                       QStringLiteral("on")}
        .contains(text);
}

QDateTime TField::AsDateTime() const
{
    return nuvo::dateTimeFromValue(Value());
}
