// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Dataset.h"

/// The records of one table or view. They come in the order of IndexFieldNames, and where that does not tell two
/// apart in the order of the primary key. What these leave open, all of it in a table without either, is the
/// engine's: an SQLite table comes in the order of its row numbers, a PostgreSQL table in the order in which it is
/// stored, which an UPDATE changes; a view, or a table in another engine, in an order that may be another one each
/// time it is opened.
class NUVO_EXPORT TTable : public TDataSet
{
    Q_OBJECT
    Q_PROPERTY(QString TableName READ TableName WRITE SetTableName)
    Q_PROPERTY(QString Filter READ Filter WRITE SetFilter)
    Q_PROPERTY(bool Filtered READ Filtered WRITE SetFiltered)
    Q_PROPERTY(QString IndexFieldNames READ IndexFieldNames WRITE SetIndexFieldNames)

public:
    /// No table; the owner deletes it.
    explicit TTable(QWidget *owner = nullptr);
    ~TTable() override;

    /// The table's name as it is stored, of any characters; schema and table parted by a point where no table has the
    /// whole text as its name. Setting it closes the dataset.
    QString TableName() const;
    /// Closes the dataset.
    void SetTableName(const QString &name);

    /// An SQL condition, put after WHERE while Filtered() is set.
    QString Filter() const;
    /// An open dataset is read anew where Filtered() is set.
    void SetFilter(const QString &condition);
    /// Whether Filter() is in force.
    bool Filtered() const;
    /// An open dataset is read anew.
    void SetFiltered(bool filtered);

    /// Field names parted by ';' (or ','), the order of the records and the key of FindKey().
    QString IndexFieldNames() const;
    /// An open dataset is read anew.
    void SetIndexFieldNames(const QString &names);

    /// Moves to the first record whose key fields (IndexFieldNames, else the primary key) begin with these values;
    /// false and no move when there is none.
    bool FindKey(const QVariantList &values);

    /// Names of the tables and views of the database, sorted.
    QStringList TableNames();

    QString Caption() const override;
    nuvo::ScanSource Source() const override;

protected:
    std::vector<nuvo::Column> Describe(const nuvo::Connection &connection) override;
    nuvo::Select SelectFrom(const nuvo::Connection &connection, const nuvo::ReadPosition &position) override;
    nuvo::Select CountStatement(const nuvo::Connection &connection) override;

private:
    class Private;
    std::unique_ptr<Private> d_;
};
