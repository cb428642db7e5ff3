// SPDX-License-Identifier: MIT
#include "support/Mariadb.h"

#include "support/Serverscript.h"

#include <QSqlDatabase>

namespace {

constexpr ServerScript mariadbScript("MariaDB", NUVO_MARIADB_SCRIPT);

} // namespace

bool MariadbServer::isInstalled()
{
    static const bool installed =
        QSqlDatabase::isDriverAvailable(QStringLiteral("QMYSQL")) && mariadbScript.isInstalled();
    return installed;
}

QString MariadbServer::sharedUrl()
{
    return mariadbScript.sharedUrlIn(QStringLiteral(NUVO_MARIADB_STATE));
}

MariadbServer::MariadbServer()
{
    mariadbScript.run("start", state());
    url_ = ServerScript::urlIn(state());
}

MariadbServer::~MariadbServer()
{
    mariadbScript.run("stop", state());
}

void MariadbServer::kill()
{
    mariadbScript.run("kill", state());
}

void MariadbServer::startAgain()
{
    mariadbScript.run("restart", state());
}

QString MariadbServer::state() const
{
    return directory_.filePath(QStringLiteral("state"));
}
