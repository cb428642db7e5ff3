#include "platform/Dataset.h"

#include "platform/Connection.h"
#include "platform/Datasetmodel.h"
#include "platform/Errors.h"
#include "platform/Fieldtypes.h"
#include "platform/Records.h"
#include "platform/Rowsource.h"

#include <QCoreApplication>
#include <QSet>
#include <QSqlField>
#include <QSqlRecord>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

using nuvo::Block;
using nuvo::Column;
using nuvo::FieldKind;
using nuvo::RecordStore;
using nuvo::RowSource;

/// The open dataset: its connection, the statement under way, the rows read.
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
    void giveUp();
    void moved();
    void changed();
    void use(const std::function<void(const nuvo::Connection &)> &what);
    qint64 count();
    bool holds(qint64 row) const { return block && block->firstRow() <= row && row < block->endRow(); }
    QVariant valueIn(const Block &from, qint64 row, int field) const;

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
    nuvo::RecordLimits limits;
    std::vector<std::unique_ptr<TField>> fields;
    qint64 known = 0; // rows known to exist
    qint64 end = -1;  // their number once the end was reached
    qint64 counted = -1;

    std::unique_ptr<RecordStore> store;
    std::shared_ptr<const Block> block; // of the current record

    std::unique_ptr<nuvo::DatasetModel> model;

private:
    void start(qint64 from);
    qint64 startFor(qint64 row) const;
    bool readChunk(qint64 wanted);
    void saveAnchor();
    void rowsWereRead(qint64 first);
    std::vector<Column> describeAndStart(bool read, std::vector<QVariantList> &firstRows);
    void setColumns(std::vector<Column> columns);
    void pointNowhere();
    [[noreturn]] void failed();
    static void closeWithApplication();

    std::vector<Column> columns_; // as declared
    std::vector<FieldKind> kinds_;
    std::vector<std::unique_ptr<TField>> retired_; // fields of columns that are gone; somebody may still hold them
    std::vector<double> nullRow_;

    std::unique_ptr<RowSource> source_;
    std::vector<int> keyColumns_;
    qint64 sourceRow_ = 0; // the row that the source gives next
    qint64 sourceEnd_ = 0; // where its own limit ends it
    bool onRow_ = false;   // whether the source stands on a row
    qint64 chunk_ = 0;
    qint64 rowBytes_ = 1; // of the row read last
};

namespace {

QSet<TDataSet *> &openDatasets()
{
    static QSet<TDataSet *> datasets;
    return datasets;
}

/// Fields take their class from what a driver says where nothing is declared.
Column columnOf(const QSqlField &field, nuvo::Dialect dialect)
{
    Column column;
    column.name = field.name();
    column.kind = nuvo::kindOfMetaType(field.metaType());
    if (dialect == nuvo::Dialect::Postgres) {
        column.declaredType = nuvo::postgresTypeName(field.typeID());
        if (column.declaredType == u"bit")
            column.declaredType += QStringLiteral("(%1)").arg(field.length());
        if (!column.declaredType.isEmpty())
            column.kind = nuvo::kindOfDeclaredType(column.declaredType);
    }
    return column;
}

FieldKind kindOfValues(const std::vector<QVariantList> &rows, int column)
{
    FieldKind kind = FieldKind::Unknown;
    for (const QVariantList &row : rows) {
        const QVariant &value = row[column];
        if (value.isNull())
            continue;
        const FieldKind own = nuvo::kindOfMetaType(value.metaType());
        if (!nuvo::isNumeric(own))
            return own;
        if (kind != FieldKind::Float)
            kind = own == FieldKind::Float ? FieldKind::Float : FieldKind::Largeint;
    }
    return kind;
}

/// NAME, NAME_1, NAME_2: every name once, upper and lower case alike.
void makeNamesUnique(std::vector<Column> &columns)
{
    QSet<QString> taken;
    for (const Column &column : columns)
        taken.insert(column.name.toLower());
    QSet<QString> used;
    for (Column &column : columns) {
        if (column.name.isEmpty())
            column.name = QStringLiteral("COLUMN");
        QString name = column.name;
        for (int i = 1; used.contains(name.toLower()) || (i > 1 && taken.contains(name.toLower())); ++i)
            name = QStringLiteral("%1_%2").arg(column.name).arg(i);
        column.name = name;
        used.insert(name.toLower());
    }
}

} // namespace

TDataSet::Private::Private(TDataSet &dataset) : q(dataset)
{
    pointNowhere();
}

TDataSet::Private::~Private()
{
    release();
}

/// The record that stands for none: every number in it is a null.
void TDataSet::Private::pointNowhere()
{
    nullRow_.assign(std::max<size_t>(1, fields.size()), std::numeric_limits<double>::quiet_NaN());
    q.cursor_ = {nullRow_.data(), 0, 0, 0};
    block.reset();
}

void TDataSet::Private::open()
{
    std::vector<QVariantList> firstRows;
    try {
        connection.open(databaseName);
        end = -1;
        counted = -1;
        known = 0;
        chunk_ = limits.firstChunk;
        store.reset();
        const std::vector<Column> columns = describeAndStart(true, firstRows);
        setColumns(columns);
        store = std::make_unique<RecordStore>(nuvo::RowLayout(kinds_), limits);
        for (const QVariantList &row : firstRows)
            store->blockFor(known++).append([&](int column) -> const QVariant & { return row[column]; });
        if (!source_)
            end = known;
        else
            saveAnchor();
        chunk_ = std::min(2 * chunk_, limits.lastChunk);
        if (disabled == 0)
            giveUp();
    } catch (...) {
        release();
        throw;
    }
    ++opening;
    q.active_ = true;
    q.eof_ = end == 0;
    bof = true;
    if (known > 0)
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
    source_.reset();
    store.reset();
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
        connection.open(databaseName);
        chunk_ = limits.firstChunk;
        setColumns(describeAndStart(false, firstRows));
    } catch (...) {
        release();
        throw;
    }
    release();
}

/// The columns with their classes, and the first rows where they are wanted or needed for that. The source stays open
/// behind these rows; it is gone when they are all there are.
std::vector<Column> TDataSet::Private::describeAndStart(bool read, std::vector<QVariantList> &firstRows)
{
    std::vector<Column> columns = q.Describe(connection);
    const auto untyped = [](const Column &column) { return column.kind == FieldKind::Unknown; };
    if (read || columns.empty() || std::any_of(columns.begin(), columns.end(), untyped)) {
        start(0);
        if (columns.empty()) {
            const QSqlRecord record = source_->columns();
            for (int i = 0; i < record.count(); ++i)
                columns.push_back(columnOf(record.field(i), connection.dialect()));
        }
    }
    if (source_ && (read || std::any_of(columns.begin(), columns.end(), untyped))) {
        qint64 bytes = 0;
        while (qint64(firstRows.size()) < chunk_ && bytes < limits.windowBytes / 2) {
            if (!source_->next()) {
                source_.reset();
                break;
            }
            onRow_ = true;
            ++sourceRow_;
            QVariantList row;
            rowBytes_ = 0;
            for (int i = 0; i < int(columns.size()); ++i) {
                row.append(source_->value(i));
                rowBytes_ += nuvo::bytesOf(row.last());
            }
            firstRows.push_back(row);
            source_->setRowBytes(rowBytes_);
            bytes += rowBytes_;
        }
    }
    makeNamesUnique(columns);
    for (int i = 0; i < int(columns.size()); ++i) {
        if (columns[size_t(i)].kind == FieldKind::Unknown)
            columns[size_t(i)].kind = kindOfValues(firstRows, i);
    }
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
    source_.reset();
    connection.close();
    throw;
}

/// Begins a statement that gives the row `from` next.
void TDataSet::Private::start(qint64 from)
{
    source_.reset();
    onRow_ = false;
    try {
        if (!connection.isOpen())
            connection.open(databaseName);
        nuvo::ReadPosition position;
        position.row = from;
        position.limit = disabled > 0 ? -1 : chunk_;
        if (store)
            std::tie(position.afterRow, position.after) = store->anchorAtOrBefore(from);
        const nuvo::Select select = q.SelectFrom(connection, position);
        source_ = RowSource::open(connection, select, q.Caption());
        source_->setRowBytes(rowBytes_);
        keyColumns_ = select.keyColumns;
        sourceRow_ = from;
        sourceEnd_ = select.limited ? from + position.limit : std::numeric_limits<qint64>::max();
    } catch (...) {
        failed();
    }
}

void TDataSet::Private::saveAnchor()
{
    if (!source_ || !onRow_ || keyColumns_.empty())
        return;
    QVariantList key;
    for (const int column : keyColumns_) {
        const QVariant value = source_->value(column);
        // Reading cannot begin behind a null, nor behind a text that did not come through as it is stored.
        if (value.isNull() ||
            (value.typeId() == QMetaType::QString && value.toString().contains(QChar::ReplacementCharacter)))
            return;
        key.append(value);
    }
    store->setAnchor(sourceRow_, key);
}

void TDataSet::Private::giveUp()
{
    saveAnchor();
    source_.reset();
    onRow_ = false;
}

/// Where to begin so that a row gets into memory: at the source, behind the rows kept, or at a place before the row
/// from which rows are read again.
qint64 TDataSet::Private::startFor(qint64 row) const
{
    const qint64 reach = store->limits().windowRows / 2;
    const auto near = [&](qint64 from) { return from <= row && row - from <= reach; };
    if (source_ && near(sourceRow_))
        return sourceRow_;
    if (store->headOpen() && near(store->headEnd()))
        return store->headEnd();
    if (store->windowEnd() > store->headEnd() && near(store->windowEnd()))
        return store->windowEnd();
    if (row >= known)
        return row; // nobody was there yet, and nobody asked for what lies before it
    const qint64 anchor = store->anchorAtOrBefore(row).first;
    if (anchor > 0 && near(anchor))
        return anchor;
    return std::max(store->headOpen() ? 0 : store->headEnd(), row - reach / 2);
}

bool TDataSet::Private::ensure(qint64 row)
{
    if (row < 0)
        return false;
    while (!(end >= 0 && row >= end)) {
        if (store->find(row))
            return true;
        const qint64 from = startFor(row);
        if (!source_ || sourceRow_ != from)
            start(from);
        if (!readChunk(row - from + 1))
            return false;
    }
    return false;
}

/// Reads at least so many rows if there are any, and on to the end of the chunk while they are not too wide; false
/// when there was none.
bool TDataSet::Private::readChunk(qint64 wanted)
{
    const qint64 first = sourceRow_;
    const qint64 chunk = disabled > 0 ? store->limits().scanChunk : chunk_;
    const qint64 until = std::min({first + std::max(wanted, chunk), sourceEnd_, end >= 0 ? end : sourceEnd_});
    qint64 bytesLeft = store->limits().windowBytes / 2; // more, and the rows wanted would be gone again
    try {
        Block *into = nullptr;
        while (sourceRow_ < until && (sourceRow_ < first + wanted || bytesLeft > 0)) {
            if (!source_->next()) {
                const bool lost = source_->isLost();
                source_.reset();
                onRow_ = false;
                if (lost)
                    return true; // begun again at the row that is missing
                // Behind a row that is there, this is the end; behind a gap it says only that the rows became fewer.
                if (sourceRow_ == known || sourceRow_ > first || store->find(sourceRow_ - 1))
                    end = sourceRow_;
                break;
            }
            if (into == nullptr)
                into = &store->blockFor(sourceRow_);
            const qint64 bytesBefore = into->bytes();
            into->append([&](int column) { return source_->value(column); });
            onRow_ = true;
            ++sourceRow_;
            rowBytes_ = into->bytes() - bytesBefore;
            source_->setRowBytes(rowBytes_);
            bytesLeft -= rowBytes_;
            if (store->isFull(*into)) {
                saveAnchor();
                into = nullptr;
            }
        }
    } catch (...) {
        rowsWereRead(first);
        failed();
    }
    rowsWereRead(first);
    if (disabled == 0) {
        giveUp();
        chunk_ = std::min(2 * chunk_, store->limits().lastChunk);
    }
    return sourceRow_ > first;
}

/// After reading from row `first` on: the block of the current record may have grown, and moved.
void TDataSet::Private::rowsWereRead(qint64 first)
{
    // A source that began behind the end says nothing of the rows before it.
    if (sourceRow_ > first)
        known = std::max(known, sourceRow_);
    if (block)
        q.cursor_.cells = block->cellsOf(q.cursor_.row);
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
        block = store->find(row);
    }
    q.cursor_.row = row;
    q.cursor_.cells = block->cellsOf(row);
    q.cursor_.stride = store->layout().cells;
    q.cursor_.fastEnd = disabled > 0 ? block->endRow() : 0;
}

/// Reads on up to a row, in order; returns the row, or the last one when there are fewer.
qint64 TDataSet::Private::reach(qint64 row)
{
    while (known <= row && end < 0)
        ensure(known);
    return end >= 0 ? std::min(row, end - 1) : row;
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
    giveUp();
    try {
        if (!connection.isOpen())
            connection.open(databaseName);
        what(connection);
    } catch (...) {
        failed();
    }
}

qint64 TDataSet::Private::count()
{
    qint64 rows = 0;
    use([&](const nuvo::Connection &) {
        const nuvo::Select statement = q.CountStatement(connection);
        try {
            if (!statement.sql.isEmpty()) {
                const std::unique_ptr<RowSource> source = RowSource::open(connection, statement, q.Caption());
                if (source->next()) {
                    rows = source->value(0).toLongLong();
                    return;
                }
            }
        } catch (const EDatabaseError &) {
            if (!statement.optional)
                throw;
        }
        const std::unique_ptr<RowSource> source =
            RowSource::open(connection, q.SelectFrom(connection, {}), q.Caption());
        for (rows = 0; source->next();)
            ++rows;
    });
    return rows;
}

TDataSet::TDataSet(QWidget *owner) : TComponent(owner), d_(std::make_unique<Private>(*this)) {}

TDataSet::~TDataSet()
{
    // Views let go of the model while there still is something behind it.
    d_->model.reset();
}

QString TDataSet::DatabaseName() const
{
    return d_->databaseName;
}

void TDataSet::SetDatabaseName(const QString &name)
{
    if (name == d_->databaseName)
        return;
    Forget();
    d_->databaseName = name;
}

bool TDataSet::Active() const
{
    return active_;
}

void TDataSet::SetActive(bool active)
{
    if (active)
        Open();
    else
        Close();
}

void TDataSet::Open()
{
    if (active_)
        return;
    d_->open();
    d_->wished = true;
    d_->changed();
    Q_EMIT Opened();
}

void TDataSet::Close()
{
    CheckChange();
    d_->wished = false;
    if (!active_)
        return;
    d_->release();
    d_->changed();
    Q_EMIT Closed();
}

void TDataSet::Refresh()
{
    CheckChange();
    NeedRecords();
    const qint64 row = cursor_.row;
    try {
        d_->open();
        if (d_->ensure(row))
            d_->place(row);
        else if (!IsEmpty())
            d_->readToEnd();
    } catch (...) {
        d_->release();
        d_->changed();
        Q_EMIT Closed();
        throw;
    }
    d_->moved();
}

bool TDataSet::ActiveWished() const
{
    return d_->wished;
}

void TDataSet::WishActive(bool active)
{
    if (!active)
        return Close();
    d_->wished = true;
    if (d_->model && !active_)
        d_->model->openSoon();
}

void TDataSet::NeedRecords()
{
    if (active_)
        return;
    if (!d_->wished)
        throw EDatabaseError(QStringLiteral("%1 is closed.").arg(nuvo::sentenceStart(Caption())));
    Open();
}

void TDataSet::First()
{
    NeedRecords();
    d_->bof = true;
    eof_ = IsEmpty();
    if (eof_)
        return;
    d_->place(0);
    d_->moved();
}

void TDataSet::Last()
{
    NeedRecords();
    if (IsEmpty())
        return;
    d_->readToEnd();
    d_->bof = false;
    eof_ = true;
    d_->moved();
}

void TDataSet::NextSlow()
{
    NeedRecords();
    if (IsEmpty())
        return;
    const qint64 row = cursor_.row;
    const bool there = d_->ensure(row + 1);
    d_->bof = false;
    eof_ = !there;
    if (!there)
        return;
    d_->place(row + 1);
    d_->moved();
}

void TDataSet::Prior()
{
    MoveBy(-1);
}

qint64 TDataSet::MoveBy(qint64 distance)
{
    NeedRecords();
    if (IsEmpty() || distance == 0)
        return 0;
    const qint64 from = cursor_.row;
    constexpr qint64 kMost = std::numeric_limits<qint64>::max();
    const qint64 goal = distance > kMost - from ? kMost : from + distance;
    // Forward in order: nobody knows yet how many records there are.
    const qint64 to = distance < 0 ? std::max<qint64>(0, goal) : d_->reach(goal);
    d_->place(to);
    d_->bof = goal < 0;
    eof_ = distance > 0 && to - from < distance;
    if (to != from)
        d_->moved();
    return to - from;
}

bool TDataSet::MoveToRow(qint64 row)
{
    NeedRecords();
    if (!d_->ensure(row))
        return false;
    const qint64 from = cursor_.row;
    d_->place(row);
    d_->bof = false;
    eof_ = false;
    if (from != row)
        d_->moved();
    return true;
}

bool TDataSet::Bof() const
{
    const_cast<TDataSet *>(this)->NeedRecords();
    return d_->bof && cursor_.row == 0; // Next() may have gone on without a word
}

bool TDataSet::EofSlow() const
{
    const_cast<TDataSet *>(this)->NeedRecords();
    return eof_;
}

bool TDataSet::IsEmpty() const
{
    const_cast<TDataSet *>(this)->NeedRecords();
    return !d_->block;
}

qint64 TDataSet::RecNo() const
{
    return IsEmpty() ? 0 : cursor_.row + 1;
}

qint64 TDataSet::RecordCount()
{
    NeedRecords();
    if (d_->end >= 0)
        return d_->end;
    if (d_->counted < 0)
        d_->counted = d_->count();
    return d_->counted;
}

int TDataSet::FieldCount()
{
    d_->needFields();
    return int(d_->fields.size());
}

TField &TDataSet::Fields(int index)
{
    if (index < 0 || index >= FieldCount())
        throw EDatabaseError(QStringLiteral("No field number %1 in %2; it has %3 fields.")
                                 .arg(index)
                                 .arg(Caption())
                                 .arg(d_->fields.size()));
    return *d_->fields[size_t(index)];
}

TField *TDataSet::FindField(const QString &name)
{
    d_->needFields();
    for (const std::unique_ptr<TField> &field : d_->fields) {
        if (field->FieldName().compare(name, Qt::CaseInsensitive) == 0)
            return field.get();
    }
    return nullptr;
}

TField &TDataSet::FieldByName(const QString &name)
{
    if (TField *field = FindField(name))
        return *field;
    throw EDatabaseError(
        QStringLiteral("No field \"%1\" in %2; its fields: %3.").arg(name, Caption(), nuvo::listed(GetFieldNames())));
}

QStringList TDataSet::GetFieldNames()
{
    d_->needFields();
    QStringList names;
    for (const std::unique_ptr<TField> &field : d_->fields)
        names.append(field->FieldName());
    return names;
}

void TDataSet::DisableControls()
{
    if (d_->disabled++ > 0)
        return;
    d_->openingWhenDisabled = d_->opening;
    d_->rowWhenDisabled = cursor_.row;
}

void TDataSet::EnableControls()
{
    if (d_->disabled == 0 || --d_->disabled > 0)
        return;
    cursor_.fastEnd = 0;
    d_->giveUp();
    if (active_ && (d_->openingWhenDisabled != d_->opening || d_->rowWhenDisabled != cursor_.row))
        d_->moved();
    else
        d_->changed();
}

bool TDataSet::ControlsDisabled() const
{
    return d_->disabled > 0;
}

QAbstractItemModel *TDataSet::Model()
{
    if (!d_->model)
        d_->model = std::make_unique<nuvo::DatasetModel>(*this);
    return d_->model.get();
}

QItemSelectionModel *TDataSet::SelectionModel()
{
    Model();
    return d_->model->selection();
}

qint64 TDataSet::Opening() const
{
    return d_->opening;
}

int TDataSet::ColumnCount() const
{
    return int(d_->fields.size());
}

const TField &TDataSet::ColumnField(int index) const
{
    return *d_->fields[size_t(index)];
}

qint64 TDataSet::KnownRows() const
{
    return d_->known;
}

bool TDataSet::EndKnown() const
{
    return d_->end >= 0;
}

void TDataSet::ReadOn()
{
    d_->ensure(d_->known);
}

QString TDataSet::TextAt(qint64 row, int field, bool keptOnly)
{
    if (!d_->holds(row) && (keptOnly ? !d_->store->find(row) : !d_->ensure(row)))
        return {};
    return nuvo::textFromValue(KeptValue(row, field));
}

bool TDataSet::Locate(const QStringList &fields, const QVariantList &values)
{
    NeedRecords();
    if (fields.size() != values.size())
        throw EDatabaseError(QStringLiteral("Locate in %1 was given %2 fields and %3 values.")
                                 .arg(Caption())
                                 .arg(fields.size())
                                 .arg(values.size()));
    std::vector<int> columns;
    for (const QString &name : fields)
        columns.push_back(FieldByName(name).Index());
    const nuvo::ControlsOff quiet(*this);
    for (qint64 row = 0; d_->ensure(row); ++row) {
        bool equal = true;
        for (size_t i = 0; equal && i < columns.size(); ++i)
            equal = nuvo::sameValue(KeptValue(row, columns[i]), values[qsizetype(i)]);
        if (equal)
            return MoveToRow(row);
    }
    return false;
}

void TDataSet::Forget()
{
    CheckChange();
    if (active_)
        Close();
    d_->forget();
}

void TDataSet::WithConnection(const std::function<void(const nuvo::Connection &)> &use)
{
    if (active_) {
        d_->use(use);
        return;
    }
    nuvo::Connection connection;
    connection.open(d_->databaseName);
    use(connection);
}

qint64 TDataSet::FindKeptNumbers(const std::vector<int> &fields, const std::vector<double> &values,
                                 bool &complete) const
{
    complete = d_->end == d_->store->headEnd();
    return d_->store->findNumbers(fields, values);
}

QVariant TDataSet::KeptValue(qint64 row, int field) const
{
    const std::shared_ptr<const Block> block = d_->holds(row) ? d_->block : d_->store->find(row);
    return d_->valueIn(*block, row, field);
}

QVariant TDataSet::FieldValue(const TField &field)
{
    NeedRecords();
    const int index = field.Index();
    if (index < 0 || index >= int(d_->fields.size()))
        throw EDatabaseError(QStringLiteral("Field \"%1\" is no longer in %2.").arg(field.FieldName(), Caption()));
    return d_->block ? d_->valueIn(*d_->block, cursor_.row, index) : QVariant();
}

void nuvo::setRecordLimits(TDataSet &dataset, const RecordLimits &limits)
{
    dataset.d_->limits = limits;
}
