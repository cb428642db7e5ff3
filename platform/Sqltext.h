// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QString>
#include <QStringList>

#include <vector>

/// SQL as text: telling its pieces apart, quoting names, checking what a user typed before it is put into a
/// statement.
namespace nuvo {

enum class Dialect { Sqlite, Postgres, Mysql, Other };

/// A name between the driver's quotes, every quote inside doubled: whatever the name holds, it stays a name.
NUVO_EXPORT QString quotedName(const QString &name, Dialect dialect);

struct SqlPiece
{
    enum Kind { Blank, Word, Literal, Name, Parameter, Symbol };
    Kind kind = Blank;
    qsizetype begin = 0;
    qsizetype end = 0;
};

/// The pieces of a text in order, without gaps: blanks and comments, words and numbers, literals, quoted names,
/// parameters (:name), and single other characters ("::" is one piece).
/// \throws EDatabaseError for a literal, a quoted name or a comment that does not end.
NUVO_EXPORT std::vector<SqlPiece> sqlPieces(QStringView text, Dialect dialect);

/// Passes a condition that stays one expression wherever it is put between parentheses.
/// \throws EDatabaseError for a text with a semicolon or with parentheses that do not match, or an empty one.
NUVO_EXPORT void checkCondition(const QString &condition, Dialect dialect);

/// One statement that reads, made ready to be executed.
struct NUVO_EXPORT ReadingStatement
{
    QString text;            ///< without comments, trailing semicolons and blanks; each parameter is "?"
    QStringList parameters;  ///< names in the order of the "?", as written
    bool wrappable = true;   ///< whether it can stand between parentheses (SHOW cannot)
    QList<qsizetype> places; ///< where in text the "?" stand

    /// The text with each parameter replaced by one of these.
    QString with(const QStringList &values) const;
};

/// \throws EDatabaseError for an empty text, for several statements, and for one that does not begin with SELECT,
/// WITH, VALUES or SHOW, or whose WITH leads to something else.
NUVO_EXPORT ReadingStatement readingStatement(const QString &sql, Dialect dialect);

/// The same for parameter names alone: whatever can be found in a text that may be unfinished.
NUVO_EXPORT QStringList parameterNames(const QString &sql, Dialect dialect);

} // namespace nuvo
