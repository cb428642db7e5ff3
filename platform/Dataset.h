// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Component.h"
#include "platform/Fields.h"

#include <QStringList>
#include <QVariantList>

#include <functional>
#include <memory>
#include <vector>

class QAbstractItemModel;
class QItemSelectionModel;

class TDataSet;

namespace nuvo {
class Connection;
class DatasetModel;
struct Column;
struct DatasetTestAccess;
struct ReadPosition;
struct ScanSource;
struct Select;
} // namespace nuvo

/// A set of records with a cursor: what TTable and TQuery have in common.
///
/// A dataset only reads. Its rows are a snapshot from Open() or Refresh(), as far as they are kept: rows that were
/// visited stay in memory up to a bound and are read again beyond it. Rows are read in chunks and never further than
/// the cursor went; between two scans no statement stays open, so that other programs can write. What a function in a
/// statement writes on a PostgreSQL server is rolled back.
///
/// Used on the thread that made it. Every operation that touches the database throws EDatabaseError with one sentence
/// that says what was asked and what is there; the dataset stays usable and can be opened again.
class NUVO_EXPORT TDataSet : public TComponent
{
    Q_OBJECT
    Q_PROPERTY(bool Active READ ActiveWished WRITE WishActive)
    Q_PROPERTY(QString DatabaseName READ DatabaseName WRITE SetDatabaseName)

public:
    /// Closed; the owner deletes it.
    explicit TDataSet(QWidget *owner = nullptr);
    ~TDataSet() override;

    /// A registered QSqlDatabase connection, the path of an SQLite file, or a URL:
    /// `postgresql://user@host:port/name`, `mysql://…`, `odbc:DSN`. A file that is not there is an error when the
    /// dataset opens and is not created. A server's URL may set ?connect_timeout=S&read_timeout=S, in seconds: how
    /// long to wait for a connection (5), and for an answer (for ever). It holds no password. A relative path: see
    /// Formfolder.h. Setting it closes the dataset.
    QString DatabaseName() const;
    /// Closes the dataset.
    void SetDatabaseName(const QString &name);

    /// Whether the dataset is open.
    bool Active() const;
    /// Opens or closes.
    void SetActive(bool active);
    /// Runs the statement and stands on the first record; on an open dataset nothing happens.
    void Open();
    /// Gives up the rows; the wish to be active, too.
    void Close();
    /// Reads anew and keeps the record number where there still is such a record.
    void Refresh();

    /// What the property Active of a form says. A form's properties come in any order, so the wish is carried out
    /// when a record or a field is first needed.
    bool ActiveWished() const;
    /// False closes an open dataset.
    void WishActive(bool active);

    /// Moves to the first record.
    void First();
    /// Reads to the end.
    void Last();
    /// Moves to the next record. On the last one the position stays and Eof() becomes true; an empty dataset is at
    /// its end as soon as it is open. When fetching fails the position is unchanged.
    void Next()
    {
        if (cursor_.row + 1 < cursor_.fastEnd) {
            ++cursor_.row;
            cursor_.cells += cursor_.stride;
        } else {
            NextSlow();
        }
    }
    /// Moves to the record before; on the first one the position stays and Bof() becomes true.
    void Prior();
    /// Moves by so many records, as far as there are any; returns how many it moved.
    qint64 MoveBy(qint64 distance);
    /// Whether the last move went against the beginning; true after Open() and First() as well.
    bool Bof() const;
    /// Whether the last move went against the end; true on an empty dataset.
    bool Eof() const { return active_ ? eof_ : EofSlow(); }
    /// Whether there is no record.
    bool IsEmpty() const;
    /// Number of the current record from 1; 0 on an empty dataset.
    qint64 RecNo() const;
    /// The engine's count of all records, filter included, asked once per opening (not asked when the end was
    /// reached).
    qint64 RecordCount();
    /// Counts the times that the dataset was opened or read anew: between two moments with the same number at which
    /// it is Active() the rows are one snapshot.
    qint64 Opening() const;

    /// The number of fields; loads their definitions where needed, without opening.
    int FieldCount();
    /// Field by position from 0. \throws EDatabaseError outside.
    TField &Fields(int index);
    /// The field of that name, upper and lower case alike. Loads field definitions without opening where needed.
    /// \throws EDatabaseError that lists the field names there are.
    TField &FieldByName(const QString &name);
    /// The same; nullptr when there is none.
    TField *FindField(const QString &name);
    /// In the order of the fields; loads their definitions where needed, without opening.
    QStringList GetFieldNames();

    /// While disabled, attached views neither follow nor ask. Calls nest. A scan between the two keeps its statement
    /// open from chunk to chunk and gives it up at the last EnableControls().
    void DisableControls();
    /// Ends one DisableControls(); with the last one the views follow again.
    void EnableControls();
    /// Whether views are kept from following.
    bool ControlsDisabled() const;

    /// Moves to the first record whose fields have these values; false and no move when there is none.
    bool Locate(const QStringList &fields, const QVariantList &values);

    /// A model and a selection for any Qt view: the view's current row and the cursor follow each other.
    QAbstractItemModel *Model();
    /// The selection that goes with Model().
    QItemSelectionModel *SelectionModel();

    /// The name to use in messages: table "T", query "first line of the SQL text".
    virtual QString Caption() const = 0;
    /// The records as a scan of its own reads them (platform/Scan.h), without its columns.
    virtual nuvo::ScanSource Source() const = 0;

Q_SIGNALS:
    /// The dataset was opened.
    void Opened();
    /// The dataset was closed.
    void Closed();
    /// The current record is another one; not sent while controls are disabled.
    void Scrolled();

protected:
    /// Called before the dataset closes, reads anew or forgets its definitions; throws EDatabaseError to refuse.
    virtual void CheckChange() const {}

    // What a kind of dataset says about itself. The connection is open; errors are thrown as EDatabaseError.

    /// The columns in the order of the statement's result, those that it adds for its own use left out; none where
    /// the statement itself has to tell.
    virtual std::vector<nuvo::Column> Describe(const nuvo::Connection &connection) = 0;
    /// The statement that reads from a position on; called after Describe().
    virtual nuvo::Select SelectFrom(const nuvo::Connection &connection, const nuvo::ReadPosition &position) = 0;
    /// The statement whose only value is the number of records; empty where that takes reading them.
    virtual nuvo::Select CountStatement(const nuvo::Connection &connection) = 0;

    /// Closes an open dataset and forgets the field definitions: what they came from has changed. A wish to be active
    /// that was not carried out yet stays.
    void Forget();
    /// Opens where that is wished. \throws EDatabaseError on a dataset that is closed and not wished to be open.
    void NeedRecords();
    /// Calls with an open connection to the database, the dataset's own where it is open, else one for this call.
    void WithConnection(const std::function<void(const nuvo::Connection &)> &use);
    /// Moves to a record that exists, by number from 0; false and no move when there is no such record.
    bool MoveToRow(qint64 row);
    /// The first of the rows kept from the beginning on whose numeric fields have these values; -1 when there is
    /// none. complete tells whether the rows kept are all records.
    qint64 FindKeptNumbers(const std::vector<int> &fields, const std::vector<double> &values, bool &complete) const;
    /// Value of a field in a row that is kept.
    QVariant KeptValue(qint64 row, int field) const;

private:
    class Private;
    friend class TField;
    friend class nuvo::DatasetModel;
    friend struct nuvo::DatasetTestAccess; // defined by the tests alone

    // What the model asks.
    int ColumnCount() const;
    const TField &ColumnField(int index) const;
    qint64 KnownRows() const;
    bool EndKnown() const;
    /// Reads on behind the rows known, as far as a chunk goes.
    void ReadOn();
    /// What a view shows of a field; empty where the row is not in memory and keptOnly is set, and where there is
    /// none.
    QString TextAt(qint64 row, int field, bool keptOnly);

    bool EofSlow() const;
    void NextSlow();
    QVariant FieldValue(const TField &field);

    nuvo::RecordCursor cursor_;
    bool active_ = false;
    bool eof_ = true;
    std::unique_ptr<Private> d_;
};

namespace nuvo {

/// Keeps a dataset's controls disabled, also when an error passes through.
class ControlsOff
{
public:
    explicit ControlsOff(TDataSet &dataset) : dataset_(dataset) { dataset_.DisableControls(); }
    ControlsOff(const ControlsOff &) = delete;
    ControlsOff &operator=(const ControlsOff &) = delete;
    // What a slot of its signals throws ends the program, as Qt has it.
    ~ControlsOff() { dataset_.EnableControls(); } // NOLINT(bugprone-exception-escape)

private:
    TDataSet &dataset_;
};

} // namespace nuvo
