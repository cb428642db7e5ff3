// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QCoreApplication>
#include <QStringList>
#include <QTableView>

#include <limits>
#include <vector>

class QSortFilterProxyModel;

namespace nuvo {

/// What stands in a table of models or steps: words, or a number as it is shown.
struct ChoiceCell
{
    QString text;
    double number = std::numeric_limits<double>::quiet_NaN();
    bool words = true;
    QString whole{}; ///< of words that are shown shortened; empty: they are not
};

struct ChoiceRow
{
    int number = 0; ///< what the row stands for: a model, a step, a candidate
    std::vector<ChoiceCell> cells;
    bool marked = false; ///< the one that is left, or that was chosen
    bool quiet = false;  ///< one that cannot be chosen
};

struct ChoiceColumn
{
    QString title;
    QString hint;
    bool words = false;
};

class ChoiceRows : public QAbstractTableModel
{
    Q_DECLARE_TR_FUNCTIONS(ChoiceTable)

public:
    using QAbstractTableModel::QAbstractTableModel;

    void Set(std::vector<ChoiceColumn> columns, std::vector<ChoiceRow> rows);
    const ChoiceRow &RowAt(int row) const { return rows_[std::size_t(row)]; }
    const std::vector<ChoiceColumn> &Columns() const { return columns_; }
    /// -1 when there is no such row.
    int RowOf(int number) const;
    /// A cell with all digits; empty where the figure does not exist.
    QString Exact(int row, int column, QChar point) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString Hint(int row, int column) const;

    std::vector<ChoiceColumn> columns_;
    std::vector<ChoiceRow> rows_;
};

/// Such a table: sorts by a click on a heading, one row is selected, Ctrl+C copies it, or all when none is.
class ChoiceTable : public QTableView
{
    Q_OBJECT

public:
    explicit ChoiceTable(QWidget *parent = nullptr);

    /// Sorted by the first column; nothing is selected.
    void SetRows(std::vector<ChoiceColumn> columns, std::vector<ChoiceRow> rows);
    /// The number of the selected row; 0 when none is.
    int Current() const;
    /// 0, or one that is not there: nothing. Sends no signal.
    void SetCurrent(int number);

    /// The selected row, or all as they are sorted, under their headings, parted by tabs, with all digits and the
    /// decimal sign of windows.
    QString SelectionText() const;
    void Copy() const;
    /// All rows in their first order, with all digits: commas, decimal points, LF.
    QString Csv() const;

Q_SIGNALS:
    void CurrentPicked();
    /// A double click or Enter.
    void Activated(int number);

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    ChoiceRows *rows_;
    QSortFilterProxyModel *order_;
    bool quiet_ = false;
};

/// The decimal sign of windows.
QChar windowPoint();
/// A figure with so many significant digits, "infinite", or "-" where it does not exist.
ChoiceCell figureCell(double value, int digits = 6);
ChoiceCell probabilityCell(double value);
ChoiceCell countCell(int value);
ChoiceCell wordsCell(const QString &text);
/// Terms, each of them shortened in its middle where it is long; `words` go in front.
ChoiceCell termsCell(const QStringList &terms, const QString &words = {});

} // namespace nuvo
