#pragma once

#include "platform/Component.h"
#include "platform/Fields.h"

#include <QStringList>
#include <QVariantList>

#include <memory>

class QAbstractItemModel;
class QItemSelectionModel;

/// A set of records with a cursor: what TTable and TQuery have in common.
///
/// A dataset only reads. Its rows are a snapshot from Open() or Refresh(), as far as they are kept: rows that were
/// visited stay in memory up to a bound and are read again beyond it. Rows are read in chunks and never further than
/// somebody walked; between two scans no statement stays open, so that other programs can write.
///
/// Used on the thread that made it. Every operation that touches the database throws EDatabaseError with one sentence
/// that says what was asked and what is there; the dataset stays usable and can be opened again.
class NUVO_EXPORT TDataSet : public TComponent
{
    Q_OBJECT
    Q_PROPERTY(bool Active READ ActiveWished WRITE WishActive)
    Q_PROPERTY(QString DatabaseName READ DatabaseName WRITE SetDatabaseName)

public:
    explicit TDataSet(QWidget *owner = nullptr);
    ~TDataSet() override;

    /// A registered QSqlDatabase connection, the path of an SQLite file, or a URL: postgresql://user@host:port/name,
    /// mysql://…, odbc:DSN. A file that is not there is an error when the dataset opens and is not created. Setting it
    /// closes the dataset.
    QString DatabaseName() const;
    void SetDatabaseName(const QString &name);

    bool Active() const;
    /// Opens or closes.
    void SetActive(bool active);
    /// Runs the statement and stands on the first record; on an open dataset nothing happens.
    void Open();
    void Close();
    /// Reads anew and keeps the record number where there still is such a record.
    void Refresh();

    /// What the property Active of a form says. A form's properties come in any order, so the wish is carried out
    /// when a record or a field is first needed.
    bool ActiveWished() const;
    void WishActive(bool active);

    void First();
    /// Reads to the end.
    void Last();
    /// Moves to the next record. On the last one the position stays and Eof() becomes true; an empty dataset is at
    /// its end as soon as it is open. When fetching fails the position is unchanged.
    void Next();
    void Prior();
    /// Moves by so many records, as far as there are any; returns how many it moved.
    qint64 MoveBy(qint64 distance);
    bool Bof() const;
    bool Eof() const;
    bool IsEmpty() const;
    /// Number of the current record from 1; 0 on an empty dataset.
    qint64 RecNo() const;
    /// The engine's count of all records, filter included, asked once per opening (not asked when the end was reached).
    qint64 RecordCount();

    int FieldCount();
    TField &Fields(int index);
    /// The field of that name, upper and lower case alike. Loads field definitions without opening where needed.
    /// \throws EDatabaseError that lists the field names there are.
    TField &FieldByName(const QString &name);
    /// The same; nullptr when there is none.
    TField *FindField(const QString &name);
    QStringList GetFieldNames();

    /// While disabled, attached views neither follow nor ask. Calls nest. A scan between the two keeps its statement
    /// open from chunk to chunk and gives it up at the last EnableControls().
    void DisableControls();
    void EnableControls();
    bool ControlsDisabled() const;

    /// Moves to the first record whose fields have these values; false and no move when there is none.
    bool Locate(const QStringList &fields, const QVariantList &values);

    /// A model and a selection for any Qt view: the view's current row and the cursor follow each other.
    QAbstractItemModel *Model();
    QItemSelectionModel *SelectionModel();

    /// The name to use in messages: table "T", query "first line of the SQL text".
    virtual QString Caption() const = 0;

Q_SIGNALS:
    void Opened();
    void Closed();
    void Scrolled();
};
