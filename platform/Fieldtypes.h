// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Fields.h"

#include <QMetaType>

#include <memory>

/// From the type that a column is declared with to the class of its field.
namespace nuvo {

enum class FieldKind {
    Unknown, ///< an expression or a column without a type: decided by its first values
    Float,
    Currency,
    Integer,
    Smallint,
    Word,
    AutoInc,
    Largeint,
    String,
    Bits, ///< a string of bits ("1001"), kept as text
    Boolean,
    Date,
    Time,
    DateTime,
    Blob,
    Memo,
};

/// A column as a dataset finds it in the database.
struct Column
{
    QString name;
    QString declaredType;
    FieldKind kind = FieldKind::Unknown;

    friend bool operator==(const Column &, const Column &) = default;
};

/// Class of a declared type ("DECIMAL(10,2)", "int unsigned", "timestamp with time zone"), whatever the database.
/// A name that is not known goes by the words in it; Unknown when these say nothing.
NUVO_EXPORT FieldKind kindOfDeclaredType(const QString &declaredType);
/// The name of one of PostgreSQL's own types by its number; empty for others.
QString postgresTypeName(int oid);
/// Class of what a driver says where there is no declared type.
FieldKind kindOfMetaType(QMetaType type);
/// Whether the class's values are kept as numbers.
NUVO_EXPORT bool isNumeric(FieldKind kind);
bool isInteger(FieldKind kind);

/// A string of bits looks like a decimal number and is none.
class BitStringField : public TStringField
{
public:
    using TStringField::TStringField;
};

std::unique_ptr<TField> makeField(FieldKind kind, TDataSet &dataset, int index, const Column &column);

/// Whether a value is a number that a double holds exactly.
bool isExactNumber(const QVariant &value);
/// Whether a record's value is the one looked for: as numbers where both are numbers, else as texts.
bool sameValue(const QVariant &value, const QVariant &wanted);
/// A long, which newer versions of Qt's ODBC driver give, as the integer of 64 bits that the other drivers give: to
/// QVariant they are two types, though a long has 64 bits too.
NUVO_EXPORT QVariant ofOneIntegerType(QVariant value);
/// What a view shows of a value.
QString textFromValue(const QVariant &value);
/// A date, a time or both from what a driver handed over; a text in ISO 8601, whole seconds since 1970 in UTC, or a
/// Julian day with a fraction, as SQLite has them. Invalid when it is none of these.
QDateTime dateTimeFromValue(const QVariant &value);

/// "a, b, c", cut short after some twenty.
QString listed(const QStringList &names);
/// With a capital letter in front.
QString sentenceStart(const QString &text);

} // namespace nuvo
