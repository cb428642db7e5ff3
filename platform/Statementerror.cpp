// SPDX-License-Identifier: MIT
#include "platform/Statementerror.h"

#include "platform/Connection.h"
#include "platform/Libsqlite.h"

#include <QRegularExpression>
#include <QSqlError>

#include <utility>

namespace nuvo {

namespace {

qsizetype positionInSqlite(const Connection &connection, const QString &sql)
{
    const Libsqlite *library = Libsqlite::of(connection.database());
    if (library == nullptr)
        return -1;
    sqlite3 *handle = Libsqlite::handleOf(connection.database());
    sqlite3_stmt *statement = nullptr;
    const QByteArray text = sql.toUtf8();
    const bool prepared = library->prepare(handle, text.constData(), int(text.size()), &statement, nullptr) == 0;
    library->finalize(statement);
    if (prepared)
        return -1;
    if (library->errorOffset != nullptr) {
        const int offset = library->errorOffset(handle);
        if (offset >= 0 && offset <= text.size())
            return QString::fromUtf8(text.first(offset)).size();
    }
    return positionInMessage(QString::fromUtf8(library->message(handle)), sql);
}

} // namespace

qsizetype positionInMessage(const QString &message, const QString &sql)
{
    const QStringList lines = message.split(u'\n');
    static const QRegularExpression line(QStringLiteral("^([^:]{1,20} \\d+: )(.*)$"));
    for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
        const QRegularExpressionMatch match = line.match(lines[i]);
        const qsizetype column = lines[i + 1].indexOf(u'^');
        if (!match.hasMatch() || column < match.capturedLength(1) || column > lines[i].size())
            continue;
        QString rest = lines[i].sliced(column);
        if (rest.endsWith(QLatin1String("...")))
            rest.chop(3);
        if (!rest.isEmpty())
            return sql.indexOf(rest);
    }
    static const QRegularExpression near(QStringLiteral("near (?:\"([^\"]+)\"|'(.+?)' at line)"),
                                         QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = near.match(message);
    const QString word = match.captured(1).isEmpty() ? match.captured(2) : match.captured(1);
    return word.isEmpty() ? -1 : sql.indexOf(word);
}

qsizetype statementErrorPosition(const Connection &connection, const QString &sql)
{
    if (connection.dialect() == Dialect::Sqlite)
        return positionInSqlite(connection, sql);
    QSqlQuery query(connection.database());
    if (connection.dialect() == Dialect::Postgres) {
        // What reading has begun was rolled back; nothing is executed, and the name goes with the connection.
        QString text = sql;
        try {
            const ReadingStatement statement = readingStatement(sql, Dialect::Postgres);
            text = statement.with(QStringList(statement.parameters.size(), QStringLiteral("NULL")));
        } catch (const std::exception &) {
            return -1;
        }
        if (query.exec(QStringLiteral("PREPARE nuvo_tried AS ") + text))
            return -1;
    } else if (query.prepare(sql)) {
        return -1;
    }
    return positionInMessage(query.lastError().databaseText(), sql);
}

} // namespace nuvo
