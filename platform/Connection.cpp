// SPDX-License-Identifier: MIT
#include "platform/Connection.h"

#include "platform/Databasename.h"
#include "platform/Errors.h"
#include "platform/Formfolder.h"
#include "platform/Libpq.h"
#include "platform/Passwords.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlField>
#include <QUrl>
#include <QVariant>

#include <atomic>

namespace nuvo {

namespace {

Dialect dialectOf(const QSqlDatabase &database)
{
    switch (database.driver()->dbmsType()) {
    case QSqlDriver::SQLite:
        return Dialect::Sqlite;
    case QSqlDriver::PostgreSQL:
        return Dialect::Postgres;
    case QSqlDriver::MySqlServer:
        return Dialect::Mysql;
    default:
        return Dialect::Other;
    }
}

/// The kind of SQLite's error: the lower byte of its code.
int sqliteCode(const QSqlError &error)
{
    return error.nativeErrorCode().toInt() & 0xff;
}

/// Whether SQLite keeps changes of a file in another one beside it, which readers share as well.
bool hasWriteAheadLog(const QString &path)
{
    constexpr qint64 readVersion = 19; // its place in the header
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(readVersion + 1).endsWith('\2');
}

/// The first line of a message, without the server's word for how grave it is ("FATAL:  ", in its own language).
QString firstLine(const QString &message)
{
    static const QRegularExpression level(QStringLiteral("(^|: )(\\p{Lu}{4,}: {1,2})"));
    QString text = message.trimmed().section(u'\n', 0, 0).trimmed();
    text.replace(level, QStringLiteral("\\1"));
    while (text.endsWith(u'.'))
        text.chop(1);
    return text;
}

QString newName()
{
    static std::atomic<int> count{0};
    return QStringLiteral("nuvo-%1").arg(++count);
}

} // namespace

Connection::~Connection()
{
    close();
}

void Connection::open(const QString &databaseName, Access access, const QString &password, const QString &formFolder)
{
    close();
    madeFile_.clear();
    if (databaseName.isEmpty())
        throw EDatabaseError(QStringLiteral("No database is named (DatabaseName is empty)."));
    name_ = databasePlace(databaseName, formFolder);
    if (QSqlDatabase::contains(databaseName)) {
        database_ = QSqlDatabase::database(databaseName);
        if (!database_.isOpen()) {
            const QString why = database_.isValid() ? reason(database_.lastError())
                                                    : QStringLiteral("it belongs to another thread or has no driver");
            database_ = QSqlDatabase();
            throw EDatabaseError(
                QStringLiteral("Cannot open the registered connection \"%1\": %2.").arg(databaseName, why));
        }
        own_ = false;
        dialect_ = dialectOf(database_);
    } else if (isServerName(databaseName)) {
        openServer(databaseName, access, password);
    } else {
        openSqlite(name_, access, formFolder);
    }
    open_ = true;
}

void Connection::openSqlite(const QString &path, Access access, const QString &formFolder)
{
    // A path is a path, whatever it begins with: Qt takes ":…" for a resource, SQLite "file:…" for a URI.
    const QString plain = path.startsWith(u'/') ? path : QStringLiteral("./") + path;
    QFileInfo file(plain);
    const auto refuse = [&](const QString &why) {
        throw EDatabaseError(QStringLiteral("Cannot open the database \"%1\": %2.").arg(withoutPasswords(path), why));
    };
    const QFileInfo directory(file.path());
    if (!file.exists() && directory.isDir() && !directory.isExecutable())
        refuse(QStringLiteral("there is no permission to read its directory"));
    if (!file.exists() && access == Access::Write) {
        QFile made(plain);
        if (!made.open(QIODevice::WriteOnly | QIODevice::NewOnly))
            refuse(QStringLiteral("there is no such file and it cannot be made (%1)").arg(made.errorString()));
        madeFile_ = plain;
        file.refresh();
    }
    if (!file.exists())
        refuse(noSuchDatabase(path, formFolder));
    if (file.isDir())
        refuse(QStringLiteral("it is a directory, not an SQLite file"));
    if (!file.isFile()) // opening a pipe would wait for its writer
        refuse(QStringLiteral("it is a device or a pipe, not an SQLite file"));
    if (!file.isReadable())
        refuse(QStringLiteral("there is no permission to read the file"));
    if (access == Access::Write && !file.isWritable())
        refuse(QStringLiteral("there is no permission to write the file"));
    dialect_ = Dialect::Sqlite;
    own_ = true;
    openOwn(QStringLiteral("QSQLITE"), QStringLiteral("libqt6sql6-sqlite"));
    database_.setDatabaseName(plain);
    // SQLite looks into the file at the first statement only.
    const auto tryOpen = [&](Access how, const QString &further = {}) {
        database_.setConnectOptions((how == Access::Write
                                         ? QStringLiteral("QSQLITE_BUSY_TIMEOUT=1000")
                                         : QStringLiteral("QSQLITE_BUSY_TIMEOUT=1000;QSQLITE_OPEN_READONLY")) +
                                    further);
        if (!database_.open())
            return database_.lastError();
        QSqlQuery probe = newQuery();
        return probe.exec(QStringLiteral("SELECT 1 FROM sqlite_master LIMIT 1")) ? QSqlError() : probe.lastError();
    };
    QSqlError error = tryOpen(access);
    if (access == Access::Read && sqliteCode(error) == 8) {
        // A writer was killed. What it left is rolled back by the next session that may write.
        database_.close();
        error = tryOpen(Access::Write);
        database_.close();
        if (!error.isValid())
            error = tryOpen(Access::Read);
    }
    QString why = error.isValid() ? reason(error) : QString();
    if (sqliteCode(error) == 14 && !directory.isWritable() && hasWriteAheadLog(plain)) {
        // Nobody can make there what readers of it share, so nobody writes either.
        if (QFileInfo(plain + QStringLiteral("-wal")).size() > 0) {
            why =
                QStringLiteral("its last changes are still in \"%1-wal\", and its directory cannot be written; copy "
                               "both files to where they can")
                    .arg(file.fileName());
        } else {
            database_.close();
            database_.setDatabaseName(
                QStringLiteral("file:%1?immutable=1").arg(QString::fromLatin1(QUrl::toPercentEncoding(plain, "/"))));
            error = tryOpen(Access::Read, QStringLiteral(";QSQLITE_OPEN_URI"));
            why = error.isValid() ? reason(error) : QString();
        }
    }
    if (!why.isEmpty()) {
        close();
        refuse(why);
    }
}

void Connection::openServer(const QString &url, Access access, const QString &password)
{
    const bool odbc = url.startsWith(QLatin1String("odbc:"), Qt::CaseInsensitive);
    ServerAddress address;
    QString driver;
    QString package;
    if (odbc) {
        address.name = url.mid(5);
        refuseOdbcPassword(address.name);
        driver = QStringLiteral("QODBC");
        package = QStringLiteral("libqt6sql6-odbc");
    } else {
        address = serverAddress(url);
        if (address.scheme == u"postgresql" || address.scheme == u"postgres") {
            driver = QStringLiteral("QPSQL");
            package = QStringLiteral("libqt6sql6-psql");
        } else if (address.scheme == u"mysql") {
            driver = QStringLiteral("QMYSQL");
            package = QStringLiteral("libqt6sql6-mysql");
        } else {
            throw EDatabaseError(
                QStringLiteral("Cannot open \"%1\": \"%2\" is no kind of database known here (postgresql, "
                               "mysql, odbc, or the path of an SQLite file).")
                    .arg(withoutPasswords(url), address.scheme));
        }
    }
    own_ = true;
    openOwn(driver, package);
    dialect_ = dialectOf(database_);
    database_.setDatabaseName(address.name);
    database_.setHostName(address.host);
    database_.setUserName(address.user);
    const QString known = password.isEmpty() ? passwordOf(url) : password;
    if (!known.isEmpty())
        database_.setPassword(known);
    if (!address.port.isEmpty())
        database_.setPort(address.port.toInt());
    if (dialect_ == Dialect::Postgres) {
        database_.setConnectOptions(
            QStringLiteral("connect_timeout=%1;application_name=nuvo").arg(address.connectTimeout));
        // A server that lives ends a statement that takes too long by itself, a second earlier.
        if (address.readTimeout > 0)
            limit_ = std::make_unique<AnswerLimit>(
                address.readTimeout, [database = database_] { libpq::cut(database); }, 1);
    } else if (dialect_ == Dialect::Mysql) {
        QString options = QStringLiteral("MYSQL_OPT_CONNECT_TIMEOUT=%1").arg(address.connectTimeout);
        // A server that lives ends a statement that takes too long by itself, a second earlier.
        if (address.readTimeout > 0)
            options += QStringLiteral(";MYSQL_OPT_READ_TIMEOUT=%1").arg(address.readTimeout + 1);
        database_.setConnectOptions(options);
    }
    QElapsedTimer since;
    since.start();
    const bool opened = [this] {
        const AnswerLimit::Wait wait = waiting();
        return database_.open();
    }();
    if (!opened) {
        // One that does not answer at all is not asked a second time.
        const bool silent = since.elapsed() >= 1000 * address.connectTimeout;
        refuseServer(database_.lastError(), !silent && wantsPassword(database_.lastError(), address.connectTimeout));
    }
    set(access, address.readTimeout);
}

/// Whether a server that did not let us in might with a password, or another one.
bool Connection::wantsPassword(const QSqlError &error, int connectTimeout) const
{
    if (dialect_ == Dialect::Postgres)
        return !(limit_ && limit_->passed()) && libpq::wantsPassword(database_, connectTimeout);
    if (database_.driverName() == u"QODBC") { // which has each driver's own codes
        const QString text = error.databaseText() + error.driverText();
        return text.contains(u"password", Qt::CaseInsensitive) ||
               text.contains(u"login failed", Qt::CaseInsensitive) ||
               text.contains(u"access denied", Qt::CaseInsensitive);
    }
    return dialect_ == Dialect::Mysql && error.nativeErrorCode() == u"1045"; // access denied
}

void Connection::refuseServer(const QSqlError &error, bool forPassword)
{
    const QString why = reason(error);
    const QString name = name_;
    close();
    const QString sentence = QStringLiteral("Cannot open the database \"%1\": %2.").arg(withoutPasswords(name), why);
    if (forPassword)
        throw EPasswordError(sentence);
    throw EDatabaseError(sentence);
}

/// What a session of ours is told first.
void Connection::set(Access access, int readTimeout)
{
    dialect_ = dialectOf(database_);
    QString settings;
    if (dialect_ == Dialect::Postgres) {
        // Money comes as "$1,234.50" whatever the server's language; a scan begins at the beginning of the table;
        // and compiling a statement over a large table takes longer than the rows that are read of it.
        settings = QStringLiteral("SET lc_monetary = 'C'; SET standard_conforming_strings = on; "
                                  "SET extra_float_digits = 3; SET synchronize_seqscans = off; SET jit = off; "
                                  "SET lock_timeout = '1s'");
        libpq::silenceNotices(database_);
        if (readTimeout > 0)
            settings += QStringLiteral("; SET statement_timeout = '%1s'").arg(readTimeout);
        if (access == Access::Read)
            settings += QStringLiteral("; SET SESSION CHARACTERISTICS AS TRANSACTION READ ONLY");
    } else if (dialect_ == Dialect::Mysql) {
        readTimeout_ = readTimeout;
        // The one is MariaDB's, the other MySQL's.
        if (readTimeout > 0 &&
            !newQuery().exec(QStringLiteral("SET SESSION max_statement_time = %1").arg(readTimeout)))
            newQuery().exec(QStringLiteral("SET SESSION max_execution_time = %1").arg(1000LL * readTimeout));
        if (access == Access::Read)
            settings = QStringLiteral("SET SESSION TRANSACTION READ ONLY");
    }
    if (settings.isEmpty())
        return;
    QSqlQuery query = newQuery();
    const bool done = [&] {
        const AnswerLimit::Wait wait = waiting();
        return query.exec(settings);
    }();
    if (!done) {
        const QSqlError error = query.lastError();
        query = QSqlQuery();
        refuseServer(error);
    }
}

void Connection::openBeside(const QString &databaseName)
{
    if (!QSqlDatabase::contains(databaseName)) {
        open(databaseName);
        return;
    }
    close();
    madeFile_.clear();
    name_ = databaseName;
    database_ = QSqlDatabase::cloneDatabase(databaseName, newName());
    own_ = true;
    const QString path = database_.databaseName();
    const bool inMemory = database_.driverName() == u"QSQLITE" &&
                          (path.isEmpty() || path == u":memory:" || path.contains(u"mode=memory"));
    if (inMemory) {
        close();
        throw EDatabaseError(QStringLiteral("The registered connection \"%1\" has its database in memory, which no "
                                            "other connection can read beside it.")
                                 .arg(databaseName));
    }
    if (!database_.open())
        refuseServer(database_.lastError());
    set(Access::Read, 0);
    open_ = true;
}

void Connection::openOwn(const QString &driver, const QString &package)
{
    if (!QSqlDatabase::isDriverAvailable(driver)) {
        own_ = false;
        throw EDatabaseError(
            QStringLiteral("Cannot open \"%1\": the Qt driver %2 is not installed (Debian package %3); "
                           "installed are %4.")
                .arg(withoutPasswords(name_), driver, package, QSqlDatabase::drivers().join(QLatin1String(", "))));
    }
    database_ = QSqlDatabase::addDatabase(driver, newName());
}

void Connection::close()
{
    open_ = false;
    readTimeout_ = 0;
    limit_.reset();
    const QString registered = own_ ? database_.connectionName() : QString();
    database_ = QSqlDatabase();
    own_ = false;
    if (!registered.isEmpty())
        QSqlDatabase::removeDatabase(registered);
}

QString Connection::caption() const
{
    return QStringLiteral("database \"%1\"").arg(withoutPasswords(name_));
}

QSqlQuery Connection::newQuery() const
{
    QSqlQuery query(database_);
    query.setForwardOnly(true);
    return query;
}

QSqlQuery Connection::query(const QString &sql, const QVariantList &values, const QString &what) const
{
    const AnswerLimit::Wait wait = waiting();
    QSqlQuery query = newQuery();
    bool ok = false;
    if (values.isEmpty()) {
        ok = query.exec(sql);
    } else if (query.prepare(sql)) {
        for (const QVariant &value : values)
            query.addBindValue(value);
        ok = query.exec();
    }
    if (!ok)
        fail(query.lastError(), what);
    return query;
}

QString Connection::bound(const QVariant &value, QVariantList &values) const
{
    if (dialect_ != Dialect::Postgres) {
        values.append(value);
        return QStringLiteral("?");
    }
    QSqlField field(QString(), value.metaType());
    field.setValue(value);
    return database_.driver()->formatValue(field);
}

QString Connection::reason(const QSqlError &error) const
{
    if (dialect_ == Dialect::Sqlite) {
        switch (sqliteCode(error)) {
        case 5:
        case 6:
            return QStringLiteral("it is locked by another program that writes; try again when that is done");
        case 26:
            return QStringLiteral("the file is no SQLite database");
        }
    }
    if (dialect_ == Dialect::Postgres && error.nativeErrorCode() == u"55P03") // lock_not_available
        return QStringLiteral("it is locked by another program that writes; try again when that is done");
    if (limit_ && limit_->passed())
        return QStringLiteral("the server has not answered within %1 s").arg(limit_->seconds());
    if (dialect_ == Dialect::Mysql && readTimeout_ > 0) {
        const int code = error.nativeErrorCode().toInt();
        if (code == 1969 || code == 3024) // MariaDB's and MySQL's own limit
            return QStringLiteral("the server has not answered within %1 s").arg(readTimeout_);
        if (code == 2013) // the client's
            return QStringLiteral("the server has not answered within %1 s or was lost").arg(readTimeout_ + 1);
    }
    QString text = firstLine(error.databaseText().isEmpty() ? error.driverText() : error.databaseText());
    if (text.isEmpty() && dialect_ == Dialect::Postgres) {
        // Qt's driver has no words for a connection that breaks before an answer.
        text = firstLine(libpq::errorMessage(database_));
        if (text.isEmpty())
            text = QStringLiteral("the connection to the server was lost");
    }
    return text.isEmpty() ? QStringLiteral("the driver gives no reason") : text;
}

void Connection::fail(const QSqlError &error, const QString &what) const
{
    throw EDatabaseError(QStringLiteral("Cannot read %1: %2.").arg(what, reason(error)));
}

QStringList tableNames(const Connection &connection)
{
    QString sql;
    switch (connection.dialect()) {
    case Dialect::Sqlite:
        sql = QStringLiteral("SELECT name FROM sqlite_master WHERE type IN ('table', 'view') "
                             "AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\'");
        break;
    case Dialect::Postgres:
        sql = QStringLiteral(
            "SELECT CASE WHEN pg_table_is_visible(c.oid) THEN '' ELSE n.nspname || '.' END || c.relname "
            "FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace "
            "WHERE c.relkind IN ('r', 'v', 'm', 'f', 'p') AND n.nspname <> 'information_schema' "
            "AND n.nspname NOT LIKE 'pg\\_%'");
        break;
    case Dialect::Mysql:
    case Dialect::Other:
        break;
    }
    QStringList names;
    if (sql.isEmpty()) {
        names = connection.database().tables(QSql::Tables) + connection.database().tables(QSql::Views);
    } else {
        QSqlQuery query = connection.query(sql, {}, connection.caption());
        while (query.next())
            names.append(query.value(0).toString());
        if (query.lastError().isValid())
            connection.fail(query.lastError(), connection.caption());
    }
    names.sort(Qt::CaseInsensitive);
    return names;
}

} // namespace nuvo
