// SPDX-License-Identifier: MIT
#include "app/Samples.h"

#include "app/Console.h"
#include "app/Ftable.h"
#include "app/Runfolder.h"
#include "app/Usage.h"
#include "platform/Connection.h"
#include "platform/Errors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>

namespace nuvo {
namespace {

constexpr char samplesUsage[] = R"(Usage:
  nuvostat samples DIR
)";

constexpr char samplesFooter[] = R"(
DIR, which is made when it is not there, gets the database samples.db (tables
Longley, Airquality, States, and Fdistribution with F quantiles), the CSV file
Cement.csv and the form Longley.ui. Nothing that is there already is replaced.

Examples:
  nuvostat samples demo
  nuvostat fit demo/Cement.csv --response Heat --control Aluminate)";

const QString databaseName = QStringLiteral("samples.db");

QByteArray resource(const QString &name)
{
    QFile file(QStringLiteral(":/samples/") + name);
    if (!file.open(QIODevice::ReadOnly))
        throw EPlatformError(QStringLiteral("The program was built without its sample \"%1\".").arg(name));
    return file.readAll();
}

/// Executes the statements of a text.
void execute(const Connection &connection, const QString &sql)
{
    qsizetype from = 0;
    for (const SqlPiece &piece : sqlPieces(sql, Dialect::Sqlite)) {
        if (piece.kind != SqlPiece::Symbol || sql[piece.begin] != u';')
            continue;
        QSqlQuery query = connection.newQuery();
        if (!query.exec(sql.mid(from, piece.begin - from)))
            throw EDatabaseError(
                QStringLiteral("The sample database cannot be made: %1.").arg(connection.reason(query.lastError())));
        from = piece.end;
    }
}

void makeDatabase(const QString &path)
{
    Connection connection;
    connection.open(path, Connection::Access::Write);
    connection.query(QStringLiteral("BEGIN"), {}, databaseName);
    for (const char *table : {"Longley.sql", "Airquality.sql", "States.sql"})
        execute(connection, QString::fromUtf8(resource(QString::fromLatin1(table))));
    connection.query(QStringLiteral("COMMIT"), {}, databaseName);
    connection.close();
    FTableOptions quantiles;
    quantiles.database = path;
    quantiles.table = QStringLiteral("Fdistribution");
    makeFTable(quantiles);
}

/// Files of a folder that are removed again unless all of them came.
class NewFiles
{
public:
    explicit NewFiles(const QDir &folder) : folder_(folder) {}
    NewFiles(const NewFiles &) = delete;
    NewFiles &operator=(const NewFiles &) = delete;
    ~NewFiles()
    {
        for (const QString &path : made_)
            QFile::remove(path);
    }

    void copy(const QString &from, const QString &name)
    {
        hold_.check();
        QFile source(from);
        const QString path = folder_.filePath(name);
        if (!source.copy(path))
            throw EPlatformError(QStringLiteral("\"%1\" cannot be written: %2.").arg(path, source.errorString()));
        made_.append(path);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    }
    void keep()
    {
        hold_.check();
        made_.clear();
    }

private:
    const InterruptHold hold_;
    const QDir folder_;
    QStringList made_;
};

} // namespace

SamplesCommand::SamplesCommand(CLI::App &program)
    : CommandSyntax(program, "samples", "Write the sample database into a folder", samplesUsage, samplesFooter),
      directory_(addRequired("DIR", "", "The folder, made when it is not there"))
{
}

SamplesOptions SamplesCommand::read() const
{
    if (optionText(directory_).isEmpty())
        throw UsageError(QStringLiteral("DIR needs a name."));
    return {optionText(directory_), {}};
}

QString makeSamples(const SamplesOptions &options)
{
    const QStringList others{QStringLiteral("Cement.csv"), QStringLiteral("Longley.ui")};
    const QDir folder(options.directory);
    for (const QString &name : QStringList{databaseName} + others) {
        if (QFileInfo(folder.filePath(name)).exists())
            throw EPlatformError(QStringLiteral("\"%1\" is there already; remove it or name another folder.")
                                     .arg(folder.filePath(name)));
    }
    if (!QDir().mkpath(options.directory))
        throw EPlatformError(QStringLiteral("The folder \"%1\" cannot be made.").arg(options.directory));
    const RunFolder temporary;
    makeDatabase(temporary.database());
    NewFiles files(folder);
    files.copy(temporary.database(), databaseName);
    for (const QString &name : others)
        files.copy(QStringLiteral(":/samples/") + name, name);
    files.keep();
    const QString first = QDir::cleanPath(folder.filePath(others.first()));
    const QString file = first.contains(u' ') ? u'"' + first + u'"' : first;
    return QStringLiteral("Wrote %1, %2 and %3. Try: nuvostat fit %4 --response Heat --control Aluminate --control "
                          "Silicate")
        .arg(QDir::cleanPath(folder.filePath(databaseName)), first, QDir::cleanPath(folder.filePath(others.last())),
             file);
}

} // namespace nuvo
