#include "platform/Connection.h"

#include "platform/Errors.h"

#include <QFile>
#include <QFileInfo>
#include <QLibrary>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlField>
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

struct ServerAddress
{
    QString scheme;
    QString user;
    QString host;
    QString port;
    QString name;
};

QString decoded(QStringView text)
{
    return QString::fromUtf8(QByteArray::fromPercentEncoding(text.toUtf8()));
}

/// scheme://user@host:port/name, each part but the scheme allowed to be missing, percent-encoded as needed.
ServerAddress serverAddress(const QString &url)
{
    const auto refuse = [&](const QString &why) {
        throw EDatabaseError(QStringLiteral("Cannot open \"%1\": %2.").arg(url, why));
    };
    ServerAddress address;
    const qsizetype colon = url.indexOf(u':');
    address.scheme = url.left(colon).toLower();
    const QStringView rest = QStringView(url).mid(colon + 3);
    const qsizetype slash = rest.indexOf(u'/');
    const QStringView authority = slash < 0 ? rest : rest.left(slash);
    const QStringView path = slash < 0 ? QStringView() : rest.mid(slash + 1);
    if (path.contains(u'?') || path.contains(u'/') || path.contains(u'#'))
        refuse(QStringLiteral("only a database name may follow the server, without further options"));
    address.name = decoded(path);

    const qsizetype at = authority.lastIndexOf(u'@');
    const QStringView user = at < 0 ? QStringView() : authority.left(at);
    QStringView server = authority.mid(at + 1);
    if (user.contains(u':')) {
        // It would stand in process lists, form files and messages: not repeated here either.
        throw EDatabaseError(
            QStringLiteral("A password is not taken from the name of a database (%1://%2:…@%3): use the "
                           "driver's own means, a password file or a service file.")
                .arg(address.scheme, user.left(user.indexOf(u':')), server));
    }
    address.user = decoded(user);
    const qsizetype bracket = server.lastIndexOf(u']');
    const qsizetype portColon = server.lastIndexOf(u':');
    if (portColon > bracket) {
        address.port = server.mid(portColon + 1).toString();
        server = server.left(portColon);
        bool ok = false;
        const int port = address.port.toInt(&ok);
        if (!ok || port < 1 || port > 65535)
            refuse(QStringLiteral("\"%1\" is no port").arg(address.port));
    }
    if (server.startsWith(u'[') && server.endsWith(u']'))
        server = server.mid(1, server.size() - 2);
    address.host = decoded(server);
    return address;
}

/// The server's client library writes notices, and the last words of a server that goes down, to standard error,
/// where a program has lines of its own. What matters of them comes back as an error of the statement.
void silenceNotices(const QSqlDatabase &database)
{
    using Processor = void (*)(void *, const char *);
    using Set = Processor (*)(void *, Processor, void *);
    const QVariant handle = database.driver()->handle();
    // The driver has loaded the library already.
    const auto set = reinterpret_cast<Set>(QLibrary::resolve(QStringLiteral("pq"), 5, "PQsetNoticeProcessor"));
    if (set == nullptr || (qstrcmp(handle.typeName(), "PGconn*") != 0 && qstrcmp(handle.typeName(), "pg_conn*") != 0))
        return;
    set(
        *static_cast<void *const *>(handle.constData()), [](void *, const char *) {}, nullptr);
}

} // namespace

Connection::~Connection()
{
    close();
}

void Connection::open(const QString &databaseName, Access access)
{
    close();
    madeFile_.clear();
    if (databaseName.isEmpty())
        throw EDatabaseError(QStringLiteral("No database is named (DatabaseName is empty)."));
    name_ = databaseName;
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
    } else if (databaseName.contains(QLatin1String("://")) ||
               databaseName.startsWith(QLatin1String("odbc:"), Qt::CaseInsensitive)) {
        openServer(databaseName, access);
    } else {
        openSqlite(databaseName, access);
    }
    open_ = true;
}

void Connection::openSqlite(const QString &path, Access access)
{
    QFileInfo file(path);
    const auto refuse = [&](const QString &why) {
        throw EDatabaseError(QStringLiteral("Cannot open the database \"%1\": %2.").arg(path, why));
    };
    const QFileInfo directory(file.path());
    if (!file.exists() && directory.isDir() && !directory.isExecutable())
        refuse(QStringLiteral("there is no permission to read its directory"));
    if (!file.exists() && access == Access::Write) {
        QFile made(path);
        if (!made.open(QIODevice::WriteOnly | QIODevice::NewOnly))
            refuse(QStringLiteral("there is no such file and it cannot be made (%1)").arg(made.errorString()));
        madeFile_ = path;
        file.refresh();
    }
    if (!file.exists())
        refuse(QStringLiteral("there is no such file and no registered connection of that name"));
    if (file.isDir())
        refuse(QStringLiteral("it is a directory, not an SQLite file"));
    if (!file.isFile()) // opening a pipe would wait for somebody to write into it
        refuse(QStringLiteral("it is a device or a pipe, not an SQLite file"));
    if (!file.isReadable())
        refuse(QStringLiteral("there is no permission to read the file"));
    if (access == Access::Write && !file.isWritable())
        refuse(QStringLiteral("there is no permission to write the file"));
    dialect_ = Dialect::Sqlite;
    own_ = true;
    const QString unique = QStringLiteral("QSQLITE");
    openOwn(unique, QStringLiteral("libqt6sql6-sqlite"));
    database_.setDatabaseName(path);
    // SQLite looks into the file at the first statement only.
    const auto tryOpen = [&](Access how) {
        database_.setConnectOptions(how == Access::Write
                                        ? QStringLiteral("QSQLITE_BUSY_TIMEOUT=1000")
                                        : QStringLiteral("QSQLITE_BUSY_TIMEOUT=1000;QSQLITE_OPEN_READONLY"));
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
    if (error.isValid()) {
        const QString why = reason(error);
        close();
        refuse(why);
    }
}

void Connection::openServer(const QString &url, Access access)
{
    const bool odbc = url.startsWith(QLatin1String("odbc:"), Qt::CaseInsensitive);
    ServerAddress address;
    QString driver;
    QString package;
    if (odbc) {
        address.name = url.mid(5);
        if (address.name.contains(QLatin1String("pwd="), Qt::CaseInsensitive))
            throw EDatabaseError(
                QStringLiteral("A password is not taken from the name of a database (odbc:…): keep it with "
                               "the data source."));
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
                    .arg(url, address.scheme));
        }
    }
    own_ = true;
    openOwn(driver, package);
    dialect_ = dialectOf(database_);
    database_.setDatabaseName(address.name);
    database_.setHostName(address.host);
    database_.setUserName(address.user);
    if (!address.port.isEmpty())
        database_.setPort(address.port.toInt());
    if (dialect_ == Dialect::Postgres)
        database_.setConnectOptions(QStringLiteral("connect_timeout=5;application_name=nuvo"));
    else if (dialect_ == Dialect::Mysql)
        database_.setConnectOptions(QStringLiteral("MYSQL_OPT_CONNECT_TIMEOUT=5"));
    if (!database_.open()) {
        const QString why = reason(database_.lastError());
        close();
        throw EDatabaseError(QStringLiteral("Cannot open the database \"%1\": %2.").arg(url, why));
    }
    dialect_ = dialectOf(database_);
    QString settings;
    if (dialect_ == Dialect::Postgres) {
        // Money comes as "$1,234.50" whatever the server's language; a scan begins at the beginning of the table;
        // and compiling a statement over a large table takes longer than the rows that are read of it.
        settings = QStringLiteral("SET lc_monetary = 'C'; SET standard_conforming_strings = on; "
                                  "SET extra_float_digits = 3; SET synchronize_seqscans = off; SET jit = off; "
                                  "SET lock_timeout = '1s'");
        silenceNotices(database_);
        if (access == Access::Read)
            settings += QStringLiteral("; SET SESSION CHARACTERISTICS AS TRANSACTION READ ONLY");
    } else if (dialect_ == Dialect::Mysql && access == Access::Read) {
        settings = QStringLiteral("SET SESSION TRANSACTION READ ONLY");
    }
    if (settings.isEmpty())
        return;
    QSqlQuery query = newQuery();
    if (!query.exec(settings)) {
        const QString why = reason(query.lastError());
        query = QSqlQuery();
        close();
        throw EDatabaseError(QStringLiteral("Cannot open the database \"%1\": %2.").arg(url, why));
    }
}

void Connection::openOwn(const QString &driver, const QString &package)
{
    if (!QSqlDatabase::isDriverAvailable(driver)) {
        own_ = false;
        throw EDatabaseError(
            QStringLiteral("Cannot open \"%1\": the Qt driver %2 is not installed (Debian package %3); "
                           "installed are %4.")
                .arg(name_, driver, package, QSqlDatabase::drivers().join(QLatin1String(", "))));
    }
    static std::atomic<int> count{0};
    database_ = QSqlDatabase::addDatabase(driver, QStringLiteral("nuvo-%1").arg(++count));
}

void Connection::close()
{
    open_ = false;
    const QString registered = own_ ? database_.connectionName() : QString();
    database_ = QSqlDatabase();
    own_ = false;
    if (!registered.isEmpty())
        QSqlDatabase::removeDatabase(registered);
}

QString Connection::caption() const
{
    return QStringLiteral("database \"%1\"").arg(name_);
}

QSqlQuery Connection::newQuery() const
{
    QSqlQuery query(database_);
    query.setForwardOnly(true);
    return query;
}

QSqlQuery Connection::query(const QString &sql, const QVariantList &values, const QString &what) const
{
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
            return QStringLiteral("it is locked by another program that writes");
        case 26:
            return QStringLiteral("the file is no SQLite database");
        }
    }
    if (dialect_ == Dialect::Postgres && error.nativeErrorCode() == u"55P03") // lock_not_available
        return QStringLiteral("it is locked by another program that writes");
    QString text = error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    text = text.section(u'\n', 0, 0).trimmed();
    for (const QLatin1String level : {QLatin1String("ERROR:"), QLatin1String("FATAL:")}) {
        if (text.startsWith(level))
            text = text.mid(level.size()).trimmed();
    }
    while (text.endsWith(u'.'))
        text.chop(1);
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
