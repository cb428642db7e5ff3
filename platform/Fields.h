// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QDateTime>
#include <QString>
#include <QVariant>

#include <cmath>
#include <limits>

class TDataSet;

namespace nuvo {

enum class NumberReading;

/// Where a dataset's current record stands in memory. The numbers of a record lie side by side; a number that is not
/// finite is no number: null, or a value that has to be looked up.
struct RecordCursor
{
    const double *cells = nullptr;
    qint64 row = 0;     ///< from 0
    qint64 fastEnd = 0; ///< the rows before it can be walked without asking the dataset
    qint64 stride = 0;  ///< numbers per record
};

} // namespace nuvo

/// One column of a dataset, reading the dataset's current record. Fields belong to their dataset and live as long as
/// its field definitions: until its DatabaseName, TableName or SQL changes.
///
/// A field is null when the database says so, and also when its number is a NaN or an infinity. A null reads as 0, as
/// an empty text or as an invalid date. A text that says NaN, Inf or Infinity counts as null too; AsString() and
/// Value() give it as it is. On a dataset without records every field is null.
///
/// Reading a value of a closed dataset opens it where that was wished, else it throws EDatabaseError; a failed
/// reading from the database is an EDatabaseError too.
///
/// Which class a column gets follows from its declared type. A column without one (an expression, an SQLite column
/// without a type) goes by its first values: all whole numbers make it a TLargeintField, numbers a TFloatField, else
/// the first text, date or binary value decides; without any value it is a TFloatField. A value that does not fit its
/// class is kept as it is: AsString() and Value() show it, AsFloat() converts it or says why it cannot.
class NUVO_EXPORT TField
{
public:
    TField(TDataSet &dataset, int index, const QString &name, const QString &declaredType);
    TField(const TField &) = delete;
    TField &operator=(const TField &) = delete;
    virtual ~TField();

    /// The dataset that it belongs to.
    TDataSet &DataSet() const { return dataset_; }
    /// The column's name as the database has it.
    const QString &FieldName() const { return name_; }
    /// Position among the dataset's fields, from 0.
    int Index() const { return index_; }
    /// The type as the database calls it; empty for an expression.
    const QString &DeclaredType() const { return declaredType_; }

    /// Whether the current record has no value here.
    bool IsNull() const { return !(std::fabs(Cell()) <= kMaxFinite) && IsNullSlow(); }
    /// The value as a double; a boolean is 1 or 0. \throws EConvertError naming field, record and text where a text
    /// is no number; EDatabaseError where the field holds dates, binary data or strings of bits.
    double AsFloat() const
    {
        const double cell = Cell();
        return std::fabs(cell) <= kMaxFinite ? cell : AsFloatSlow();
    }
    /// Rounded to the nearest integer, halves away from zero. \throws as AsFloat(), and EConvertError for a number
    /// outside 64 bits.
    qint64 AsInteger() const;
    /// The value as text: numbers with a point and as many digits as they need, dates as in ISO 8601 with a blank
    /// between date and time, "True" and "False".
    QString AsString() const;
    /// Whether the number is not 0, or the text one of true, t, yes, y, on.
    bool AsBoolean() const;
    /// SQLite's dates are texts in ISO 8601, whole seconds since 1970 (UTC) or Julian days with a fraction; anything
    /// else gives an invalid date.
    QDateTime AsDateTime() const;
    /// The value as the database gave it; invalid for a null.
    QVariant Value() const;

    /// Whether the class counts as numeric: floating point, integer of any width, currency.
    virtual bool IsNumeric() const { return false; }

private:
    friend class TDataSet;

    static constexpr double kMaxFinite = std::numeric_limits<double>::max();

    static const nuvo::RecordCursor *NoCursor();
    double Cell() const { return cursor_->cells[slot_]; }
    bool IsNullSlow() const;
    double AsFloatSlow() const;
    nuvo::NumberReading Read(const QVariant &value, double &number) const;
    QString Place() const;

    TDataSet &dataset_;
    const nuvo::RecordCursor *cursor_; // the dataset's own while this is a numeric column of it
    qint64 slot_ = 0;
    int index_;
    QString name_;
    QString declaredType_;
};

class NUVO_EXPORT TNumericField : public TField
{
public:
    using TField::TField;
};

class NUVO_EXPORT TFloatField : public TNumericField
{
public:
    using TNumericField::TNumericField;
    bool IsNumeric() const override { return true; }
};

class NUVO_EXPORT TCurrencyField : public TFloatField
{
public:
    using TFloatField::TFloatField;
};

/// An exact decimal. Drivers never make one (DECIMAL and NUMERIC give a TFloatField); it is there for programs that
/// build fields of their own, and does not count as numeric.
class NUVO_EXPORT TBCDField : public TNumericField
{
public:
    using TNumericField::TNumericField;
};

class NUVO_EXPORT TIntegerField : public TNumericField
{
public:
    using TNumericField::TNumericField;
    bool IsNumeric() const override { return true; }
};

class NUVO_EXPORT TSmallintField : public TIntegerField
{
public:
    using TIntegerField::TIntegerField;
};

/// An unsigned integer of 16 bits.
class NUVO_EXPORT TWordField : public TIntegerField
{
public:
    using TIntegerField::TIntegerField;
};

class NUVO_EXPORT TAutoIncField : public TIntegerField
{
public:
    using TIntegerField::TIntegerField;
};

/// An integer of 64 bits; AsFloat() rounds beyond 2^53, AsInteger() and AsString() do not.
class NUVO_EXPORT TLargeintField : public TIntegerField
{
public:
    using TIntegerField::TIntegerField;
};

class NUVO_EXPORT TStringField : public TField
{
public:
    using TField::TField;
};

class NUVO_EXPORT TBooleanField : public TField
{
public:
    using TField::TField;
};

class NUVO_EXPORT TDateTimeField : public TField
{
public:
    using TField::TField;
};

class NUVO_EXPORT TDateField : public TDateTimeField
{
public:
    using TDateTimeField::TDateTimeField;
};

class NUVO_EXPORT TTimeField : public TDateTimeField
{
public:
    using TDateTimeField::TDateTimeField;
};

class NUVO_EXPORT TBlobField : public TField
{
public:
    using TField::TField;
};

class NUVO_EXPORT TMemoField : public TBlobField
{
public:
    using TBlobField::TBlobField;
};
