// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

class QWidget;

namespace nuvo {

/// Asks for the password of a server, below the reason why. Nothing where nobody gave one.
std::optional<QString> askPassword(QWidget *parent, const QString &database, const QString &why);

/// Takes the password (PWD, Password) out of a connection string of ODBC, and keeps it in memory alone
/// (platform/Passwords.h). \return the name without it, the only one that is stored, shown and copied; another name
/// as it is.
QString keepOdbcPassword(const QString &databaseName);

/// Asks for values of a statement's parameters, with those from before filled in. Nothing where it was given up.
std::optional<QMap<QString, QString>> askParameters(QWidget *parent, const QStringList &names,
                                                    const QMap<QString, QString> &before);

} // namespace nuvo
