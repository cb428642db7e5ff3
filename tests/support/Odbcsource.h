// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTemporaryDir>

/// A PostgreSQL database as a data source of ODBC, while the object lives.
class OdbcSource
{
public:
    /// Whether Qt's driver for ODBC is installed and PostgreSQL's is known to the driver manager.
    static bool isInstalled();

    /// What the driver manager calls PostgreSQL's driver; empty where it has none.
    static QString driver();

    /// \param url of the database, as TestDatabase::name() has it. \pre isInstalled()
    explicit OdbcSource(const QString &url);

    /// What a dataset's DatabaseName is set to.
    QString name() const { return QStringLiteral("odbc:") + dsn_; }

private:
    QTemporaryDir folder_;
    QString dsn_;
};
