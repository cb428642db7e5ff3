// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Fieldtypes.h"
#include "platform/Sqltext.h"

#include <QString>

namespace nuvo {

/// How arithmetic in doubles is written in a statement: all in which the databases differ there. Operands are
/// expressions that can stand beside any operator.
class NUVO_EXPORT SqlNumbers
{
public:
    explicit SqlNumbers(Dialect dialect) : dialect_(dialect) {}

    /// A finite number that reads back as the same double.
    QString literal(double value) const;
    /// A column as a double; a boolean is 1 or 0. \pre isNumeric(kind) or a boolean.
    QString number(const QString &column, FieldKind kind) const;
    /// The condition that a column is neither null nor, where it can be, without a finite value.
    QString present(const QString &column, FieldKind kind) const;

    QString log(const QString &x) const { return function("LN", "LOG", x); }
    QString sqrt(const QString &x) const { return function("SQRT", "SQRT", x); }
    QString abs(const QString &x) const { return function("ABS", "ABS", x); }
    /// \param exponent a number as literal() writes it.
    QString power(const QString &x, const QString &exponent) const;

    /// The statement cut after so many rows, where it can be said in its text.
    QString limited(const QString &select, qint64 rows) const;
    /// What stands behind the columns of a subquery so that they are worked out once for a row, however often they
    /// are used outside; empty where there is nothing of that kind.
    QString workedOutOnce() const;

private:
    QString function(const char *plain, const char *odbc, const QString &arguments) const;

    Dialect dialect_;
};

} // namespace nuvo
