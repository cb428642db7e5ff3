// SPDX-License-Identifier: MIT
#include "platform/Databasename.h"

#include "platform/Errors.h"

#include <QDir>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QStringList>
#include <QUrl>

#include <algorithm>

namespace nuvo {

namespace {

constexpr QChar kMask(0x2026); // …

QString decoded(QStringView text)
{
    return QString::fromUtf8(QByteArray::fromPercentEncoding(text.toUtf8()));
}

/// Where the first ':' stands, written as it is or percent-encoded; -1 when there is none.
qsizetype colonIn(QStringView text)
{
    const qsizetype plain = text.indexOf(u':');
    const qsizetype encoded = text.indexOf(u"%3a", 0, Qt::CaseInsensitive);
    return plain < 0 ? encoded : encoded < 0 ? plain : std::min(plain, encoded);
}

/// Whether the value of a parameter of this name is a secret.
bool namesSecret(QStringView key)
{
    const QString name = decoded(key).toLower();
    for (const QLatin1String part : {QLatin1String("pass"), QLatin1String("pwd"), QLatin1String("secret"),
                                     QLatin1String("token"), QLatin1String("key")}) {
        if (name.contains(part))
            return true;
    }
    return false;
}

/// Length of "scheme://", "scheme:/", "scheme:" or one of them percent-encoded at the beginning; 0 without a scheme.
qsizetype schemeLength(const QString &name)
{
    // A single letter is a drive, not a scheme.
    static const QRegularExpression scheme(QStringLiteral("^\\s*[A-Za-z][A-Za-z0-9+.-]+(:|%3a)(/|%2f)*"),
                                           QRegularExpression::CaseInsensitiveOption);
    return scheme.match(name).capturedLength();
}

int seconds(QStringView value, QStringView key, const QString &url)
{
    bool ok = false;
    const int number = value.toInt(&ok);
    constexpr int kDay = 86400;
    if (!ok || number < 1 || number > kDay)
        throw EDatabaseError(QStringLiteral("Cannot open \"%1\": %2 is a number of whole seconds from 1 to %3.")
                                 .arg(withoutPasswords(url), key)
                                 .arg(kDay));
    return number;
}

} // namespace

bool isServerName(const QString &databaseName)
{
    return databaseName.contains(QLatin1String("://")) ||
           databaseName.startsWith(QLatin1String("odbc:"), Qt::CaseInsensitive);
}

bool isRelativeFile(const QString &databaseName)
{
    return !databaseName.isEmpty() && !isServerName(databaseName) && !databaseName.startsWith(u'/') &&
           !QSqlDatabase::contains(databaseName);
}

QString noSuchDatabase(const QString &databaseName, const QString &folder)
{
    if (!isRelativeFile(databaseName))
        return QStringLiteral("there is no such file and no registered connection of that name");
    const QString working = QDir::currentPath();
    if (folder.isEmpty() || QDir(folder) == QDir(working))
        return QStringLiteral("there is no such file in \"%1\" and no registered connection of that name")
            .arg(working);
    return QStringLiteral("there is no such file beside the form, in \"%1\", or in the working folder \"%2\", and no "
                          "registered connection of that name")
        .arg(folder, working);
}

QString withoutPasswords(const QString &databaseName)
{
    QString name = databaseName;
    // What follows the user's name up to the last '@', whatever signs a password holds.
    const qsizetype from = schemeLength(name);
    const qsizetype at = std::max(name.lastIndexOf(u'@'), name.lastIndexOf(QStringLiteral("%40")));
    if (from > 0 && at > from) {
        const qsizetype colon = colonIn(QStringView(name).mid(from, at - from));
        if (colon >= 0)
            name.replace(from + colon + 1, at - from - colon - 1, kMask);
    } else if (from > 0 && from < name.size() && name[from - 1] == u'/') {
        // Without '@', what follows the colon is a port, or a password whose '@' was forgotten.
        static const QRegularExpression port(QStringLiteral("^[0-9]{1,5}(?![^/?#])"));
        const QStringView rest = QStringView(name).mid(from);
        const qsizetype end = rest.indexOf(QRegularExpression(QStringLiteral("[/?#]")));
        const QStringView authority = end < 0 ? rest : rest.left(end);
        const qsizetype colon = authority.startsWith(u'[') ? -1 : colonIn(authority);
        if (colon >= 0 && !port.match(rest.mid(colon + 1).toString()).hasMatch())
            name.replace(from + colon + 1, name.size() - from - colon - 1, kMask);
    }
    // Parameters of a URL, parts of a connection string: a secret hides all that follows it, since it may hold any
    // sign.
    static const QRegularExpression parameter(QStringLiteral("(^|[?&;#\\s]|odbc:)([^?&;#=\\s]*)\\s*="),
                                              QRegularExpression::CaseInsensitiveOption);
    for (auto it = parameter.globalMatch(name); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        if (namesSecret(match.capturedView(2)) && match.capturedEnd() < name.size())
            return name.left(match.capturedEnd()) + kMask;
    }
    return name;
}

void refuseOdbcPassword(const QString &connectionString)
{
    const QString prefixed = QStringLiteral("odbc:") + connectionString;
    if (withoutPasswords(prefixed) != prefixed)
        throw EDatabaseError(QStringLiteral("A password is not taken from the name of a database (odbc:…): keep it "
                                            "with the data source."));
}

ServerAddress serverAddress(const QString &url)
{
    const auto refuse = [&](const QString &why) {
        throw EDatabaseError(QStringLiteral("Cannot open \"%1\": %2.").arg(withoutPasswords(url), why));
    };
    ServerAddress address;
    const qsizetype colon = url.indexOf(u':');
    address.scheme = url.left(colon).trimmed().toLower();
    QStringView rest = QStringView(url).mid(colon + 3);
    // It would stand in process lists, form files and messages: not repeated here either. The last '@' is the one
    // before the server, unless it stands in an option.
    const qsizetype userEnd = rest.lastIndexOf(u'@');
    const qsizetype passwordAt = userEnd < 0 ? -1 : colonIn(rest.left(userEnd));
    const qsizetype optionsAt = rest.indexOf(u'?');
    if (passwordAt >= 0 && (optionsAt < 0 || passwordAt < optionsAt) &&
        !(rest.left(passwordAt).contains(u'/') || rest.left(passwordAt).contains(u'@'))) {
        QStringView server = rest.mid(userEnd + 1);
        server = server.left(std::min({server.size(), server.indexOf(u'/') < 0 ? server.size() : server.indexOf(u'/'),
                                       server.indexOf(u'?') < 0 ? server.size() : server.indexOf(u'?')}));
        throw EDatabaseError(
            QStringLiteral("A password is not taken from the name of a database (%1://%2:…@%3): use the "
                           "driver's own means, a password file or a service file.")
                .arg(address.scheme, rest.left(passwordAt), server));
    }

    if (optionsAt >= 0) {
        for (const QStringView option : rest.mid(optionsAt + 1).split(u'&')) {
            const qsizetype equals = option.indexOf(u'=');
            const QStringView key = equals < 0 ? option : option.left(equals);
            const QStringView value = equals < 0 ? QStringView() : option.mid(equals + 1);
            if (namesSecret(key))
                throw EDatabaseError(QStringLiteral("A password is not taken from the name of a database (%1): use "
                                                    "the driver's own means, a password file or a service file.")
                                         .arg(withoutPasswords(url)));
            if (key == u"connect_timeout")
                address.connectTimeout = seconds(value, key, url);
            else if (key == u"read_timeout")
                address.readTimeout = seconds(value, key, url);
            else
                refuse(QStringLiteral("only connect_timeout and read_timeout are options of a server's address"));
        }
        rest = rest.left(optionsAt);
    }
    const qsizetype slash = rest.indexOf(u'/');
    const QStringView authority = slash < 0 ? rest : rest.left(slash);
    const QStringView path = slash < 0 ? QStringView() : rest.mid(slash + 1);
    if (path.contains(u'/') || path.contains(u'#'))
        refuse(QStringLiteral("only a database name and options may follow the server"));
    address.name = decoded(path);

    const qsizetype at = authority.lastIndexOf(u'@');
    address.user = decoded(at < 0 ? QStringView() : authority.left(at));
    QStringView server = authority.mid(at + 1);
    const qsizetype bracket = server.lastIndexOf(u']');
    const qsizetype portColon = server.lastIndexOf(u':');
    if (portColon > bracket) {
        address.port = server.mid(portColon + 1).toString();
        server = server.left(portColon);
        bool ok = false;
        const int port = address.port.toInt(&ok);
        if (!ok || port < 1 || port > 65535)
            refuse(at < 0 && !ok ? QStringLiteral("what follows the colon is no port")
                                 : QStringLiteral("\"%1\" is no port").arg(address.port));
    }
    if (server.startsWith(u'[') && server.endsWith(u']'))
        server = server.mid(1, server.size() - 2);
    address.host = decoded(server);
    return address;
}

QString databaseName(const ServerAddress &address)
{
    const auto encoded = [](const QString &part) { return QString::fromLatin1(QUrl::toPercentEncoding(part)); };
    const bool colons = address.host.contains(u':');
    QString url = address.scheme + QStringLiteral("://");
    if (!address.user.isEmpty())
        url += encoded(address.user) + u'@';
    url += colons ? u'[' + address.host + u']' : encoded(address.host);
    if (!address.port.isEmpty())
        url += u':' + address.port;
    url += u'/' + encoded(address.name);
    QStringList options;
    if (address.connectTimeout != ServerAddress().connectTimeout)
        options += QStringLiteral("connect_timeout=%1").arg(address.connectTimeout);
    if (address.readTimeout != 0)
        options += QStringLiteral("read_timeout=%1").arg(address.readTimeout);
    if (!options.isEmpty())
        url += u'?' + options.join(u'&');
    return url;
}

} // namespace nuvo
