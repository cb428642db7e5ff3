// SPDX-License-Identifier: MIT
#include "select/choice/Choicetable.h"

#include "platform/Csvline.h"
#include "platform/Messages.h"
#include "present/Significant.h"
#include "present/controls/Figuretable.h"
#include "present/controls/Tablecopy.h"

#include <QFont>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>

namespace nuvo {

namespace {

/// Long lists of terms are cut there; the hint has them whole.
constexpr int WidestColumn = 48;

/// Names differ at their ends.
QString shortened(const QString &name)
{
    constexpr qsizetype Longest = 18;
    return name.size() <= Longest ? name : name.first(Longest / 2) + u'…' + name.last(Longest / 2);
}

} // namespace

QChar windowPoint()
{
    return QLocale().decimalPoint().front();
}

ChoiceCell figureCell(double value, int digits)
{
    if (std::isinf(value))
        return {value > 0 ? ChoiceRows::tr("infinite") : ChoiceRows::tr("-infinite"), value, false};
    return {significant(value, digits, windowPoint()), value, false};
}

ChoiceCell probabilityCell(double value)
{
    return {probability(value, 4, windowPoint()), value, false};
}

ChoiceCell countCell(int value)
{
    return {QString::number(value), double(value), false};
}

ChoiceCell wordsCell(const QString &text)
{
    return {withoutControls(text), std::numeric_limits<double>::quiet_NaN(), true};
}

ChoiceCell termsCell(const QStringList &terms, const QString &words)
{
    QStringList shown;
    for (const QString &term : terms)
        shown += shortened(withoutControls(term));
    ChoiceCell cell = wordsCell(words + shown.join(u", "));
    cell.whole = withoutControls(words + terms.join(u", "));
    return cell;
}

void ChoiceRows::Set(std::vector<ChoiceColumn> columns, std::vector<ChoiceRow> rows)
{
    beginResetModel();
    columns_ = std::move(columns);
    rows_ = std::move(rows);
    endResetModel();
}

int ChoiceRows::RowOf(int number) const
{
    const auto found =
        std::find_if(rows_.begin(), rows_.end(), [&](const ChoiceRow &row) { return row.number == number; });
    return found == rows_.end() ? -1 : int(found - rows_.begin());
}

QString ChoiceRows::Exact(int row, int column, QChar point) const
{
    const ChoiceCell &cell = rows_[std::size_t(row)].cells[std::size_t(column)];
    if (cell.words)
        return cell.whole.isEmpty() ? cell.text : cell.whole;
    return std::isnan(cell.number)
               ? QString()
               : QString::number(cell.number, 'g', QLocale::FloatingPointShortest).replace(u'.', point);
}

int ChoiceRows::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(rows_.size());
}

int ChoiceRows::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(columns_.size());
}

QString ChoiceRows::Hint(int row, int column) const
{
    const QString value = Exact(row, column, windowPoint());
    return QStringLiteral("%1: %2").arg(columns_[std::size_t(column)].hint,
                                        value.isEmpty() && !columns_[std::size_t(column)].words ? tr("does not exist")
                                                                                                : value);
}

QVariant ChoiceRows::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const ChoiceRow &row = rows_[std::size_t(index.row())];
    const ChoiceCell &cell = row.cells[std::size_t(index.column())];
    switch (role) {
    case Qt::DisplayRole:
        return cell.text;
    case Qt::ToolTipRole:
        // Field names are no markup.
        return QStringLiteral("<p>") + Hint(index.row(), index.column()).toHtmlEscaped() + QStringLiteral("</p>");
    case Qt::AccessibleTextRole:
        return Hint(index.row(), index.column());
    case Qt::TextAlignmentRole:
        return int((cell.words ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    case Qt::FontRole:
        if (row.quiet) {
            QFont font;
            font.setItalic(true);
            return font;
        }
        return {};
    case NumberRole:
        if (cell.words)
            return Exact(index.row(), index.column(), u'.');
        return cell.number;
    case MarkedRole:
        return row.marked;
    default:
        return {};
    }
}

QVariant ChoiceRows::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= int(columns_.size()))
        return {};
    if (role == Qt::DisplayRole)
        return columns_[std::size_t(section)].title;
    if (role == Qt::ToolTipRole)
        return columns_[std::size_t(section)].hint;
    return {};
}

ChoiceTable::ChoiceTable(QWidget *parent)
    : QTableView(parent), rows_(new ChoiceRows(this)), order_(new NumberOrder(this))
{
    order_->setSourceModel(rows_);
    setModel(order_);
    setUpFigureTable(*this);
    setSelectionMode(SingleSelection);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!quiet_)
            Q_EMIT CurrentPicked();
    });
    connect(this, &QTableView::doubleClicked, this, [this] { Q_EMIT Activated(Current()); });
}

void ChoiceTable::SetRows(std::vector<ChoiceColumn> columns, std::vector<ChoiceRow> rows)
{
    const QScopedValueRollback quiet(quiet_, true);
    rows_->Set(std::move(columns), std::move(rows));
    sortByColumn(0, Qt::AscendingOrder);
    resizeColumnsToContents();
    const int widest = WidestColumn * fontMetrics().averageCharWidth();
    for (int column = 0; column < rows_->columnCount(); ++column)
        setColumnWidth(column, std::min(columnWidth(column), widest));
}

int ChoiceTable::Current() const
{
    const QModelIndexList selected = selectionModel()->selectedRows();
    return selected.isEmpty() ? 0 : rows_->RowAt(order_->mapToSource(selected.front()).row()).number;
}

void ChoiceTable::SetCurrent(int number)
{
    const QScopedValueRollback quiet(quiet_, true);
    const int row = rows_->RowOf(number);
    if (row < 0)
        return clearSelection();
    const QModelIndex index = order_->mapFromSource(rows_->index(row, 0));
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(index);
}

QString ChoiceTable::SelectionText() const
{
    return tableText(tableOf(*this));
}

void ChoiceTable::Copy() const
{
    copyTable(tableOf(*this));
}

QString ChoiceTable::Csv() const
{
    QStringList cells;
    for (const ChoiceColumn &column : rows_->Columns())
        cells += column.title;
    QString text = csvLine(cells) + u'\n';
    for (int row = 0; row < rows_->rowCount(); ++row) {
        cells.clear();
        for (int column = 0; column < rows_->columnCount(); ++column)
            cells += rows_->Exact(row, column, u'.');
        text += csvLine(cells) + u'\n';
    }
    return text;
}

bool ChoiceTable::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent *>(event)->matches(QKeySequence::Copy)) {
        event->accept(); // a window around it may have the key for itself
        return true;
    }
    return QTableView::event(event);
}

void ChoiceTable::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy))
        return Copy();
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && Current() != 0) {
        Q_EMIT Activated(Current());
        return;
    }
    QTableView::keyPressEvent(event);
}

} // namespace nuvo
