// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Dataset.h"

/// The records of an SQL statement that reads: SELECT, WITH, VALUES or SHOW. Any other is refused.
class NUVO_EXPORT TQuery : public TDataSet
{
    Q_OBJECT
    Q_PROPERTY(QStringList SQL READ SQLLines WRITE SetSQLLines)

public:
    /// No statement; the owner deletes it.
    explicit TQuery(QWidget *owner = nullptr);
    ~TQuery() override;

    /// The statement, lines parted by "\n". Setting it closes the dataset and forgets the parameters.
    QString SQL() const;
    /// Closes the dataset and forgets the parameters.
    void SetSQL(const QString &text);
    /// The statement by lines, as a form stores it.
    QStringList SQLLines() const;
    /// As SetSQL().
    void SetSQLLines(const QStringList &lines);

    /// Value of a named parameter (:name in the statement, given without the colon); taken at the next Open().
    QVariant Param(const QString &name) const;
    /// An open dataset stays as it is. Open() throws where a parameter has no value.
    void SetParam(const QString &name, const QVariant &value);
    /// The names of the parameters in the statement.
    QStringList ParamNames() const;

    QString Caption() const override;
    nuvo::ScanSource Source() const override;

protected:
    std::vector<nuvo::Column> Describe(const nuvo::Connection &connection) override;
    nuvo::Select SelectFrom(const nuvo::Connection &connection, const nuvo::ReadPosition &position) override;
    nuvo::Select CountStatement(const nuvo::Connection &connection) override;

private:
    QString sql_;
    QVariantMap params_; // by name in lower case
};
