// SPDX-License-Identifier: MIT
#include "workbench/Recordspage.h"

#include "platform/Errors.h"
#include "workbench/Recordsmodel.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace nuvo {

namespace {

constexpr size_t kMostSelected = 100000; // more than any other page shows
constexpr qint64 kMostCopied = 100000;   // as many as other programs take

} // namespace

RecordsPage::RecordsPage(QWidget *parent)
    : QWidget(parent), model_(new RecordsModel(this)), filter_(new QLineEdit(this)), goTo_(new QLineEdit(this)),
      view_(new QTableView(this)), error_(new QLabel(this))
{
    setObjectName(QStringLiteral("RecordsPage"));
    filter_->setObjectName(QStringLiteral("Filter"));
    filter_->setPlaceholderText(tr("Filter: a condition such as  YEAR > 1950"));
    filter_->setToolTip(tr("An SQL condition; records that do not fulfil it are left out everywhere (Enter)"));
    filter_->setAccessibleName(tr("Filter"));
    filter_->setClearButtonEnabled(true);
    goTo_->setObjectName(QStringLiteral("GoTo"));
    goTo_->setToolTip(tr("Number of the record to go to (Enter)"));
    goTo_->setAccessibleName(tr("Go to record"));
    goTo_->setMaximumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Record 1 of 000000000000")));
    view_->setObjectName(QStringLiteral("Records"));
    view_->setAccessibleName(tr("Records"));
    view_->setSelectionBehavior(QAbstractItemView::SelectRows);
    view_->setAlternatingRowColors(true);
    view_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    view_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view_->horizontalHeader()->setSectionsClickable(true);
    view_->horizontalHeader()->setHighlightSections(false);
    view_->horizontalHeader()->setResizeContentsPrecision(50);
    view_->horizontalHeader()->setMaximumSectionSize(fontMetrics().averageCharWidth() * 60);
    view_->horizontalHeader()->setToolTip(tr("Click to sort the records, by the database"));
    view_->setCornerButtonEnabled(false);
    view_->setTabKeyNavigation(false);
    view_->setModel(model_);
    error_->setObjectName(QStringLiteral("RecordsError"));
    error_->setWordWrap(true);
    error_->setTextFormat(Qt::PlainText);
    error_->hide();
    auto *const line = new QHBoxLayout;
    line->addWidget(filter_, 1);
    line->addWidget(goTo_);
    auto *const all = new QVBoxLayout(this);
    all->addLayout(line);
    all->addWidget(error_);
    all->addWidget(view_, 1);
    connect(filter_, &QLineEdit::editingFinished, this, [this] {
        if (filter_->text().trimmed() != state_.filter)
            Q_EMIT FilterTyped(filter_->text().trimmed());
    });
    connect(goTo_, &QLineEdit::returnPressed, this, [this] {
        bool isNumber = false;
        const qint64 record = QLocale().toLongLong(goTo_->text(), &isNumber);
        if (isNumber)
            GoTo(record);
        goTo_->selectAll();
    });
    connect(model_, &RecordsModel::modelAboutToBeReset, this, [this] {
        if (model_->columnCount() > 0)
            widths_.clear();
        for (int column = 0; column < model_->columnCount(); ++column)
            widths_.append(view_->columnWidth(column));
    });
    connect(model_, &RecordsModel::modelReset, this, &RecordsPage::FitColumns);
    connect(model_, &RecordsModel::Failed, this, &RecordsPage::ShowError);
    connect(model_, &RecordsModel::Counted, this, [this] {
        ShowCount();
        if (!selected_.empty())
            ShowSelected();
    });
    connect(view_->horizontalHeader(), &QHeaderView::sectionClicked, this, &RecordsPage::Sort);
    connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (quiet_)
            return;
        selected_.clear();
        if (model_->SortedBy() < 0)
            Q_EMIT SelectionChanged();
    });
}

// The view has to let go of the model before that goes.
RecordsPage::~RecordsPage()
{
    view_->setModel(nullptr);
}

void RecordsPage::SetState(const ModelState &state, const std::optional<ScanSource> &table, bool atOnce)
{
    filter_->setText(state.filter);
    filter_->setEnabled(state.hasData() && !state.isQuery());
    state_ = state;
    const auto same = [](const ScanSource &one, const ScanSource &other) {
        return one.databaseName == other.databaseName && one.table == other.table && one.filter == other.filter;
    };
    if (table.has_value() == table_.has_value() && (!table || same(*table, *table_)))
        return;
    table_ = table;
    atOnce_ = atOnce;
    ReadAgain();
}

/// Those of another table; what the person has made of these stays.
void RecordsPage::FitColumns()
{
    QStringList names;
    for (int column = 0; column < model_->columnCount(); ++column)
        names.append(model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
    if (names.isEmpty())
        return;
    if (names != std::exchange(fitted_, names)) {
        view_->resizeColumnsToContents();
        return;
    }
    for (int column = 0; column < std::min<qsizetype>(names.size(), widths_.size()); ++column)
        view_->setColumnWidth(column, widths_[column]);
}

void RecordsPage::ReadAgain()
{
    ShowError({});
    selected_.clear();
    view_->horizontalHeader()->setSortIndicatorShown(false);
    const QScopedValueRollback<bool> quiet(quiet_, true);
    model_->SetSource(table_, atOnce_);
    ShowCount();
}

void RecordsPage::ShowError(const QString &error)
{
    error_->setText(error);
    error_->setVisible(!error.isEmpty());
    if (!error.isEmpty() && !model_->IsCounted())
        goTo_->setPlaceholderText({});
}

void RecordsPage::ShowCount()
{
    goTo_->setEnabled(model_->IsCounted() && model_->rowCount() > 0);
    goTo_->clear();
    goTo_->setPlaceholderText(model_->IsCounted() ? tr("Go to 1 … %1").arg(QLocale().toString(model_->rowCount()))
                              : table_ && error_->text().isEmpty() ? tr("Counting…")
                                                                   : QString());
}

void RecordsPage::Sort(int column)
{
    QHeaderView &header = *view_->horizontalHeader();
    const bool again = model_->SortedBy() == column;
    const bool back = again && downwards_; // the header turns its sign by itself
    downwards_ = again && !back;
    const Qt::SortOrder order = downwards_ ? Qt::DescendingOrder : Qt::AscendingOrder;
    const QScopedValueRollback<bool> quiet(quiet_, true);
    view_->clearSelection();
    ShowError({});
    header.setSortIndicator(column, order);
    header.setSortIndicatorShown(!back);
    model_->SortBy(back ? -1 : column, order);
}

void RecordsPage::GoTo(qint64 record)
{
    const auto row = int(std::clamp<qint64>(record, 1, std::max(1, model_->rowCount())) - 1);
    view_->setCurrentIndex(model_->index(row, 0));
    view_->scrollTo(model_->index(row, 0), QAbstractItemView::PositionAtCenter);
}

std::optional<Page::Table> RecordsPage::Table()
{
    std::vector<std::pair<int, int>> ranges;
    for (const QItemSelectionRange &range : view_->selectionModel()->selection())
        ranges.emplace_back(range.top(), range.bottom());
    if (ranges.empty() && model_->rowCount() > 0)
        ranges.emplace_back(0, model_->rowCount() - 1);
    std::sort(ranges.begin(), ranges.end());
    std::vector<std::pair<int, int>> parted; // each row once
    qint64 count = 0;
    for (auto [first, last] : ranges) {
        if (!parted.empty())
            first = std::max(first, parted.back().second + 1);
        if (first > last)
            continue;
        parted.emplace_back(first, last);
        count += last - first + 1;
    }
    if (count > kMostCopied)
        throw EPlatformError(tr("%1 records are too many to copy: select at most %2 of them.")
                                 .arg(QLocale().toString(count), QLocale().toString(kMostCopied)));
    return model_->Rows(parted, *this);
}

void RecordsPage::SetSelected(const std::set<qint64> &records)
{
    if (records == Selected())
        return;
    selected_ = records;
    ShowSelected();
}

void RecordsPage::ShowSelected()
{
    const QScopedValueRollback<bool> quiet(quiet_, true);
    if (model_->SortedBy() >= 0 && !selected_.empty()) {
        // Ordinals are those of the table's own order.
        view_->horizontalHeader()->setSortIndicatorShown(false);
        model_->SortBy(-1, Qt::AscendingOrder);
    }
    QItemSelection selection;
    for (const qint64 record : selected_) {
        if (record >= 1 && record <= model_->rowCount()) {
            const QModelIndex first = model_->index(int(record - 1), 0);
            selection.select(first, first.siblingAtColumn(model_->columnCount() - 1));
        }
    }
    view_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (!selected_.empty() && *selected_.begin() <= model_->rowCount())
        view_->scrollTo(model_->index(int(*selected_.begin() - 1), 0), QAbstractItemView::PositionAtCenter);
}

std::set<qint64> RecordsPage::Selected() const
{
    std::set<qint64> records;
    if (model_->SortedBy() >= 0)
        return records;
    for (const QItemSelectionRange &range : view_->selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom() && records.size() < kMostSelected; ++row)
            records.insert(row + 1);
    }
    return records;
}

} // namespace nuvo
