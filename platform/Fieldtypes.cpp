// SPDX-License-Identifier: MIT
#include "platform/Fieldtypes.h"

#include "platform/Formats.h"
#include "platform/Numbervalue.h"

#include <QHash>
#include <QStringList>

#include <cmath>

namespace nuvo {

namespace {

const QHash<QString, FieldKind> &knownTypes()
{
    static const QHash<QString, FieldKind> types = [] {
        QHash<QString, FieldKind> map;
        const auto add = [&](FieldKind kind, std::initializer_list<const char *> names) {
            for (const char *name : names)
                map.insert(QString::fromLatin1(name), kind);
        };
        add(FieldKind::Integer, {"INT", "INTEGER", "INT4", "MEDIUMINT", "SIGNED", "INT3", "INT24", "INT32"});
        add(FieldKind::Smallint, {"SMALLINT", "INT2", "TINYINT", "INT1", "INT16", "SHORT", "BYTE", "YEAR"});
        add(FieldKind::Word, {"WORD", "UINT16", "UINT8", "UINT1", "UINT2", "USMALLINT", "UTINYINT"});
        add(FieldKind::Largeint, {"BIGINT", "INT8", "INT64", "BIG INT", "LONG", "LONGINT", "LARGEINT", "OID",
                                  "UINT32", "UINT64", "UINTEGER", "UBIGINT", "HUGEINT", "XID8", "BIGNUM"});
        add(FieldKind::AutoInc, {"SERIAL", "BIGSERIAL", "SMALLSERIAL", "SERIAL2", "SERIAL4", "SERIAL8", "AUTOINC",
                                 "AUTOINCREMENT", "IDENTITY", "COUNTER"});
        add(FieldKind::Float,
            {"REAL", "DOUBLE", "DOUBLE PRECISION", "FLOAT", "FLOAT4", "FLOAT8", "SINGLE", "NUMERIC", "DECIMAL", "DEC",
             "NUMBER", "NUM", "FIXED", "BINARY_FLOAT", "BINARY_DOUBLE", "DECFLOAT", "FLOATING POINT", "LONG DOUBLE"});
        add(FieldKind::Currency, {"MONEY", "SMALLMONEY", "CURRENCY"});
        add(FieldKind::Boolean, {"BOOLEAN", "BOOL", "BIT", "LOGICAL"});
        add(FieldKind::Date, {"DATE"});
        add(FieldKind::Time, {"TIME", "TIMETZ"});
        add(FieldKind::DateTime,
            {"DATETIME", "DATETIME2", "SMALLDATETIME", "TIMESTAMP", "TIMESTAMPTZ", "DATETIMEOFFSET"});
        add(FieldKind::Blob, {"BLOB", "TINYBLOB", "MEDIUMBLOB", "LONGBLOB", "BYTEA", "BINARY", "VARBINARY",
                              "LONG VARBINARY", "IMAGE", "RAW", "LONG RAW", "ROWVERSION"});
        add(FieldKind::Memo, {"CLOB", "NCLOB", "MEMO", "LONGTEXT", "MEDIUMTEXT", "NTEXT", "LONG VARCHAR"});
        add(FieldKind::Bits, {"BIT VARYING", "VARBIT"});
        add(FieldKind::String, {"TEXT",
                                "TINYTEXT",
                                "VARCHAR",
                                "VARCHAR2",
                                "NVARCHAR",
                                "NVARCHAR2",
                                "CHAR",
                                "NCHAR",
                                "CHARACTER",
                                "CHARACTER VARYING",
                                "NATIVE CHARACTER",
                                "VARYING CHARACTER",
                                "BPCHAR",
                                "STRING",
                                "NAME",
                                "UUID",
                                "INTERVAL",
                                "POINT",
                                "ENUM",
                                "SET"});
        return map;
    }();
    return types;
}

/// By the words in a name that is not known ("INT IDENTITY", "LONG REAL", "VARCHAR FOR BIT DATA").
FieldKind kindByWords(const QString &type)
{
    const auto has = [&](const char *part) { return type.contains(QLatin1String(part)); };
    if (has("INTERVAL") || has("POINT"))
        return FieldKind::String;
    if (has("SERIAL") || has("IDENTITY") || has("AUTO_INCREMENT"))
        return FieldKind::AutoInc;
    if (has("CHAR") || has("TEXT"))
        return FieldKind::String;
    if (has("CLOB"))
        return FieldKind::Memo;
    if (has("BLOB") || has("BINARY"))
        return FieldKind::Blob;
    if (has("MONEY") || has("CURRENCY"))
        return FieldKind::Currency;
    if (has("REAL") || has("FLOA") || has("DOUB") || has("NUMERIC") || has("DECIMAL") || has("NUMBER"))
        return FieldKind::Float;
    if (has("TIMESTAMP") || has("DATETIME"))
        return FieldKind::DateTime;
    if (has("BOOL"))
        return FieldKind::Boolean;
    if (has("INT"))
        return FieldKind::Largeint;
    return FieldKind::Unknown;
}

QString textFromTime(QTime time)
{
    return time.toString(time.msec() == 0 ? Qt::ISODate : Qt::ISODateWithMs);
}

} // namespace

FieldKind kindOfDeclaredType(const QString &declaredType)
{
    QString type = declaredType.toUpper();
    QString arguments;
    // "DECIMAL(10,2) UNSIGNED" is a "DECIMAL UNSIGNED".
    const qsizetype open = type.indexOf(u'(');
    if (open >= 0) {
        const qsizetype close = type.indexOf(u')', open);
        arguments = type.mid(open + 1, close < 0 ? -1 : close - open - 1).trimmed();
        type = type.left(open) + u' ' + (close < 0 ? QString() : type.mid(close + 1));
    }
    if (type.endsWith(QLatin1String("[]")))
        return FieldKind::String;
    QStringList words = type.split(u' ', Qt::SkipEmptyParts);
    const bool isUnsigned = words.removeAll(QStringLiteral("UNSIGNED")) > 0;
    words.removeAll(QStringLiteral("ZEROFILL"));
    if (words.size() > 1)
        words.removeAll(QStringLiteral("SIGNED"));
    // "TIMESTAMP WITHOUT TIME ZONE", "CHARACTER VARYING … COLLATE …"
    for (const QLatin1String end : {QLatin1String("WITH"), QLatin1String("WITHOUT"), QLatin1String("COLLATE")}) {
        const qsizetype at = words.indexOf(end);
        if (at > 0)
            words = words.first(at);
    }
    type = words.join(u' ');
    if (type.isEmpty())
        return isUnsigned ? FieldKind::Largeint : FieldKind::Unknown;

    FieldKind kind = knownTypes().value(type, FieldKind::Unknown);
    if (kind == FieldKind::Unknown)
        kind = kindByWords(type);
    if (type == u"BIT" && !arguments.isEmpty() && arguments != u"1")
        return FieldKind::Bits;
    if (isUnsigned && kind == FieldKind::Smallint)
        return FieldKind::Word;
    if (isUnsigned && kind == FieldKind::Integer)
        return FieldKind::Largeint;
    return kind;
}

QString postgresTypeName(int oid)
{
    // Fixed in the server's catalogue since long ago. A domain comes as the type under it.
    switch (oid) {
    case 16:
        return QStringLiteral("boolean");
    case 17:
        return QStringLiteral("bytea");
    case 20:
        return QStringLiteral("bigint");
    case 21:
        return QStringLiteral("smallint");
    case 23:
        return QStringLiteral("integer");
    case 25:
        return QStringLiteral("text");
    case 26:
        return QStringLiteral("oid");
    case 700:
        return QStringLiteral("real");
    case 701:
        return QStringLiteral("double precision");
    case 790:
        return QStringLiteral("money");
    case 1042:
        return QStringLiteral("character");
    case 1043:
        return QStringLiteral("character varying");
    case 1082:
        return QStringLiteral("date");
    case 1083:
        return QStringLiteral("time without time zone");
    case 1114:
        return QStringLiteral("timestamp without time zone");
    case 1184:
        return QStringLiteral("timestamp with time zone");
    case 1266:
        return QStringLiteral("time with time zone");
    case 1560:
        return QStringLiteral("bit");
    case 1562:
        return QStringLiteral("bit varying");
    case 1700:
        return QStringLiteral("numeric");
    default:
        return {};
    }
}

FieldKind kindOfMetaType(QMetaType type)
{
    switch (type.id()) {
    case QMetaType::Double:
    case QMetaType::Float:
        return FieldKind::Float;
    case QMetaType::Int:
    case QMetaType::Char:
    case QMetaType::SChar:
        return FieldKind::Integer;
    case QMetaType::Short:
    case QMetaType::UChar:
        return FieldKind::Smallint;
    case QMetaType::UShort:
        return FieldKind::Word;
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::ULong:
        return FieldKind::Largeint;
    case QMetaType::Bool:
        return FieldKind::Boolean;
    case QMetaType::QDate:
        return FieldKind::Date;
    case QMetaType::QTime:
        return FieldKind::Time;
    case QMetaType::QDateTime:
        return FieldKind::DateTime;
    case QMetaType::QByteArray:
        return FieldKind::Blob;
    case QMetaType::UnknownType:
        return FieldKind::Unknown;
    default:
        return FieldKind::String;
    }
}

bool isNumeric(FieldKind kind)
{
    switch (kind) {
    case FieldKind::Float:
    case FieldKind::Currency:
    case FieldKind::Integer:
    case FieldKind::Smallint:
    case FieldKind::Word:
    case FieldKind::AutoInc:
    case FieldKind::Largeint:
        return true;
    default:
        return false;
    }
}

bool isInteger(FieldKind kind)
{
    return isNumeric(kind) && kind != FieldKind::Float && kind != FieldKind::Currency;
}

std::unique_ptr<TField> makeField(FieldKind kind, TDataSet &dataset, int index, const Column &column)
{
    const auto make = [&]<class Field>(Field *) -> std::unique_ptr<TField> {
        return std::make_unique<Field>(dataset, index, column.name, column.declaredType);
    };
    switch (kind) {
    case FieldKind::Unknown:
    case FieldKind::Float:
        return make(static_cast<TFloatField *>(nullptr));
    case FieldKind::Currency:
        return make(static_cast<TCurrencyField *>(nullptr));
    case FieldKind::Integer:
        return make(static_cast<TIntegerField *>(nullptr));
    case FieldKind::Smallint:
        return make(static_cast<TSmallintField *>(nullptr));
    case FieldKind::Word:
        return make(static_cast<TWordField *>(nullptr));
    case FieldKind::AutoInc:
        return make(static_cast<TAutoIncField *>(nullptr));
    case FieldKind::Largeint:
        return make(static_cast<TLargeintField *>(nullptr));
    case FieldKind::String:
        return make(static_cast<TStringField *>(nullptr));
    case FieldKind::Bits:
        return make(static_cast<BitStringField *>(nullptr));
    case FieldKind::Boolean:
        return make(static_cast<TBooleanField *>(nullptr));
    case FieldKind::Date:
        return make(static_cast<TDateField *>(nullptr));
    case FieldKind::Time:
        return make(static_cast<TTimeField *>(nullptr));
    case FieldKind::DateTime:
        return make(static_cast<TDateTimeField *>(nullptr));
    case FieldKind::Blob:
        return make(static_cast<TBlobField *>(nullptr));
    case FieldKind::Memo:
        return make(static_cast<TMemoField *>(nullptr));
    }
    Q_UNREACHABLE();
}

bool isExactNumber(const QVariant &value)
{
    const FieldKind kind = kindOfMetaType(value.metaType());
    if (isInteger(kind))
        return std::abs(value.toLongLong()) <= (qint64(1) << 53);
    return isNumeric(kind) && std::isfinite(value.toDouble());
}

bool sameValue(const QVariant &value, const QVariant &wanted)
{
    if (value.isNull() || wanted.isNull())
        return value.isNull() && wanted.isNull();
    if (value.typeId() == QMetaType::LongLong && wanted.canConvert<qint64>() &&
        isInteger(kindOfMetaType(wanted.metaType())))
        return value.toLongLong() == wanted.toLongLong();
    if (isNumeric(kindOfMetaType(value.metaType()))) {
        double number = 0;
        if (isNumeric(kindOfMetaType(wanted.metaType())))
            number = wanted.toDouble();
        else if (!numberFromText(wanted.toString(), number))
            return false;
        return value.toDouble() == number;
    }
    if (value.metaType() == wanted.metaType())
        return value == wanted;
    return textFromValue(value) == textFromValue(wanted);
}

QVariant ofOneIntegerType(QVariant value)
{
    if (value.typeId() == QMetaType::Long)
        value.convert(QMetaType::fromType<qlonglong>());
    else if (value.typeId() == QMetaType::ULong)
        value.convert(QMetaType::fromType<qulonglong>());
    return value;
}

QString textFromValue(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return {};
    case QMetaType::Double:
    case QMetaType::Float:
        return FloatToStr(value.toDouble());
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case QMetaType::QDate:
        return value.toDate().toString(Qt::ISODate);
    case QMetaType::QTime:
        return textFromTime(value.toTime());
    case QMetaType::QDateTime:
        return value.toDateTime().date().toString(Qt::ISODate) + u' ' + textFromTime(value.toDateTime().time());
    default:
        return value.toString();
    }
}

QDateTime dateTimeFromValue(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QDateTime:
        return value.toDateTime();
    case QMetaType::QDate:
        return value.toDate().startOfDay();
    case QMetaType::QTime:
        return QDateTime(QDate(1970, 1, 1), value.toTime());
    case QMetaType::LongLong:
    case QMetaType::Int:
        return QDateTime::fromSecsSinceEpoch(value.toLongLong()).toUTC();
    case QMetaType::Double: {
        constexpr double kUnixEpoch = 2440587.5; // as a Julian day
        const double milliseconds = std::round((value.toDouble() - kUnixEpoch) * 86400000.0);
        // Beyond year 9999 it is no date that SQLite knows.
        if (!(std::fabs(milliseconds) < 2.6e14))
            return {};
        return QDateTime::fromMSecsSinceEpoch(qint64(milliseconds)).toUTC();
    }
    default: {
        const QString text = value.toString().trimmed();
        QDateTime parsed = QDateTime::fromString(text, Qt::ISODateWithMs);
        if (!parsed.isValid()) {
            const QTime time = QTime::fromString(text, Qt::ISODateWithMs);
            if (time.isValid())
                parsed = QDateTime(QDate(1970, 1, 1), time);
        }
        return parsed;
    }
    }
}

QString listed(const QStringList &names)
{
    constexpr qsizetype kMost = 20;
    if (names.isEmpty())
        return QStringLiteral("none");
    if (names.size() <= kMost + 1)
        return names.join(QLatin1String(", "));
    return QStringLiteral("%1 and %2 more")
        .arg(names.first(kMost).join(QLatin1String(", ")))
        .arg(names.size() - kMost);
}

QString sentenceStart(const QString &text)
{
    return text.left(1).toUpper() + text.mid(1);
}

} // namespace nuvo
