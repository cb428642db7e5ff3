#pragma once

#include "platform/Export.h"

#include <QDateTime>
#include <QString>
#include <QVariant>

class TDataSet;

/// One column of a dataset, reading the dataset's current record. Fields belong to their dataset and live as long as
/// its field definitions: until its DatabaseName, TableName or SQL changes.
///
/// A field is null when the database says so, and also when its number is a NaN or an infinity. A null reads as 0, as
/// an empty text or as an invalid date. On a dataset without records every field is null.
class NUVO_EXPORT TField
{
public:
    TField(TDataSet &dataset, int index, const QString &name, const QString &declaredType);
    TField(const TField &) = delete;
    TField &operator=(const TField &) = delete;
    virtual ~TField();

    TDataSet &DataSet() const { return dataset_; }
    const QString &FieldName() const { return name_; }
    /// Position among the dataset's fields, from 0.
    int Index() const { return index_; }
    /// The type as the database calls it; empty for an expression.
    const QString &DeclaredType() const { return declaredType_; }

    bool IsNull() const;
    /// The value as a double. \throws EConvertError naming field, record and text where a text is no number;
    /// EDatabaseError where the field holds dates or binary data.
    double AsFloat() const;
    /// \throws as AsFloat(), and EConvertError for a number outside 64 bits.
    qint64 AsInteger() const;
    QString AsString() const;
    bool AsBoolean() const;
    QDateTime AsDateTime() const;
    QVariant Value() const;

    /// Whether the class counts as numeric: floating point, integer of any width, currency.
    virtual bool IsNumeric() const { return false; }

private:
    TDataSet &dataset_;
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
