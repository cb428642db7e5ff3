// SPDX-License-Identifier: MIT
#include "platform/Scan.h"

#include "platform/Errors.h"
#include "platform/Nearestname.h"
#include "platform/Numbervalue.h"
#include "platform/Querystatement.h"
#include "platform/Readerconnection.h"
#include "platform/Resultcolumns.h"
#include "platform/Rowsource.h"
#include "platform/Tableorder.h"

#include <QSqlError>
#include <QSqlRecord>

#include <algorithm>
#include <atomic>
#include <bit>
#include <cmath>
#include <utility>

namespace nuvo {

namespace {

constexpr double kNull = std::numeric_limits<double>::quiet_NaN();
constexpr quint64 kOddBits = 0x7ff8000000000001U;
const double kOdd = std::bit_cast<double>(kOddBits);

} // namespace

struct ScanBlock::Odd
{
    int row;
    int column;
    NumberReading reading;
    QVariant value;
    QString place;
};

ScanBlock::ScanBlock() = default;
ScanBlock::ScanBlock(ScanBlock &&) noexcept = default;
ScanBlock &ScanBlock::operator=(ScanBlock &&) noexcept = default;
ScanBlock::~ScanBlock() = default;

bool ScanBlock::isNull(int column, int row) const
{
    const double cell = this->column(column)[row];
    return std::isnan(cell) && std::bit_cast<quint64>(cell) != kOddBits;
}

bool ScanBlock::hasOdd() const
{
    return !odd_.empty();
}

void ScanBlock::fail(int column, int row) const
{
    for (const Odd &odd : odd_) {
        if (odd.row == row && odd.column == column)
            requireNumber(odd.reading, odd.value, odd.place);
    }
    throw EDatabaseError(QStringLiteral("Record %1 holds a number there.").arg(firstRecord_ + row));
}

void ScanBlock::keepFirst(int rows)
{
    rows_ = rows;
    std::erase_if(odd_, [rows](const Odd &odd) { return odd.row >= rows; });
}

std::pair<RowNumbers, RowNumbers> RowNumbers::halves() const
{
    const auto middle = qint64(quint64(first) + (quint64(last) - quint64(first)) / 2);
    return {{first, middle}, {middle + 1, last}};
}

class Scan::Private
{
public:
    explicit Private(ScanSource what) : source(std::move(what)) {}

    void open();
    void readOnly(RowNumbers numbers);
    bool next(ScanBlock &block);
    void close();

    const ScanSource source;
    bool inOrder = false;
    ReaderConnection connection;
    std::atomic<qint64> records{0};
    std::atomic<double> share{-1};
    std::optional<RowNumbers> numbers; // of the whole table, where its rows have them
    bool stateIsShared = false;

private:
    void openTable(Select &select);
    void openQuery(Select &select);
    void begin(const Select &select);
    void prepare(const QString &sql);
    void askForSize(const TableDescription &table);
    int columnOf(const QString &name, const std::vector<Column> &columns) const;
    QString caption() const;
    void readSqlite(ScanBlock &block);
    void readRows(ScanBlock &block);
    void put(ScanBlock &block, int row, int column, const QVariant &value);
    [[noreturn]] void failSqlite() const;

    std::unique_ptr<RowSource> rows_;
    sqlite3_stmt *statement_ = nullptr;
    std::vector<int> places_;      // of the columns in the result
    std::vector<FieldKind> kinds_; // of the columns
    QString tableSql_;             // of all rows, the row number behind the columns
    QString rowNumber_;            // its name
    double firstRowNumber_ = 0;    // of those that are read
    double rowNumbers_ = 0;        // likewise
    bool staysOpen_ = false;       // at the end of rows
    double expected_ = 0;
    bool done_ = true;
};

QString Scan::Private::caption() const
{
    return source.sql.isEmpty() ? QStringLiteral("table \"%1\"").arg(source.table) : queryCaption(source.sql);
}

int Scan::Private::columnOf(const QString &name, const std::vector<Column> &columns) const
{
    QStringList there;
    for (size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].name.compare(name, Qt::CaseInsensitive) == 0)
            return int(i);
        there.append(columns[i].name);
    }
    throw EDatabaseError(QStringLiteral("No field \"%1\" in %2%3; its fields: %4.")
                             .arg(name, caption(), perhaps(name, there), listed(there)));
}

void Scan::Private::open()
{
    close();
    records = 0;
    share = -1;
    try {
        connection.open(source.databaseName);
        places_.clear();
        kinds_.clear();
        Select select;
        if (source.sql.isEmpty())
            openTable(select);
        else
            openQuery(select);
        begin(select);
        done_ = false;
    } catch (...) {
        const bool asked = connection.isCancelled();
        close();
        if (!asked)
            throw;
    }
}

void Scan::Private::openTable(Select &select)
{
    TableOrder table;
    static_cast<TableDescription &>(table) = TableDescription::of(connection, source.table);
    if (inOrder)
        table.makeOrder(connection, caption());
    const bool byOtherThanNumber = !table.order.empty() && table.order.front().field >= 0;
    QStringList selected;
    for (const QString &name : source.columns) {
        const int column = columnOf(name, table.columns);
        places_.push_back(int(selected.size()));
        kinds_.push_back(table.columns[size_t(column)].kind);
        selected.append(table.expressions[column]);
    }
    const QString condition = filterCondition(source.filter, connection.dialect());
    QString from = table.source;
    if (condition.isEmpty() && !byOtherThanNumber) {
        askForSize(table);
        if (numbers) {
            rowNumber_ = table.rowNumber;
            selected.append(rowNumber_);
            from += QLatin1String(" NOT INDEXED");
        }
    }
    if (selected.isEmpty())
        selected.append(QStringLiteral("1"));
    select.sql = QStringLiteral("SELECT %1 FROM %2").arg(selected.join(u','), from);
    if (!condition.isEmpty())
        select.sql += QLatin1String(" WHERE ") + condition;
    tableSql_ = select.sql;
    select.sql += table.orderBy();
}

/// What the engine knows without a count: the first and the last row number, or the size at the last ANALYZE.
void Scan::Private::askForSize(const TableDescription &table)
{
    if (connection.dialect() == Dialect::Sqlite && !table.rowNumber.isEmpty() && connection.library() != nullptr) {
        // In a transaction the table stays as it is now until the scan is closed.
        connection.query(QStringLiteral("BEGIN"), {}, caption());
        QSqlQuery query = connection.query(QStringLiteral("SELECT (SELECT min(%1) FROM %2), (SELECT max(%1) FROM %2)")
                                               .arg(table.rowNumber, table.source),
                                           {}, caption());
        if (!query.next() || query.value(0).isNull())
            return;
        numbers = {query.value(0).toLongLong(), query.value(1).toLongLong()};
        firstRowNumber_ = double(numbers->first);
        rowNumbers_ = double(numbers->last) - double(numbers->first) + 1;
        query = connection.query(QStringLiteral("PRAGMA journal_mode"), {}, caption());
        stateIsShared = query.next() && query.value(0).toString() != u"wal";
    } else if (connection.dialect() == Dialect::Postgres) {
        QVariantList none;
        QSqlQuery query =
            connection.query(QStringLiteral("SELECT reltuples FROM pg_class WHERE oid = to_regclass(%1)")
                                 .arg(connection.bound(table.source, none)),
                             {}, caption());
        if (query.next())
            expected_ = query.value(0).toDouble();
    }
}

void Scan::Private::openQuery(Select &select)
{
    const ReadingStatement statement = readingStatement(source.sql, connection.dialect());
    std::vector<Column> columns = describeStatement(connection, statement);
    select = selectOf(connection, statement, source.params, caption());
    if (columns.empty()) {
        rows_ = RowSource::open(connection, select, caption());
        columns = rows_->columns();
    }
    makeNamesUnique(columns);
    for (const QString &name : source.columns) {
        places_.push_back(columnOf(name, columns));
        kinds_.push_back(columns[size_t(places_.back())].kind);
    }
}

void Scan::Private::begin(const Select &select)
{
    if (rows_)
        return;
    if (connection.library() == nullptr || !select.values.isEmpty()) {
        rows_ = RowSource::open(connection, select, caption());
        return;
    }
    prepare(select.sql);
}

void Scan::Private::prepare(const QString &sql)
{
    const QByteArray text = sql.toUtf8();
    if (connection.library()->prepare(connection.sqlite(), text.constData(), int(text.size()), &statement_,
                                      nullptr) != 0)
        failSqlite();
}

void Scan::Private::readOnly(RowNumbers rows)
{
    staysOpen_ = true;
    if (connection.library() == nullptr)
        return; // ended from another thread
    connection.library()->finalize(std::exchange(statement_, nullptr));
    firstRowNumber_ = double(rows.first);
    rowNumbers_ = double(rows.last) - double(rows.first) + 1;
    share = 0;
    prepare(
        QStringLiteral("%1 WHERE %2 >= %3 AND %2 <= %4").arg(tableSql_, rowNumber_).arg(rows.first).arg(rows.last));
    done_ = false;
}

void Scan::Private::failSqlite() const
{
    const QSqlError error(QString(), QString::fromUtf8(connection.library()->message(connection.sqlite())),
                          QSqlError::StatementError,
                          QString::number(connection.library()->errorCode(connection.sqlite())));
    connection.fail(error, caption());
}

void Scan::Private::close()
{
    if (statement_ != nullptr)
        connection.library()->finalize(std::exchange(statement_, nullptr));
    rows_.reset();
    numbers.reset();
    stateIsShared = false;
    staysOpen_ = false;
    expected_ = 0;
    done_ = true;
    connection.close();
}

void Scan::Private::put(ScanBlock &block, int row, int column, const QVariant &value)
{
    double number = kNull;
    const NumberReading reading = readNumber(value, kinds_[size_t(column)], number);
    if (reading != NumberReading::Number && reading != NumberReading::Null) {
        number = kOdd;
        block.odd_.push_back({row, column, reading, value,
                              QStringLiteral("field \"%1\" of %2, record %3")
                                  .arg(source.columns[column], caption())
                                  .arg(block.firstRecord_ + row)});
    }
    block.cells_[size_t(column) * ScanBlock::kMostRows + size_t(row)] = number;
}

void Scan::Private::readSqlite(ScanBlock &block)
{
    const Libsqlite *const library = connection.library();
    const int columns = int(places_.size());
    double rowNumber = 0;
    while (block.rows_ < ScanBlock::kMostRows) {
        const int code = library->step(statement_);
        if (code == Libsqlite::kDone) {
            done_ = true;
            break;
        }
        if (code != Libsqlite::kRow)
            failSqlite();
        const int row = block.rows_;
        for (int column = 0; column < columns; ++column) {
            const int place = places_[size_t(column)];
            const int type = library->columnType(statement_, place);
            const FieldKind kind = kinds_[size_t(column)];
            const bool date = kind == FieldKind::Date || kind == FieldKind::Time || kind == FieldKind::DateTime;
            if ((type == Libsqlite::Float || type == Libsqlite::Integer) && !date) {
                const double number = library->columnDouble(statement_, place);
                block.cells_[size_t(column) * ScanBlock::kMostRows + size_t(row)] =
                    std::isfinite(number) ? number : kNull;
                continue;
            }
            QVariant value;
            if (type == Libsqlite::Text) {
                const auto *text = reinterpret_cast<const char *>(library->columnText(statement_, place));
                value = QString::fromUtf8(text, library->columnBytes(statement_, place));
            } else if (type == Libsqlite::Blob) {
                value = QByteArray();
            } else if (type != Libsqlite::Null) {
                value = library->columnDouble(statement_, place);
            }
            put(block, row, column, value);
        }
        ++block.rows_;
    }
    if (numbers && block.rows_ > 0 && !done_) {
        rowNumber = library->columnDouble(statement_, columns);
        share = std::clamp((rowNumber - firstRowNumber_ + 1) / rowNumbers_, 0.0, 1.0);
    }
}

void Scan::Private::readRows(ScanBlock &block)
{
    while (block.rows_ < ScanBlock::kMostRows) {
        if (connection.isCancelled() || !rows_->next()) {
            if (rows_->isLost())
                throw EDatabaseError(
                    QStringLiteral("Cannot read %1: the transaction around the scan has ended.").arg(caption()));
            done_ = true;
            break;
        }
        for (int column = 0; column < int(places_.size()); ++column)
            put(block, block.rows_, column, rows_->value(places_[size_t(column)]));
        ++block.rows_;
    }
    if (expected_ > 0)
        share = std::min(1.0, double(records + block.rows_) / expected_);
}

bool Scan::Private::next(ScanBlock &block)
{
    block.rows_ = 0;
    block.odd_.clear();
    block.firstRecord_ = records + 1;
    block.cells_.resize(places_.size() * ScanBlock::kMostRows);
    if (done_ || connection.isCancelled()) {
        if (!staysOpen_ || connection.isCancelled())
            close();
        return false;
    }
    try {
        if (statement_ != nullptr)
            readSqlite(block);
        else
            readRows(block);
    } catch (...) {
        const bool asked = connection.isCancelled();
        close();
        block.rows_ = 0;
        if (!asked)
            throw;
        return false;
    }
    if (connection.isCancelled()) {
        close();
        block.rows_ = 0;
        return false;
    }
    records += block.rows_;
    if (done_) {
        share = share < 0 ? -1.0 : 1.0;
        if (!staysOpen_)
            close();
    }
    return block.rows_ > 0;
}

Scan::Scan(ScanSource source) : d_(std::make_unique<Private>(std::move(source))) {}

Scan::~Scan()
{
    d_->close();
}

void Scan::open()
{
    d_->open();
}

std::optional<RowNumbers> Scan::rowNumbers() const
{
    return d_->numbers;
}

void Scan::keepOrder()
{
    d_->inOrder = true;
}

bool Scan::isStateShared() const
{
    return d_->stateIsShared;
}

void Scan::readOnly(RowNumbers numbers)
{
    d_->readOnly(numbers);
}

void Scan::close()
{
    d_->close();
}

bool Scan::next(ScanBlock &block)
{
    return d_->next(block);
}

void Scan::cancel()
{
    d_->connection.cancel();
}

bool Scan::cancelled() const
{
    return d_->connection.isCancelled();
}

qint64 Scan::records() const
{
    return d_->records;
}

double Scan::share() const
{
    return d_->share;
}

} // namespace nuvo
