// SPDX-License-Identifier: MIT
#include "support/Postgres.h"

#include "support/Serverscript.h"

namespace {

constexpr ServerScript postgresScript("PostgreSQL", NUVO_POSTGRES_SCRIPT);

} // namespace

QString PostgresServer::sharedUrl()
{
    return postgresScript.sharedUrlIn(QStringLiteral(NUVO_POSTGRES_STATE));
}

QString PostgresServer::sharedShardUrl(int number)
{
    return postgresScript.sharedUrlIn(QStringLiteral(NUVO_POSTGRES_STATE "-%1").arg(number));
}

PostgresServer::PostgresServer(Whom whom) : whom_(whom)
{
    startAgain();
}

PostgresServer::~PostgresServer()
{
    postgresScript.run("stop", state());
}

void PostgresServer::kill()
{
    postgresScript.run("kill", state());
}

void PostgresServer::startAgain()
{
    postgresScript.run(url_.isEmpty() ? "start" : "restart", state(),
                       whom_ == AsksForAPassword ? password() : QString());
    url_ = ServerScript::urlIn(state());
}

QString PostgresServer::state() const
{
    return directory_.filePath(QStringLiteral("state"));
}
