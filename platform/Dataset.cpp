// SPDX-License-Identifier: MIT
#include "platform/Dataset.h"

#include "platform/Datasetmodel.h"
#include "platform/Datasetprivate.h"
#include "platform/Errors.h"
#include "platform/Fieldtypes.h"
#include "platform/Nearestname.h"

#include <algorithm>
#include <limits>

using nuvo::Block;

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
    // Forward in order: how many records there are is not known yet.
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
    if (d_->rows.end() >= 0)
        return d_->rows.end();
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
    const QStringList there = GetFieldNames();
    throw EDatabaseError(QStringLiteral("No field \"%1\" in %2%3; its fields: %4.")
                             .arg(name, Caption(), nuvo::perhaps(name, there), nuvo::listed(there)));
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
    d_->rows.setScanning(true);
}

void TDataSet::EnableControls()
{
    if (d_->disabled == 0 || --d_->disabled > 0)
        return;
    cursor_.fastEnd = 0;
    d_->rows.setScanning(false);
    d_->rows.giveUp();
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
    return d_->rows.known();
}

bool TDataSet::EndKnown() const
{
    return d_->rows.end() >= 0;
}

void TDataSet::ReadOn()
{
    d_->ensure(d_->rows.known());
}

QString TDataSet::TextAt(qint64 row, int field, bool keptOnly)
{
    if (!d_->holds(row) && (keptOnly ? !d_->rows.find(row) : !d_->ensure(row)))
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
    d_->connect(connection);
    use(connection);
}

qint64 TDataSet::FindKeptNumbers(const std::vector<int> &fields, const std::vector<double> &values,
                                 bool &complete) const
{
    return d_->rows.findNumbers(fields, values, complete);
}

QVariant TDataSet::KeptValue(qint64 row, int field) const
{
    const std::shared_ptr<const Block> block = d_->holds(row) ? d_->block : d_->rows.find(row);
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
