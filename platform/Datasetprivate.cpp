// SPDX-License-Identifier: MIT
#include "platform/Datasetprivate.h"

#include "platform/Datasetmodel.h"
#include "platform/Errors.h"
#include "platform/Formfolder.h"
#include "platform/Resultcolumns.h"

#include <QCoreApplication>
#include <QSet>
#include <QSqlRecord>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

using nuvo::Block;
using nuvo::Column;
using nuvo::FieldKind;
using nuvo::RowSource;

namespace {

QSet<TDataSet *> &openDatasets()
{
    static QSet<TDataSet *> datasets;
    return datasets;
}

} // namespace

TDataSet::Private::Private(TDataSet &dataset)
    : q(dataset), rows([this](const nuvo::ReadPosition &position) { return begin(position); })
{
    pointNowhere();
}

TDataSet::Private::~Private()
{
    release();
}

/// Makes the cursor that of no record: every number in it is a null.
void TDataSet::Private::pointNowhere()
{
    nullRow_.assign(std::max<size_t>(1, fields.size()), std::numeric_limits<double>::quiet_NaN());
    q.cursor_ = {nullRow_.data(), 0, 0, 0};
    block.reset();
}

void TDataSet::Private::connect(nuvo::Connection &to) const
{
    to.open(databaseName, nuvo::Connection::Access::Read, {}, nuvo::formFolder(q));
}

void TDataSet::Private::open()
{
    std::vector<QVariantList> firstRows;
    try {
        connect(connection);
        counted = -1;
        rows.clear();
        setColumns(describe(true, firstRows));
        rows.keep(kinds_, firstRows);
    } catch (...) {
        release();
        throw;
    }
    ++opening;
    q.active_ = true;
    q.eof_ = rows.end() == 0;
    bof = true;
    if (rows.known() > 0)
        place(0);
    openDatasets().insert(&q);
    closeWithApplication();
}

/// Our connections must be gone before the application object is; a program may leave a dataset open for ever.
void TDataSet::Private::closeWithApplication()
{
    static bool arranged = false;
    if (std::exchange(arranged, true))
        return;
    qAddPostRoutine([] {
        arranged = false;
        const QSet<TDataSet *> left = openDatasets();
        for (TDataSet *dataset : left)
            dataset->d_->release();
    });
}

void TDataSet::Private::release()
{
    pointNowhere();
    rows.clear();
    connection.close();
    q.active_ = false;
    q.eof_ = true;
    bof = true;
    openDatasets().remove(&q);
}

void TDataSet::Private::loadDefinitions()
{
    if (defined)
        return;
    std::vector<QVariantList> firstRows;
    try {
        connect(connection);
        rows.clear();
        setColumns(describe(false, firstRows));
    } catch (...) {
        release();
        throw;
    }
    release();
}

/// The columns with their classes, and the first rows where they are wanted or needed for that.
std::vector<Column> TDataSet::Private::describe(bool read, std::vector<QVariantList> &firstRows)
{
    std::vector<Column> columns = q.Describe(connection);
    const auto someAreUntyped = [&] {
        return std::any_of(columns.begin(), columns.end(),
                           [](const Column &column) { return column.kind == FieldKind::Unknown; });
    };
    const bool begun = read || columns.empty() || someAreUntyped();
    if (begun)
        rows.begin();
    if (columns.empty())
        columns = rows.columns();
    if (begun && (read || someAreUntyped()))
        firstRows = rows.firstRows(int(columns.size()));
    nuvo::makeNamesUnique(columns);
    nuvo::takeKindsOfValues(columns, firstRows);
    return columns;
}

/// Fields that are there stay, so that who holds one can go on.
void TDataSet::Private::setColumns(std::vector<Column> columns)
{
    std::vector<std::unique_ptr<TField>> old = std::move(fields);
    const std::vector<Column> oldColumns = std::move(columns_);
    fields.clear();
    kinds_.clear();
    qint64 slot = 0;
    for (size_t i = 0; i < columns.size(); ++i) {
        Column &column = columns[i];
        std::unique_ptr<TField> field;
        for (size_t j = 0; j < old.size(); ++j) {
            if (!old[j] || oldColumns[j].name != column.name || oldColumns[j].declaredType != column.declaredType)
                continue;
            // A class that was found from values stays, and so does the one of a column that had none before.
            if (column.declaredType.isEmpty() &&
                (column.kind == FieldKind::Unknown ||
                 (nuvo::isNumeric(column.kind) && nuvo::isNumeric(oldColumns[j].kind))))
                column.kind = oldColumns[j].kind;
            if (oldColumns[j].kind == column.kind)
                field = std::move(old[j]);
        }
        if (column.kind == FieldKind::Unknown)
            column.kind = FieldKind::Float;
        if (!field)
            field = nuvo::makeField(column.kind, q, int(i), column);
        field->index_ = int(i);
        if (nuvo::isNumeric(column.kind)) {
            field->cursor_ = &q.cursor_;
            field->slot_ = slot++;
        }
        kinds_.push_back(column.kind);
        fields.push_back(std::move(field));
    }
    for (std::unique_ptr<TField> &field : old) {
        if (!field)
            continue;
        field->cursor_ = TField::NoCursor();
        field->slot_ = 0;
        field->index_ = -1;
        retired_.push_back(std::move(field));
    }
    columns_ = std::move(columns);
    defined = true;
    pointNowhere();
}

void TDataSet::Private::forget()
{
    defined = false;
    fields.clear();
    retired_.clear();
    columns_.clear();
    kinds_.clear();
    pointNowhere();
}

void TDataSet::Private::needFields()
{
    if (wished)
        q.NeedRecords();
    else
        loadDefinitions();
}

/// What a database failed in; the exception goes on.
void TDataSet::Private::failed()
{
    // Whatever happened to the connection, the next reading begins with a new one.
    rows.giveUp();
    connection.close();
    throw;
}

nuvo::Snapshot::Begun TDataSet::Private::begin(const nuvo::ReadPosition &position)
{
    if (!connection.isOpen())
        connect(connection);
    const nuvo::Select select = q.SelectFrom(connection, position);
    return {RowSource::open(connection, select, q.Caption()), select.keyColumns, select.limited};
}

/// Whether a row exists; it is in memory then.
bool TDataSet::Private::ensure(qint64 row)
{
    // The block of the current record may grow, and move.
    const auto follow = [this] {
        if (block)
            q.cursor_.cells = block->cellsOf(q.cursor_.row);
    };
    try {
        const bool there = rows.ensure(row);
        follow();
        return there;
    } catch (...) {
        follow();
        failed();
    }
}

/// Makes a row the current one; there is such a row.
void TDataSet::Private::place(qint64 row)
{
    if (!holds(row)) {
        if (!ensure(row))
            throw EDatabaseError(
                QStringLiteral("Record %1 of %2 is not there any more; others have changed what it reads.")
                    .arg(row + 1)
                    .arg(q.Caption()));
        block = rows.find(row);
    }
    q.cursor_.row = row;
    q.cursor_.cells = block->cellsOf(row);
    q.cursor_.stride = rows.cellsPerRow();
    q.cursor_.fastEnd = disabled > 0 ? block->endRow() : 0;
}

/// Reads on up to a row, in order; returns the row, or the last one when there are fewer.
qint64 TDataSet::Private::reach(qint64 row)
{
    while (rows.known() <= row && rows.end() < 0)
        ensure(rows.known());
    return rows.end() >= 0 ? std::min(row, rows.end() - 1) : row;
}

/// Goes to the last record of a dataset that has some.
void TDataSet::Private::readToEnd()
{
    place(reach(std::numeric_limits<qint64>::max() - 1));
}

void TDataSet::Private::moved()
{
    changed();
    if (disabled == 0)
        Q_EMIT q.Scrolled();
}

/// Lets attached views see what became of the dataset.
void TDataSet::Private::changed()
{
    if (model && disabled == 0)
        model->catchUp();
}

QVariant TDataSet::Private::valueIn(const Block &from, qint64 row, int field) const
{
    QVariant value = from.value(row, field);
    // A whole number of an integer column is kept as a double that holds it.
    if (value.typeId() == QMetaType::Double && nuvo::isInteger(kinds_[size_t(field)])) {
        const double number = value.toDouble();
        if (number == std::trunc(number) && std::fabs(number) <= 0x1p53)
            return qint64(number);
    }
    return value;
}

/// Does something else on the connection of the open dataset.
void TDataSet::Private::use(const std::function<void(const nuvo::Connection &)> &what)
{
    rows.giveUp();
    try {
        if (!connection.isOpen())
            connect(connection);
        what(connection);
    } catch (...) {
        failed();
    }
}

qint64 TDataSet::Private::count()
{
    qint64 records = 0;
    use([&](const nuvo::Connection &) {
        const nuvo::Select statement = q.CountStatement(connection);
        try {
            if (!statement.sql.isEmpty()) {
                const std::unique_ptr<RowSource> source = RowSource::open(connection, statement, q.Caption());
                if (source->next()) {
                    records = source->value(0).toLongLong();
                    return;
                }
            }
        } catch (const EDatabaseError &) {
            if (!statement.optional)
                throw;
        }
        const std::unique_ptr<RowSource> source =
            RowSource::open(connection, q.SelectFrom(connection, {}), q.Caption());
        for (records = 0; source->next();)
            ++records;
    });
    return records;
}
