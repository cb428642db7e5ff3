// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Mlrtypes.h"
#include "platform/Export.h"
#include "platform/Sqlnumbers.h"

#include <QString>

#include <functional>

namespace nuvo {

/// A field in a statement.
struct SqlField
{
    QString number;     ///< as a double
    QString present;    ///< the condition that it is not null
    bool whole = false; ///< whether all its values are whole numbers
};

/// A term in a statement. Conditions are parts of a conjunction or can be put between parentheses.
struct NUVO_EXPORT SqlTerm
{
    QString value;       ///< where it is usable; elsewhere it may be refused by the database
    QString usable;      ///< the condition; empty where no record is usable
    QString present;     ///< the condition that no field that it needs is null
    bool whole = false;  ///< whether all values are whole numbers
    bool guarded = true; ///< whether the value may be no null, or an error, where the term is not usable

    /// The value, a null where the term is not usable.
    QString safeValue() const;
};

using SqlFields = std::function<SqlField(const QString &name)>;

/// What nuvo::TermReader does, done by a database. A value that would be infinite makes a record unusable, as does a
/// null or a zero (below 1e-20) under a quotient's line.
/// \throws EConvertError for a number of the definition that is none; what `fields` throws.
NUVO_EXPORT SqlTerm sqlTerm(const TIndepVar &definition, const SqlNumbers &sql, const SqlFields &fields);
NUVO_EXPORT SqlTerm sqlTerm(const TDependentVar &definition, const SqlNumbers &sql, const SqlFields &fields);

} // namespace nuvo
