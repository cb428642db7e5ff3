// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Connection.h"
#include "platform/Dataset.h"
#include "platform/Snapshot.h"

#include <functional>
#include <memory>
#include <vector>

/// What a dataset keeps: its connection, its fields, the rows read, and where it stands among them.
class TDataSet::Private
{
public:
    explicit Private(TDataSet &dataset);
    ~Private();

    void open();
    void loadDefinitions();
    void forget();
    void release();
    void needFields();

    bool ensure(qint64 row);
    void place(qint64 row);
    qint64 reach(qint64 row);
    void readToEnd();
    void moved();
    void changed();
    void use(const std::function<void(const nuvo::Connection &)> &what);
    qint64 count();
    bool holds(qint64 row) const { return block && block->firstRow() <= row && row < block->endRow(); }
    QVariant valueIn(const nuvo::Block &from, qint64 row, int field) const;
    void connect(nuvo::Connection &to) const;

    TDataSet &q;
    QString databaseName;
    bool wished = false;
    bool defined = false; // whether fields hold the columns of the statement as it is set now
    bool bof = true;
    int disabled = 0;
    qint64 opening = 0; // counts the openings and refreshes
    qint64 openingWhenDisabled = 0;
    qint64 rowWhenDisabled = 0;

    nuvo::Connection connection;
    nuvo::Snapshot rows;
    std::vector<std::unique_ptr<TField>> fields;
    std::shared_ptr<const nuvo::Block> block; // of the current record
    qint64 counted = -1;

    std::unique_ptr<nuvo::DatasetModel> model;

private:
    nuvo::Snapshot::Begun begin(const nuvo::ReadPosition &position);
    std::vector<nuvo::Column> describe(bool read, std::vector<QVariantList> &firstRows);
    void setColumns(std::vector<nuvo::Column> columns);
    void pointNowhere();
    [[noreturn]] void failed();
    static void closeWithApplication();

    std::vector<nuvo::Column> columns_; // as declared
    std::vector<nuvo::FieldKind> kinds_;
    std::vector<std::unique_ptr<TField>> retired_; // fields of columns that are gone; a program may still hold them
    std::vector<double> nullRow_;
};
