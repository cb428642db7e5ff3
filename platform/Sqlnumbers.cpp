// SPDX-License-Identifier: MIT
#include "platform/Sqlnumbers.h"

namespace nuvo {

QString SqlNumbers::literal(double value) const
{
    QString text = QString::number(value, 'g', 17);
    // A number with a point alone is a decimal to all of them.
    if (dialect_ == Dialect::Postgres)
        return QStringLiteral("'%1'::float8").arg(text);
    if (!text.contains(u'e'))
        text += QLatin1String("e0");
    return value < 0 ? QStringLiteral("(%1)").arg(text) : text;
}

QString SqlNumbers::number(const QString &column, FieldKind kind) const
{
    switch (dialect_) {
    case Dialect::Postgres:
        if (kind == FieldKind::Currency) // has no way to a double but this
            return column + QLatin1String("::numeric::float8");
        if (kind == FieldKind::Boolean)
            return column + QLatin1String("::int::float8");
        return column + QLatin1String("::float8");
    case Dialect::Sqlite:
    case Dialect::Mysql:
        return QStringLiteral("(%1 + 0e0)").arg(column);
    case Dialect::Other:
        break;
    }
    return QStringLiteral("CAST(%1 AS DOUBLE PRECISION)").arg(column);
}

QString SqlNumbers::present(const QString &column, FieldKind kind) const
{
    // A NaN is larger than infinity there, and neither is less than a null.
    if (dialect_ == Dialect::Postgres && kind == FieldKind::Float)
        return QStringLiteral("%1 > '-Infinity'::float8 AND %1 < 'Infinity'::float8").arg(number(column, kind));
    return column + QLatin1String(" IS NOT NULL");
}

QString SqlNumbers::power(const QString &x, const QString &exponent) const
{
    return function("POWER", "POWER", x + QLatin1String(", ") + exponent);
}

// ODBC has names of its own, which drivers translate.
QString SqlNumbers::function(const char *plain, const char *odbc, const QString &arguments) const
{
    if (dialect_ == Dialect::Other)
        return QStringLiteral("{fn %1(%2)}").arg(QLatin1String(odbc), arguments);
    return QStringLiteral("%1(%2)").arg(QLatin1String(plain), arguments);
}

QString SqlNumbers::limited(const QString &select, qint64 rows) const
{
    return dialect_ == Dialect::Other ? select : QStringLiteral("%1 LIMIT %2").arg(select).arg(rows);
}

// PostgreSQL leaves a subquery with a volatile column as it is written. OFFSET 0 would do that too, but keep its
// parallel workers away.
QString SqlNumbers::workedOutOnce() const
{
    return dialect_ == Dialect::Postgres ? QStringLiteral(", clock_timestamp() AS once") : QString();
}

} // namespace nuvo
